#include <dorvdl/util/privilege.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <type_traits>
#include <utility>

#include "util/id_lock.h"

namespace dorvdl::util {
namespace {

static_assert(std::is_same_v<uid_t, gid_t>, "one type of id serves users and groups");
using Id = uid_t;

// To the calls: leave this one as it is. No user or group has it.
constexpr auto kUnchanged = static_cast<Id>(-1);

// User and group ids are switched in the same way and differ in these only.
struct IdCalls {
  const char* name;  // what the log puts after "set"
  int (*get)(Id* real, Id* effective, Id* saved);
  int (*set)(Id real, Id effective, Id saved);
};
constexpr IdCalls kUser{"resuid", getresuid, setresuid};
constexpr IdCalls kGroup{"resgid", getresgid, setresgid};

struct Triple {
  Id real;
  Id effective;
  Id saved;
};

Triple Current(const IdCalls& calls) {
  Triple ids{};
  calls.get(&ids.real, &ids.effective, &ids.saved);
  return ids;
}

// One logged call: makes `id` the effective id. The log has ids as signed numbers, so that
// "unchanged" reads as -1.
bool SetEffective(const IdCalls& calls, Id id, const char* file, int line) {
  const Triple old = Current(calls);
  if (calls.set(kUnchanged, id, kUnchanged) != 0) {
    std::array<char, 1024> buffer{};
    // The text is what strerror_r() returns: it leaves the buffer empty for errors it knows.
    syslog(LOG_AUTH | LOG_ERR, "%s:%d ERROR: set%s(%d, %d, %d) [%s]", file, line, calls.name, -1,
           id, -1, strerror_r(errno, buffer.data(), buffer.size()));
    return false;
  }
  if (id == 0) {
    syslog(LOG_AUTH | LOG_INFO, "%s:%d WARNING: set%s(%d, %d, %d)", file, line, calls.name, -1, id,
           -1);
  }
  const Triple now = Current(calls);
  syslog(LOG_AUTH | LOG_DEBUG, "%s:%d set%s: (%d, %d, %d) -> (%d, %d, %d)", file, line, calls.name,
         old.real, old.effective, old.saved, now.real, now.effective, now.saved);
  return true;
}

// Group before user: the real or saved group id allows the group already to a process that is not
// root yet. When it is refused the user stays as well: nothing is to run as half of root.
bool BecomeRoot(uid_t uid, gid_t gid, const char* file, int line) {
  return (gid == 0 || SetEffective(kGroup, 0, file, line)) &&
         (uid == 0 || SetEffective(kUser, 0, file, line));
}

// Whoever reads the authorisation log expects the same steps for every change of user, so root is
// regained, and logged as such, also by a process that is root already. A user id that did not
// change is no reason to become root, even if the group then cannot be set. A refused call ends it:
// going on would leave root's group to a process that can no longer give it up.
bool Restore(uid_t saved_uid, gid_t saved_gid, const char* file, int line) {
  const uid_t uid = geteuid();
  const gid_t gid = getegid();
  return (saved_uid == uid || SetEffective(kUser, 0, file, line)) &&
         (saved_gid == gid || SetEffective(kGroup, saved_gid, file, line)) &&
         (saved_uid == uid || SetEffective(kUser, saved_uid, file, line));
}

// Logs and leaves in errno how a section began or ended; also when nothing had to change, so that
// the log shows every stretch.
void Report(bool success, const char* section, const char* file, int line) {
  const int error = success ? 0 : EPERM;
  errno = error;
  if (success) {
    syslog(LOG_AUTH | LOG_INFO, "%s:%d %s", file, line, section);
  } else {
    syslog(LOG_AUTH | LOG_ERR, "%s:%d ERROR: %s", file, line, section);
  }
  errno = error;  // which syslog() may have changed
}

// Regaining root fails below 0 only, the other two with any answer but 0. The difference is meant:
// keep it.
bool RegainRoot() { return setresuid(kUnchanged, 0, kUnchanged) >= 0; }
bool SetUser(uid_t uid) { return setresuid(kUnchanged, uid, kUnchanged) == 0; }
bool SetGroup(gid_t gid) { return setresgid(kUnchanged, gid, kUnchanged) == 0; }

// The ids are read once, before the first call, and decide about all three. So the user id is set
// to 0 twice on the way to root, and a process that asks for another group under its own user id
// runs as root until the guard ends: it could not have set the group otherwise.
bool RunAs(uid_t uid, gid_t gid) {
  const uid_t current_uid = geteuid();
  const gid_t current_gid = getegid();
  if (current_uid == uid && current_gid == gid) {
    return true;
  }
  return (current_uid == 0 || RegainRoot()) && (gid == current_gid || SetGroup(gid)) &&
         (uid == current_uid || SetUser(uid));
}

// Here too the ids are read once. All ones would be no id to the calls but "leave it as it is", so
// they are not made for it.
bool EndRunAs(uid_t uid, gid_t gid) {
  const uid_t current_uid = geteuid();
  const gid_t current_gid = getegid();
  return (current_uid == 0 || current_uid == uid || RegainRoot()) &&
         (gid == current_gid || gid == kUnchanged || SetGroup(gid)) &&
         (uid == current_uid || uid == kUnchanged || SetUser(uid));
}

}  // namespace

CriticalSection::CriticalSection(const char* file, int line) noexcept
    : is_locked_((LockIds(), true)), uid_(geteuid()), gid_(getegid()) {
  Report(BecomeRoot(uid_, gid_, file, line), "ENTERCriticalSection", file, line);
}

CriticalSection::~CriticalSection() { Unlock(); }

void CriticalSection::Leave(const char* file, int line) noexcept {
  const IdLock lock;  // a second call has no other
  Report(Restore(uid_, gid_, file, line), "LEAVECriticalSection", file, line);
  Unlock();
}

void CriticalSection::Unlock() noexcept {
  if (std::exchange(is_locked_, false)) {
    UnlockIds();
  }
}

RunAsGuard::RunAsGuard(uid_t uid, gid_t gid, const char* source_file, int source_line) noexcept
    : saved_uid((LockIds(), geteuid())),
      saved_gid(getegid()),
      file(source_file),
      line(source_line),
      name("IF_RUN_AS"),
      success(RunAs(uid, gid)) {
  if (!success) {
    syslog(LOG_AUTH | LOG_ERR, "%s:%d ERROR: %s(%d, %d)", file, line, name, uid, gid);
  }
}

RunAsGuard::~RunAsGuard() {
  if (!EndRunAs(saved_uid, saved_gid)) {
    syslog(LOG_AUTH | LOG_CRIT, "%s:%d ERROR: ~%s(%d, %d)", file, line, name, saved_uid, saved_gid);
  }
  UnlockIds();
}

}  // namespace dorvdl::util
