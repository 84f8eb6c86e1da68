/// @file
/// Running a stretch of code with other effective ids, usually root's. Two ways:
///
///     ENTERCriticalSection;            IF_RUN_AS(0, 0) {
///     OpenWhatOnlyRootMayOpen();         return ReadWhatOnlyRootMayRead();
///     LEAVECriticalSection;            }
///                                      return Refused();
///
/// The pair logs each of its steps and runs the code whether or not the switch succeeded; the
/// guard logs failures only, lets its user decide, and restores the ids on every way out.
///
/// Only the effective ids change; the real and the saved ones stay. A process that is not root
/// needs 0 as its real or saved user id, and for the pair as its real or saved group id too.
///
/// Effective ids belong to the whole process: what other threads do meanwhile, opening a file say,
/// they do as root as well. So only one thread at a time may be anywhere between a switch and its
/// end, and callers have to see to that (docs/threads.md). Where they fail to, a lock inside makes
/// the others wait at their switch, lest one takes another's ids for the process's own and leaves
/// them behind; that is a safety net and no promise. A thread may nest these stretches. A child
/// that is forked in one, by whichever thread, goes on with its ids, and waits for nobody.
#ifndef DORVDL_UTIL_PRIVILEGE_H_
#define DORVDL_UTIL_PRIVILEGE_H_

#include <dorvdl/util/export.h>
#include <dorvdl/util/log.h>
#include <sys/types.h>

namespace dorvdl::util {

/// A stretch of code that runs as root, in logged steps: the constructor is the way in, Leave() the
/// way out. `ENTERCriticalSection` and `LEAVECriticalSection` are the way to make one.
class DORVDL_EXPORT CriticalSection {
 public:
  /// Saves the effective ids and makes the group id, then the user id 0, where they are not. A
  /// refused call ends the step: a refused group leaves the user id as it was.
  ///
  /// Logs under the authorisation facility, as coming from @p line of @p file: each id set to 0
  /// (information) with its transition (debug), then "ENTERCriticalSection" (information), also
  /// when nothing had to change; after a refusal the refused call and "ERROR: ENTERCriticalSection"
  /// (both error). Leaves `errno` as 0 after success and as EPERM after a refusal.
  CriticalSection(const char* file, int line) noexcept;

  /// Restores no ids: that is Leave()'s, on every way out.
  ~CriticalSection();

  CriticalSection(const CriticalSection&) = delete;
  CriticalSection& operator=(const CriticalSection&) = delete;

  /// Restores the effective ids that were saved: becomes root again when the user id changed, sets
  /// the group id, then the user id. A refused call ends the step with the rest not restored, so
  /// that the process may go on as root.
  ///
  /// Logs and sets `errno` like the constructor, with "LEAVECriticalSection" in its place.
  void Leave(const char* file, int line) noexcept;

 private:
  void Unlock() noexcept;

  bool is_locked_;  // first, for the ids are read under the lock
  const uid_t uid_;
  const gid_t gid_;
};

/// Runs its scope with other effective ids: the constructor switches, the destructor restores.
/// `IF_RUN_AS` is the way to make one.
class DORVDL_EXPORT RunAsGuard {
 public:
  /// Switches the effective ids to @p uid and @p gid unless they are that already. When a call is
  /// refused, #success is false, one error line is logged under the authorisation facility, as
  /// coming from @p source_line of @p source_file, and part of the switch may be in effect until
  /// the guard ends. @p source_file is kept, not copied.
  RunAsGuard(uid_t uid, gid_t gid, const char* source_file, int source_line) noexcept;

  /// Restores #saved_uid and #saved_gid where they are not in effect; an id of all ones is never
  /// restored. When a call is refused, one critical line is logged under the authorisation
  /// facility and the rest is not restored, so that the process may go on as root. Must run in the
  /// thread that made the guard.
  ~RunAsGuard();

  RunAsGuard(const RunAsGuard&) = delete;
  RunAsGuard& operator=(const RunAsGuard&) = delete;

  /// Whether the requested ids are in effect: #success.
  explicit operator bool() const noexcept { return success; }

  uid_t saved_uid;   ///< effective user id when the guard was made
  gid_t saved_gid;   ///< effective group id when the guard was made
  const char* file;  ///< log source name of the place that made the guard
  int line;          ///< line of that place
  const char* name;  ///< "IF_RUN_AS", the macro that log lines name
  bool success;      ///< whether the switch succeeded or was not needed
};

}  // namespace dorvdl::util

/// Begins a stretch of a block that is to run as root: the way into a CriticalSection, for this
/// place. Declares the variable that LEAVECriticalSection uses, so a block has one such stretch.
#define ENTERCriticalSection \
  ::dorvdl::util::CriticalSection dorvdl_critical_section(DORVDL_SOURCE, __LINE__)

/// Restores the ids that ENTERCriticalSection of the same block, or of one around it, saved:
/// CriticalSection::Leave() for this place. Not automatic: it has to be written on every way out.
#define LEAVECriticalSection dorvdl_critical_section.Leave(DORVDL_SOURCE, __LINE__)

/// `IF_RUN_AS(uid, gid) { ... } else { ... }` is an `if` statement that holds a RunAsGuard: the
/// first branch runs when the ids are in effect, the other when the switch was refused. The former
/// ids are back when the whole statement, its `else` included, ends in whatever way. Nests, but not
/// within one line of source.
#define IF_RUN_AS(uid, gid)                                                                   \
  if (const ::dorvdl::util::RunAsGuard DORVDL_RUN_AS_GUARD(__LINE__)(uid, gid, DORVDL_SOURCE, \
                                                                     __LINE__);               \
      DORVDL_RUN_AS_GUARD(__LINE__))

/// @cond internal
#define DORVDL_RUN_AS_GUARD(line) DORVDL_RUN_AS_GUARD_AT(line)
#define DORVDL_RUN_AS_GUARD_AT(line) dorvdl_run_as_guard_##line
/// @endcond

#endif  // DORVDL_UTIL_PRIVILEGE_H_
