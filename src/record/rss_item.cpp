#include <dorvdl/record/rss_item.h>

#include "record/message_record_impl.h"

namespace dorvdl::record {

template class MessageRecord<RssItem, proto::RssItem>;

const ColumnTable& RssItem::Columns() {
  using Message = proto::RssItem;
  static const auto& columns = *new ColumnTable(
      {
          DORVDL_COLUMN(id).Key(),
          DORVDL_COLUMN(feed_id).Parent("rss_feed", "id"),
          DORVDL_COLUMN(title).Nullable(),
          DORVDL_COLUMN(url).Nullable(),
          DORVDL_COLUMN(link).Nullable(),
          DORVDL_COLUMN(date),
          DORVDL_COLUMN(size),
          DORVDL_COLUMN(is_new),
      },
      ColumnTable::Rendering::kJson);
  return columns;
}

}  // namespace dorvdl::record
