/// @file
/// One pending notification: a row of notification.
#ifndef DORVDL_RECORD_NOTIFICATION_H_
#define DORVDL_RECORD_NOTIFICATION_H_

#include <dorvdl/proto/record.pb.h>
#include <dorvdl/record/message_record.h>
#include <dorvdl/util/export.h>

namespace dorvdl::record {

class Notification;
extern template class DORVDL_EXPORT MessageRecord<Notification, proto::Notification>;

/// A notification about a task that waits to be delivered.
class DORVDL_EXPORT Notification : public MessageRecord<Notification, proto::Notification> {
 public:
  using MessageRecord::MessageRecord;

  /// The record's columns, for the mechanism below it; their type is no part of the interface.
  static const ColumnTable& Columns();

  /// The kind as a number: 0 for "complete", 1 for "failed", 2 for "captcha", -1 for any other
  /// text, other capitals included. (Spelt unlike the other operations, as its callers know it.)
  int getType() const;
};

}  // namespace dorvdl::record

#endif  // DORVDL_RECORD_NOTIFICATION_H_
