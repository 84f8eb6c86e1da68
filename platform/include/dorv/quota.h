/// @file
/// Disk quotas of users. C linkage.
#ifndef DORV_QUOTA_H_
#define DORV_QUOTA_H_

#include <dorv/export.h>
#include <sys/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Asks whether the user's quota allows @p bytes more bytes on the volume that holds @p path. Must
/// be called with root as the effective user. Only the space is looked at, not the number of files.
///
/// A user may reach the hard limit exactly but not exceed it. The soft limit may be exceeded for as
/// long as the system's grace time lasts, and not after that. Volumes that are not on a block
/// device of this machine (in memory, on the network, in a pool) count as volumes without quotas,
/// and a user whom the file system does not know has no limit.
///
/// @param uid    the user's id.
/// @param path   zero-terminated path of something that exists; must not be null.
/// @param bytes  the requested amount.
/// @return 1 when the quota is enough, or none is set; 0 when it is not; -1 when the question could
///         not be answered: the volume cannot be told, or the system does not give its answer, for
///         want of privileges, of the block device's file or for another reason.
DORV_EXPORT int DORVQuotaIsEnough(uid_t uid, const char* path, unsigned long long bytes);

#ifdef __cplusplus
}
#endif

#endif  // DORV_QUOTA_H_
