// The process's user and group ids: setting them up for a test, reading them back, and standing
// between the process and the calls that change them.
//
// setresuid() and setresgid(), called by whatever library, pass through here: they are recorded,
// refused on request and otherwise made.
#ifndef TESTS_SUPPORT_IDENTITY_H_
#define TESTS_SUPPORT_IDENTITY_H_

#include <sys/types.h>

#include <string>
#include <vector>

namespace test_support {

struct UserIds {
  uid_t real, effective, saved;
};
struct GroupIds {
  gid_t real, effective, saved;
};

// Gives the process these ids; throws when it cannot. Only for a child process: there may be no way
// back. Neither recorded nor refused.
void BecomeIds(const UserIds& users, const GroupIds& groups);

// "uids REAL EFFECTIVE SAVED, gids REAL EFFECTIVE SAVED".
std::string CurrentIds();

// Lets the nth call (1 is the next one) of setresuid() or setresgid() from now on fail with
// `error`.
void RefuseIdCall(int nth, int error);

// The calls since the last TakeIdCalls(), refused ones included, such as "setresgid(-1, 0, -1)".
std::vector<std::string> TakeIdCalls();

}  // namespace test_support

#endif  // TESTS_SUPPORT_IDENTITY_H_
