#include "account.h"

#include <grp.h>
#include <pwd.h>

#include <cerrno>
#include <cstddef>

namespace dorv {
namespace {

// Asks the database with one of getpwnam_r()'s family, which puts an entry's texts into a buffer
// that has to be large enough, and gives what @p pick takes from the entry.
template <typename Entry, typename Key, typename Pick>
auto Find(int (*ask)(Key, Entry*, char*, std::size_t, Entry**), Key key, Pick pick) {
  std::vector<char> texts(1024);
  Entry entry{};
  Entry* found = nullptr;
  while (ask(key, &entry, texts.data(), texts.size(), &found) == ERANGE) {
    texts.resize(texts.size() * 2);
  }
  return found != nullptr ? std::optional(pick(*found)) : std::nullopt;
}

Account ToAccount(const passwd& entry) { return {entry.pw_name, entry.pw_uid, entry.pw_gid}; }

}  // namespace

std::optional<Account> FindAccount(const char* name) { return Find(&getpwnam_r, name, &ToAccount); }

std::optional<Account> FindAccount(uid_t uid) { return Find(&getpwuid_r, uid, &ToAccount); }

std::optional<gid_t> FindGroup(const char* name) {
  return Find(&getgrnam_r, name, [](const group& entry) { return entry.gr_gid; });
}

std::vector<gid_t> GroupsOf(const Account& account) {
  int count = 16;
  std::vector<gid_t> groups(static_cast<std::size_t>(count));
  while (getgrouplist(account.name.c_str(), account.group, groups.data(), &count) < 0) {
    groups.resize(static_cast<std::size_t>(count));
  }
  groups.resize(static_cast<std::size_t>(count));
  return groups;
}

}  // namespace dorv
