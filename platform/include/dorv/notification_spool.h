/// @file
/// The notifications that DORVSendPersonalNotifiction() has taken over. C++.
///
/// They are kept in one folder (the build option DORV_NOTIFICATION_SPOOL,
/// "/var/spool/tarnwick/notifications" unless set), a file each, until somebody takes them away.
/// The files end in ".json" and their names sort by time; names that begin with a dot are those of
/// unfinished ones, which a crash can leave behind. Each file is whole from the moment it appears:
/// a JSON object in UTF-8 with the members "event", "application", "user", "title", "message",
/// "created" (seconds since the epoch) and "placeholders" (an object of strings). Bytes that are no
/// UTF-8 stand in it as they came.
///
/// The folder belongs to root or to the process's effective user, and others have no access to it;
/// one that looks different is not used. The files are readable by their owner only.
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
  std::string event;         ///< Its name, such as "DownloadCompleted".
  std::string application;   ///< The application that it is from.
  std::string user;          ///< The user whom it is for.
  std::string title;         ///< In the user's language, as is the message.
  std::string message;       ///< The template with its placeholders filled in.
  std::int64_t created = 0;  ///< Seconds since the epoch.
  std::map<std::string, std::string> placeholders;  ///< As the sender gave them.
};

/// Reads the notifications that are kept, oldest first, with the caller's effective ids. A file
/// that cannot be read or understood is left out, after one line in the system log. May throw
/// std::bad_alloc.
///
/// @return the notifications, none when the folder does not exist; no value, with `errno` set, when
///         the folder cannot be read, and with EPERM when others have access to it.
DORV_EXPORT std::optional<std::vector<KeptNotification>> ListKeptNotifications();

}  // namespace dorvdl::common

#endif  // DORV_NOTIFICATION_SPOOL_H_
