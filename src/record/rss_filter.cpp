#include <dorvdl/record/rss_filter.h>

#include "record/message_record_impl.h"

namespace dorvdl::record {

template class MessageRecord<RssFilter, proto::RssFilter>;

const ColumnTable& RssFilter::Columns() {
  using Message = proto::RssFilter;
  static const auto& columns = *new ColumnTable(
      {
          DORVDL_COLUMN(id).Key(),
          DORVDL_COLUMN(feed_id).Parent("rss_feed", "id"),
          DORVDL_COLUMN(name).Nullable(),
          DORVDL_COLUMN(match).Nullable(),
          DORVDL_COLUMN(not_match).Nullable(),
          DORVDL_COLUMN(destination).Nullable(),
          DORVDL_COLUMN(enable),
          DORVDL_COLUMN(is_regex),
      },
      ColumnTable::Rendering::kJson);
  return columns;
}

}  // namespace dorvdl::record
