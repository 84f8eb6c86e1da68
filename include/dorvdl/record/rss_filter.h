/// @file
/// One download rule of an RSS feed: a row of rss_filter.
#ifndef DORVDL_RECORD_RSS_FILTER_H_
#define DORVDL_RECORD_RSS_FILTER_H_

#include <dorvdl/proto/record.pb.h>
#include <dorvdl/record/message_record.h>
#include <dorvdl/util/export.h>

namespace dorvdl::record {

class RssFilter;
extern template class DORVDL_EXPORT MessageRecord<RssFilter, proto::RssFilter>;

/// A rule that picks items of an RSS feed by their titles: those that match `match` and do not
/// match `not_match`, both regular expressions when `is_regex` is set and LIKE patterns otherwise.
class DORVDL_EXPORT RssFilter : public MessageRecord<RssFilter, proto::RssFilter> {
 public:
  using MessageRecord::MessageRecord;

  /// The record's columns, for the mechanism below it; their type is no part of the interface.
  static const ColumnTable& Columns();
};

}  // namespace dorvdl::record

#endif  // DORVDL_RECORD_RSS_FILTER_H_
