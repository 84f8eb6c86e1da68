#include <dorvdl/record/rss_feed.h>

#include "record/message_record_impl.h"

namespace dorvdl::record {

template class MessageRecord<RssFeed, proto::RssFeed>;

const ColumnTable& RssFeed::Columns() {
  using Message = proto::RssFeed;
  static const auto& columns = *new ColumnTable(
      {
          DORVDL_COLUMN(id).Key(),
          DORVDL_COLUMN(username).Owner().Nullable(),
          DORVDL_COLUMN(title).Nullable(),
          DORVDL_COLUMN(url).Nullable(),
          DORVDL_COLUMN(last_update),
          DORVDL_COLUMN(is_updating),
      },
      ColumnTable::Rendering::kJson);
  return columns;
}

}  // namespace dorvdl::record
