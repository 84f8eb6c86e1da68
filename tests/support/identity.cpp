#include "support/identity.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace test_support {
namespace {

using SetIds = int(uid_t, uid_t, uid_t);

struct Calls {
  std::vector<std::string> made;
  int until_refused = 0;
  int error = 0;
};

Calls& Store() {
  static Calls* const store = new Calls;  // outlives whatever switches ids while the process ends
  return *store;
}

// The C library's own function, which also changes the ids of the other threads.
SetIds& Real(const char* name) { return *reinterpret_cast<SetIds*>(dlsym(RTLD_NEXT, name)); }

int Call(const char* name, uid_t real, uid_t effective, uid_t saved) {
  std::ostringstream text;
  text << name << '(' << static_cast<int>(real) << ", " << static_cast<int>(effective) << ", "
       << static_cast<int>(saved) << ')';
  Calls& calls = Store();
  calls.made.push_back(text.str());
  if (calls.until_refused > 0 && --calls.until_refused == 0) {
    errno = calls.error;
    return -1;
  }
  return Real(name)(real, effective, saved);
}

}  // namespace

void BecomeIds(const UserIds& users, const GroupIds& groups) {
  // Users last: they may take away the right to set groups.
  if (Real("setresgid")(groups.real, groups.effective, groups.saved) != 0 ||
      Real("setresuid")(users.real, users.effective, users.saved) != 0) {
    throw std::runtime_error("cannot set the ids up; this test needs root");
  }
}

std::string CurrentIds() {
  UserIds users{};
  GroupIds groups{};
  getresuid(&users.real, &users.effective, &users.saved);
  getresgid(&groups.real, &groups.effective, &groups.saved);
  std::ostringstream text;
  text << "uids " << users.real << ' ' << users.effective << ' ' << users.saved << ", gids "
       << groups.real << ' ' << groups.effective << ' ' << groups.saved;
  return text.str();
}

void RefuseIdCall(int nth, int error) {
  Store().until_refused = nth;
  Store().error = error;
}

std::vector<std::string> TakeIdCalls() { return std::exchange(Store().made, {}); }

}  // namespace test_support

extern "C" {
#define EXPORTED __attribute__((visibility("default")))

EXPORTED int setresuid(uid_t real, uid_t effective, uid_t saved) noexcept {
  return test_support::Call("setresuid", real, effective, saved);
}
EXPORTED int setresgid(gid_t real, gid_t effective, gid_t saved) noexcept {
  return test_support::Call("setresgid", real, effective, saved);
}
}
