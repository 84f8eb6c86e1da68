// Users and groups as the account database has them, for the library's own use.
//
// All of these throw std::system_error when the database cannot be read, and may throw
// std::bad_alloc.
#ifndef DORV_LINUX_ACCOUNT_H_
#define DORV_LINUX_ACCOUNT_H_

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace dorv {

struct Account {
  std::string name;  // as the database spells it
  uid_t uid;
  gid_t group;  // the primary one
};

// The account of that name or id; none when there is no such account.
std::optional<Account> FindAccount(const char* name);
std::optional<Account> FindAccount(uid_t uid);

// The account of that name, or else the first in the database whose name differs in case only.
std::optional<Account> FindAccountInAnyCase(const std::string& name);

// The id of the group of that name; none when there is no such group.
std::optional<gid_t> FindGroup(const char* name);

// The groups that an account belongs to, the primary one included.
std::vector<gid_t> GroupsOf(const Account& account);

}  // namespace dorv

#endif  // DORV_LINUX_ACCOUNT_H_
