#include "account.h"

#include <grp.h>
#include <pwd.h>

#include <cerrno>
#include <cstddef>
#include <mutex>

#include "any_case.h"
#include "fail.h"

namespace dorv {
namespace {

// How much room an entry's texts are given at most, in bytes, and how often a call is made again
// that a signal has interrupted.
constexpr std::size_t kMostRoom = 16777216;
constexpr int kMostInterruptions = 100;

// Gives what @p pick takes from an entry of the database; nothing when there is none. The entry
// comes from @p ask, a call of getpwnam_r()'s family, which puts its texts into a buffer that has
// to be large enough.
template <typename Entry, typename Ask, typename Pick>
auto Find(Ask ask, Pick pick) -> std::optional<decltype(pick(Entry()))> {
  std::vector<char> texts(1024);
  Entry entry{};
  Entry* found = nullptr;
  int interruptions = 0;
  int error = 0;
  do {
    if (error == ERANGE) {
      texts.resize(texts.size() * 2);
    }
    error = ask(&entry, texts.data(), texts.size(), &found);
  } while ((error == ERANGE && texts.size() < kMostRoom) ||
           (error == EINTR && ++interruptions < kMostInterruptions));
  if (error != 0 && error != ENOENT && error != ESRCH) {
    Fail(error, "account database");
  }
  return error == 0 && found != nullptr ? std::optional(pick(*found)) : std::nullopt;
}

template <typename Entry, typename Key, typename Pick>
auto Find(int (*ask)(Key, Entry*, char*, std::size_t, Entry**), Key key, Pick pick) {
  return Find<Entry>([=](Entry* entry, char* texts, std::size_t size,
                         Entry** found) { return ask(key, entry, texts, size, found); },
                     pick);
}

Account ToAccount(const passwd& entry) { return {entry.pw_name, entry.pw_uid, entry.pw_gid}; }

std::mutex list_mutex;

// All accounts one after the other. The place that has been reached in the database is the
// process's: this waits for others of its kind, and disturbs a program that counts on its own.
class AccountList {
 public:
  AccountList() { setpwent(); }
  ~AccountList() { endpwent(); }
  AccountList(const AccountList&) = delete;
  AccountList& operator=(const AccountList&) = delete;

  // None at the end.
  static std::optional<Account> Next() { return Find<passwd>(&getpwent_r, &ToAccount); }

 private:
  const std::lock_guard<std::mutex> lock_{list_mutex};
};

}  // namespace

std::optional<Account> FindAccount(const char* name) { return Find(&getpwnam_r, name, &ToAccount); }

std::optional<Account> FindAccount(uid_t uid) { return Find(&getpwuid_r, uid, &ToAccount); }

std::optional<Account> FindAccountInAnyCase(const std::string& name) {
  auto account = FindAccount(name.c_str());
  if (account) {
    return account;
  }
  const std::wstring wanted = WithoutCase(name);
  AccountList accounts;
  do {
    account = accounts.Next();
  } while (account && WithoutCase(account->name) != wanted);
  return account;
}

std::optional<gid_t> FindGroup(const char* name) {
  return Find(&getgrnam_r, name, [](const group& entry) { return entry.gr_gid; });
}

std::vector<gid_t> GroupsOf(const Account& account) {
  std::vector<gid_t> groups(16);
  for (;;) {
    int count = static_cast<int>(groups.size());
    errno = 0;
    const bool fit = getgrouplist(account.name.c_str(), account.group, groups.data(), &count) >= 0;
    if (!fit && count <= static_cast<int>(groups.size())) {
      Fail(errno != 0 ? errno : EIO, "groups of " + account.name);  // not for want of room
    }
    groups.resize(static_cast<std::size_t>(count));
    if (fit) {
      return groups;
    }
  }
}

}  // namespace dorv
