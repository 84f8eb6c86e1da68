/// @file
/// Credentials of system users. C linkage.
#ifndef DORV_CREDENTIALS_H_
#define DORV_CREDENTIALS_H_

#include <dorv/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Prepares the process's credentials for the system user @p user, before a connection is opened
/// in that user's name. Called with root as the effective user where that was possible.
///
/// @param user  zero-terminated account name; must not be null.
/// @param flag  1 for a system user of the package; other values are the platform's own.
/// @return 0 on success, -1 when the credentials could not be prepared.
DORV_EXPORT int InitCredentialsByName(const char* user, int flag);

#ifdef __cplusplus
}
#endif

#endif  // DORV_CREDENTIALS_H_
