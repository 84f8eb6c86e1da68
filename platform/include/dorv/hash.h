/// @file
/// A map from string to string, as notifications carry their placeholders in it. C linkage.
#ifndef DORV_HASH_H_
#define DORV_HASH_H_

#include <dorv/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// The map. Opaque: it is made, changed and released by the calls below only, and a call that
/// changes it may move it. Not safe for use by several threads at once.
typedef struct VLIBSZHASH VLIBSZHASH;

/// Makes an empty map with room for about @p size bytes of contents; it grows when more is put in.
///
/// @param size  a hint, which may be wrong or negative.
/// @return the map, owned by the caller until VLIBCSzHashFree(); null when memory is short.
DORV_EXPORT VLIBSZHASH* VLIBCSzHashAlloc(int size);

/// Puts a pair into the map or replaces the value of a key that is there already.
///
/// @param hash   address of the caller's handle, which the call may change: a copy of the handle
///               that was made before is stale afterwards.
/// @param key    zero-terminated; copied.
/// @param value  zero-terminated; copied.
/// @return -1 on failure, that is when memory is short or an argument or the handle is null, and
///         then handle and map are as they were; another value on success.
DORV_EXPORT int VLIBCSzHashSetValue(VLIBSZHASH** hash, const char* key, const char* value);

/// Releases the map; null is harmless.
DORV_EXPORT void VLIBCSzHashFree(VLIBSZHASH* hash);

#ifdef __cplusplus
}
#endif

#endif  // DORV_HASH_H_
