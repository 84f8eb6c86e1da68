#include <dorvdl/record/thumbnail.h>

#include "record/message_record_impl.h"

namespace dorvdl::record {

template class MessageRecord<Thumbnail, proto::Thumbnail>;

const ColumnTable& Thumbnail::Columns() {
  using Message = proto::Thumbnail;
  static const auto& columns = *new ColumnTable(
      {
          DORVDL_COLUMN(thumbnail_id).Key(),
          DORVDL_COLUMN(task_id).Parent("download_queue", "task_id"),
          DORVDL_COLUMN(file_index),
          DORVDL_COLUMN(thumbnail_index),
          DORVDL_COLUMN(thumbnail_second),
          DORVDL_COLUMN(thumbnail_filename).Nullable(),
          DORVDL_COLUMN(create_time),
      },
      ColumnTable::Rendering::kJson);
  return columns;
}

}  // namespace dorvdl::record
