/// @file
/// One RSS feed: a row of rss_feed.
#ifndef DORVDL_RECORD_RSS_FEED_H_
#define DORVDL_RECORD_RSS_FEED_H_

#include <dorvdl/proto/record.pb.h>
#include <dorvdl/record/message_record.h>
#include <dorvdl/util/export.h>

namespace dorvdl::record {

class RssFeed;
extern template class DORVDL_EXPORT MessageRecord<RssFeed, proto::RssFeed>;

/// An RSS feed that a user has subscribed to.
class DORVDL_EXPORT RssFeed : public MessageRecord<RssFeed, proto::RssFeed> {
 public:
  using MessageRecord::MessageRecord;

  /// The record's columns, for the mechanism below it; their type is no part of the interface.
  static const ColumnTable& Columns();
};

}  // namespace dorvdl::record

#endif  // DORVDL_RECORD_RSS_FEED_H_
