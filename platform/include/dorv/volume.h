/// @file
/// Storage volumes. C linkage.
#ifndef DORV_VOLUME_H_
#define DORV_VOLUME_H_

#include <dorv/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// What is known of a volume. Both texts are zero-terminated.
typedef struct DorvVolumeInfo {
  char path[4096];   /**< Where it is mounted. */
  char device[4096]; /**< What is mounted there: a device, or the file system's own word for it. */
} DorvVolumeInfo;

/// Finds the volume that holds @p path.
///
/// @param path  zero-terminated path of something that exists; symbolic links are followed, a
///              relative path starts at the working folder. Must not be null. The caller needs
///              search permission on the way to it, no other, and may have changed its ids.
/// @param info  receives the answer; owned by the caller, must not be null.
/// @return 0 on success; -1 when the path does not exist or cannot be reached, when the mount table
///         cannot be read or does not show its volume, or when a text does not fit, and then the
///         contents of @p info do not count.
DORV_EXPORT int VolumePathParseEx(const char* path, DorvVolumeInfo* info);

#ifdef __cplusplus
}
#endif

#endif  // DORV_VOLUME_H_
