/// @file
/// One download task: a row of download_queue.
#ifndef DORVDL_RECORD_TASK_H_
#define DORVDL_RECORD_TASK_H_

#include <dorv/hash.h>
#include <dorvdl/proto/record.pb.h>
#include <dorvdl/record/message_record.h>
#include <dorvdl/util/export.h>
#include <json/value.h>

#include <string>
#include <vector>

namespace dorvdl::record {

class Task;
extern template class DORVDL_EXPORT MessageRecord<Task, proto::Task>;

/// One download task of one user, whatever its protocol.
///
/// A task that was read must not be written back whole: its `extra_data` was wrapped on reading
/// and would be wrapped again. Update with a record that carries the key and the changed fields.
class DORVDL_EXPORT Task : public MessageRecord<Task, proto::Task> {
 public:
  using MessageRecord::MessageRecord;

  /// The record's columns, for the mechanism below it; their type is no part of the interface.
  static const ColumnTable& Columns();

  /// The names of all columns, in the order of the table.
  static std::vector<std::string> GetSelectFields();

  /// The name of the protocol: of the first flag bit that is set, torrents first ("bt", then "nzb",
  /// "http", "https", "ftp" ...); "unknown" when none is.
  std::string GetTaskType() const;

  /// The flag bit of the protocol that @p url begins with (case counts); 0 for any other text.
  static int GetFlagByURL(const std::string& url);

  /// True when `task_flags` has any of the bits of @p flag.
  bool IsFlagOn(int flag) const;

  /// True for status 4, 5, 7 and 8: all data has arrived.
  bool IsCompleteTask() const;

  /// True for status 2, 7 and 8: data is being transferred.
  bool IsDownloadTaskActive() const;

  /// True for a torrent in status 2, 6, 7 or 8.
  bool IsActiveTorrent() const;

  /// The path of the task's torrent or NZB file in the temporary download directory; cut to 1023
  /// bytes. Empty when there is no such directory (logged at error level).
  std::string GetSourceFilePath() const;

  /// The file-system path of the destination, as the task's user may reach it; empty when the share
  /// or the user's access is missing (logged at error level), or when destination or user name has
  /// an embedded NUL.
  std::string GetDestRealPath() const;

  /// The task's free-form data, parsed. Null when there is none; what the parser left when the text
  /// is no JSON (logged at error level). Values with escaped characters do not survive.
  Json::Value extra_data() const;

  /// Stores @p value as JSON text and marks the field present.
  void set_extra_data(const Json::Value& value);

  /// Tell the task's owner that it has completed, that it needs a captcha, or that it has failed;
  /// the last with a message about its status in the owner's language, which is empty when it
  /// cannot be loaded (logged).
  ///
  /// Each fills a map of placeholders and calls SendNotification(). SendNotificationFailed() sets
  /// the environment variable USERNAME, from which the platform takes the language, and leaves it
  /// set: no two threads may call it at the same time.
  ///
  /// @param created_time  the time to show, seconds since the epoch.
  /// @return true when the notification was handed to the platform; false when the map could not be
  ///         filled (an embedded NUL in a value included) or sending failed (logged either way).
  /// @throws only what the string and locale machinery throws (`std::bad_alloc`).
  bool SendNotificationComplete(int created_time) const;
  bool SendNotificationCaptcha(int created_time) const;
  bool SendNotificationFailed(int created_time) const;
};

/// Sends the notification @p event of the package to @p user, by the real name that the platform
/// has for that user.
///
/// @param event  name of the event, such as "DownloadCompleted".
/// @param hash   the placeholders; stays the caller's.
/// @return true when it was handed to the platform; false when there is no such user or the
///         platform refused it (logged).
DORVDL_EXPORT bool SendNotification(const std::string& event, const std::string& user,
                                    VLIBSZHASH* hash);

}  // namespace dorvdl::record

#endif  // DORVDL_RECORD_TASK_H_
