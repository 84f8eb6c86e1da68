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
/// Effective ids belong to the whole process and nothing here locks: only one thread at a time may
/// be anywhere between a switch and its end.
#ifndef DORVDL_UTIL_PRIVILEGE_H_
#define DORVDL_UTIL_PRIVILEGE_H_

#include <dorvdl/util/export.h>
#include <dorvdl/util/log.h>
#include <sys/types.h>

namespace dorvdl::util {

/// The effective ids that a process had before EnterCriticalSection().
struct SavedIds {
  uid_t uid;  ///< effective user id
  gid_t gid;  ///< effective group id
};

/// Makes the effective group id, then the effective user id 0, where they are not, and returns the
/// ids that were in effect before. A refused call ends the step: a refused group leaves the user
/// id as it was. Never throws.
///
/// Logs under the authorisation facility, as coming from @p line of @p file: each id set to 0
/// (information) with its transition (debug), then "ENTERCriticalSection" (information), also when
/// nothing had to change; after a refusal the refused call and "ERROR: ENTERCriticalSection" (both
/// error). Leaves `errno` as 0 after success and as EPERM after a refusal.
DORVDL_EXPORT SavedIds EnterCriticalSection(const char* file, int line) noexcept;

/// Restores the effective ids @p saved, as EnterCriticalSection() returned them: becomes root again
/// when the user id changed, sets the group id, then the user id. A refused call ends the step with
/// the rest not restored, so that the process may go on as root. Never throws.
///
/// Logs and sets `errno` like EnterCriticalSection(), with "LEAVECriticalSection" in its place.
DORVDL_EXPORT void LeaveCriticalSection(const SavedIds& saved, const char* file, int line) noexcept;

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
  /// facility and the rest is not restored, so that the process may go on as root.
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

/// Begins a stretch of a block that is to run as root: EnterCriticalSection() for this place.
/// Declares the variable that LEAVECriticalSection reads, so a block has one such stretch, and the
/// blocks inside it have none.
#define ENTERCriticalSection                        \
  const ::dorvdl::util::SavedIds dorvdl_saved_ids = \
      ::dorvdl::util::EnterCriticalSection(DORVDL_SOURCE, __LINE__)

/// Restores the ids that ENTERCriticalSection of the same block, or of one around it, saved:
/// LeaveCriticalSection() for this place. Not automatic: it has to be written on every way out.
#define LEAVECriticalSection \
  ::dorvdl::util::LeaveCriticalSection(dorvdl_saved_ids, DORVDL_SOURCE, __LINE__)

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
