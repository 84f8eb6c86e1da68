/// @file
/// Personal desktop notifications. C linkage.
#ifndef DORV_NOTIFICATION_H_
#define DORV_NOTIFICATION_H_

#include <dorv/export.h>
#include <dorv/hash.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Delivers the notification @p event of @p application to @p user: fills in the event's template
/// and keeps the result in a spool folder (see <dorv/notification_spool.h>) for whoever shows it.
///
/// The template is a section that is named like the event and has the keys "title" and "message".
/// It stands in the file `<application>/texts/<language>/notifications` in the folder of the build
/// option DORV_APPLICATIONS ("/usr/dorv/dorvman/webman/3rdparty" unless set). The file's form and
/// the choice of the language, that of @p user here, are those of <dorv/cgi.h>. Each key of
/// @p hash that is a name between percent signs ("%FILENAME%") is replaced by its value wherever it
/// stands in the template; values are taken as they are, whatever they contain, and a name that the
/// map does not have stays as it stands.
///
/// No ids are switched: the caller's effective user needs access to the spool folder.
///
/// @param event        zero-terminated name of the event; must not be null.
/// @param user         zero-terminated name; must not be null. The notification goes to the account
///                     that VLIBUserRealNameGet() gives for it.
/// @param application  zero-terminated name of the application that owns the template; must not be
///                     null.
/// @param hash         the placeholders, null for none; stays the caller's and is not changed.
/// @return 0 when the notification was taken over for delivery, that is when it has reached the
///         disk. Otherwise an error number: EINVAL for a name that is empty, begins with a dot or
///         has a slash or a control character; ESRCH for an unknown user; ENOENT when there is no
///         template, or no folder to make the spool folder in; EBADMSG when the templates are
///         malformed; EMSGSIZE when the notification's file would be larger than those that are
///         read; EPERM when others have access to the spool folder, or it is somebody else's;
///         or what the system says, such as ENOSPC. Then nothing is kept, and one line in the
///         system log says why.
///
/// The name is spelt as the platform spells it.
DORV_EXPORT int DORVSendPersonalNotifiction(const char* event, const char* user,
                                            const char* application, VLIBSZHASH* hash);

#ifdef __cplusplus
}
#endif

#endif  // DORV_NOTIFICATION_H_
