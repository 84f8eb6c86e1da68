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
/// be called with root as the effective user.
///
/// @param uid    the user's id.
/// @param path   zero-terminated path of something that exists; must not be null.
/// @param bytes  the requested amount.
/// @return 1 when the quota is enough, or none is set; any other value when it is not or the
///         question could not be answered.
DORV_EXPORT int DORVQuotaIsEnough(uid_t uid, const char* path, unsigned long long bytes);

#ifdef __cplusplus
}
#endif

#endif  // DORV_QUOTA_H_
