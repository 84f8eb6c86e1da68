/// @file
/// One RSS item: a row of rss_item.
#ifndef DORVDL_RECORD_RSS_ITEM_H_
#define DORVDL_RECORD_RSS_ITEM_H_

#include <dorvdl/proto/record.pb.h>
#include <dorvdl/record/message_record.h>
#include <dorvdl/util/export.h>

namespace dorvdl::record {

class RssItem;
extern template class DORVDL_EXPORT MessageRecord<RssItem, proto::RssItem>;

/// One entry of an RSS feed. It belongs to the feed, and through it to a user.
class DORVDL_EXPORT RssItem : public MessageRecord<RssItem, proto::RssItem> {
 public:
  using MessageRecord::MessageRecord;

  /// The record's columns, for the mechanism below it; their type is no part of the interface.
  static const ColumnTable& Columns();
};

}  // namespace dorvdl::record

#endif  // DORVDL_RECORD_RSS_ITEM_H_
