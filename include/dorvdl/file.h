/// @file
/// The temporary download folder: where it is, whether its volume is writable and has room, and the
/// removal of a task's temporary files; and whether a user's quota has room. Included from C and
/// C++.
///
/// The folder is what the symbolic link "/var/services/download" points to.
///
/// Conventions, for every function here:
/// - C linkage; nothing is thrown and no state is kept between calls.
/// - The functions allocate nothing on the heap; the platform's calls and syslog() may.
/// - Texts are zero-terminated. Buffers belong to the caller, who gives their size in bytes.
/// - The result is 0 for success and -1 for every failure, unless the function says otherwise.
/// - A failure is logged with syslog() at LOG_ERR where the function says so; `errno` is then what
///   the failing system call left there.
/// - Unless the function says otherwise, no special rights are needed beyond those on the files in
///   question, and different threads may call at the same time.
#ifndef DORVDL_FILE_H_
#define DORVDL_FILE_H_

#include <dorvdl/util/export.h>
#include <stddef.h>
#include <sys/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Copies the target of the link to @p buf and fills the rest of it with zeroes. Whether the target
/// exists is not looked at.
///
/// A target of @p size bytes or more is a success all the same: as much of it as fits, *without a
/// terminating zero*. Callers pass generous buffers.
///
/// @return 0; -1 with "Bad parameters" logged when @p buf is null or @p size negative; -1 with
///         nothing logged when the link cannot be read, as with a @p size of 0.
DORVDL_EXPORT int GetTmpDownloadDirRealPath(char* buf, int size);

/// Like GetTmpDownloadDirRealPath(), and a success only when the target is an existing folder on a
/// writable volume, which "/usr/dorv/bin/dorvfstool" is run to find out. @p buf must be large
/// enough for the target and its terminating zero.
///
/// @return 0, or -1; logged is only what GetTmpDownloadDirRealPath() logs.
DORVDL_EXPORT int GetTmpDownloadDir(char* buf, int size);

/// Writes the path of the volume that holds the folder, its mount point, to @p buf, cut off to
/// @p size bytes with the terminating zero; whether it was cut off is not told. @p buf may be null
/// only when @p size is 0.
///
/// @return 0; -1 with a log line when there is no usable folder (see GetTmpDownloadDir()) or its
///         volume cannot be told; -1 without one when the path could not be formatted.
DORVDL_EXPORT int GetTmpDownloadDirVol(char* buf, size_t size);

/// Tells whether the folder's file system is too full: note the sense of the answer.
///
/// @return 1 when less than 1 MiB (1048576 bytes) is free for ordinary users; 0 when there is at
///         least that much, or when the folder's path is empty; -1 with a log line when there is no
///         usable folder (see GetTmpDownloadDir()) or its file system cannot be asked.
DORVDL_EXPORT int TmpVolumeSpaceCheck(void);

/// Removes the file or folder @p path with everything in it, by running "/bin/rm -rf" without a
/// shell. Something that does not exist counts as removed.
///
/// @param path  must not be null; an absolute path, for a leading "-" would be taken as an option.
/// @param flag  selects between two ways in which the platform runs the command.
/// @return 0; -1 with a log line when the command did not succeed.
DORVDL_EXPORT int RemoveTaskTemp(const char* path, int flag);

/// Tells whether the user's disk quota allows @p bytes more at @p path. Administrators are not
/// limited; for everyone else the platform is asked, with root as the effective user and group
/// where the process can become root. Those ids belong to the whole process: no other thread may
/// switch ids, or should act for a user, meanwhile. Both steps of the switch log, under the
/// authorisation facility, as coming from one line.
///
/// The parameters are those of DORVQuotaIsEnough(), which gets them unchanged.
///
/// @return 0 when the quota is enough; -1 when it is not or the platform could not tell; -1 with a
///         log line when it cannot be found out whether the user is an administrator. After a
///         switch `errno` is what its last step left: 0, or EPERM when the former ids could not be
///         restored.
DORVDL_EXPORT int DORVDLQuotaCheck(uid_t uid, const char* path, unsigned long long bytes);

#ifdef __cplusplus
}
#endif

#endif  // DORVDL_FILE_H_
