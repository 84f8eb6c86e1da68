/// @file
/// Running programs. C linkage.
///
/// No shell is involved: every argument reaches the program as it is. The program is a path, which
/// is not searched for in PATH, and becomes the first entry of its own argument list; it gets the
/// environment of the caller and the open files that are not closed on execution, and starts with
/// no signal blocked and SIGCHLD handled by default; what other signals the caller ignores stay
/// ignored. Both calls wait until the program has ended, also when signals arrive meanwhile.
///
/// It does not matter how the caller handles SIGCHLD, also when it ignores the signal or a handler
/// or another thread collects every child that ends, and nothing is changed about it. The parent of
/// the program is a copy of the calling process, which ends after it; the caller's handler may see
/// that one end and may collect it. Both calls can be made from several threads at once.
#ifndef DORV_EXEC_H_
#define DORV_EXEC_H_

#include <dorv/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Runs @p program, which shares the caller's standard streams, with up to four arguments.
///
/// @param program  zero-terminated path; must not be null.
/// @param a1,a2,a3,a4  zero-terminated arguments; the first null one ends the list.
/// @return the program's exit status, 0 to 255; -1 when it could not be run or died by a signal.
DORV_EXPORT int VLIBCExec(const char* program, const char* a1, const char* a2, const char* a3,
                          const char* a4);

/// Runs @p program with a list of up to 64 arguments that a null pointer ends. Its standard streams
/// are /dev/null.
///
/// @param program  zero-terminated path; must not be null.
/// @param options  the platform's word for how the program is run. The portable implementation
///                 takes any word and always does as described here.
/// @param arg      the first zero-terminated argument, or null for none at all.
/// @return 0 when the program exited with status 0; -1 when it exited with another one, could not
///         be run or died by a signal, and for more than 64 arguments, without running anything.
DORV_EXPORT int VLIBCExecl(const char* program, int options, const char* arg, ...);

#ifdef __cplusplus
}
#endif

#endif  // DORV_EXEC_H_
