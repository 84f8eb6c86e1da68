/// @file
/// Personal desktop notifications. C linkage.
#ifndef DORV_NOTIFICATION_H_
#define DORV_NOTIFICATION_H_

#include <dorv/export.h>
#include <dorv/hash.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Delivers the notification @p event of @p application to @p user: the pairs of @p hash take the
/// place of their keys ("%FILENAME%") in the event's template.
///
/// @param event        zero-terminated name of the event; must not be null.
/// @param user         zero-terminated real name, as VLIBUserRealNameGet() gives it; must not be
///                     null.
/// @param application  zero-terminated name of the application that owns the template; must not be
///                     null.
/// @param hash         the placeholders; stays the caller's and is not changed.
/// @return 0 when the notification was taken over for delivery, else an error number.
DORV_EXPORT int DORVSendPersonalNotifiction(const char* event, const char* user,
                                            const char* application, VLIBSZHASH* hash);

#ifdef __cplusplus
}
#endif

#endif  // DORV_NOTIFICATION_H_
