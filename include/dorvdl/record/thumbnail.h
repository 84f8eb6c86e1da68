/// @file
/// One preview picture: a row of thumbnail.
#ifndef DORVDL_RECORD_THUMBNAIL_H_
#define DORVDL_RECORD_THUMBNAIL_H_

#include <dorvdl/proto/record.pb.h>
#include <dorvdl/record/message_record.h>
#include <dorvdl/util/export.h>

namespace dorvdl::record {

class Thumbnail;
extern template class DORVDL_EXPORT MessageRecord<Thumbnail, proto::Thumbnail>;

/// A picture taken from a video among the files of a task.
class DORVDL_EXPORT Thumbnail : public MessageRecord<Thumbnail, proto::Thumbnail> {
 public:
  using MessageRecord::MessageRecord;

  /// The record's columns, for the mechanism below it; their type is no part of the interface.
  static const ColumnTable& Columns();
};

}  // namespace dorvdl::record

#endif  // DORVDL_RECORD_THUMBNAIL_H_
