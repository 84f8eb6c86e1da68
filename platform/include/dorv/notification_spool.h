/// @file
/// The notifications that DORVSendPersonalNotifiction() has taken over. C++.
///
/// They are kept in one folder (the build option DORV_NOTIFICATION_SPOOL,
/// "/var/spool/tarnwick/notifications" unless set), a file each, until somebody takes them away.
/// The files end in ".json" and their names sort by time; names that begin with a dot are those of
/// unfinished ones, which a crash can leave behind. Each file is whole from the moment it appears:
/// a JSON object in UTF-8 with the members "event", "application", "user", "title", "message",
/// "created" (seconds since the epoch) and "placeholders" (an object of strings). Bytes that are no
/// UTF-8 stand in it as they came. Files of more than 1 MiB are neither written nor read.
///
/// The folder belongs to the package's own user (the build option DORV_PACKAGE_USER, "Tarnwick"
/// unless set), to root or to the process's effective user, and nobody else has access to it; one
/// that looks different, or is a link, is not used. The files belong to the folder's owner, also
/// when root writes them. Where there is the package's user, the folder that root makes is this
/// user's from the moment it appears, and one of root's is handed over to the user, with all that
/// lies in it, when root keeps the next notification. A crash while the folder is made can leave an
/// empty one beside it, whose name goes on with a dot and six letters.
#ifndef DORV_NOTIFICATION_SPOOL_H_
#define DORV_NOTIFICATION_SPOOL_H_

#include <dorv/export.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace dorvdl::common {

/// A notification, ready to be shown.
struct KeptNotification {
  /// Name of the event, such as "DownloadCompleted".
  std::string event;
  /// Name of the application that sent it.
  std::string application;
  /// Real name of the user whom it is for.
  std::string user;
  /// Title in the user's language, with its placeholders filled in.
  std::string title;
  /// Message in the user's language, with its placeholders filled in.
  std::string message;
  /// Time when it was kept, seconds since the epoch.
  std::int64_t created = 0;
  /// Placeholders and their values, as the sender gave them.
  std::map<std::string, std::string> placeholders;
};

/// Reads the notifications that are kept, oldest first, with the caller's effective ids. A file
/// that cannot be read or understood, is too large or is no regular file (a link, say) is left out,
/// after one line in the system log, and hides no other. May throw std::bad_alloc.
///
/// @return the notifications, none when the folder does not exist; no value, with `errno` set, when
///         the folder or the account database cannot be read, and with EPERM when others have
///         access to the folder.
DORV_EXPORT std::optional<std::vector<KeptNotification>> ListKeptNotifications();

}  // namespace dorvdl::common

#endif  // DORV_NOTIFICATION_SPOOL_H_
