#include <dorvdl/record/notification.h>

#include <algorithm>
#include <iterator>

#include "record/message_record_impl.h"

namespace dorvdl::record {

template class MessageRecord<Notification, proto::Notification>;

const ColumnTable& Notification::Columns() {
  using Message = proto::Notification;
  static const auto& columns = *new ColumnTable({
      DORVDL_COLUMN(id).Key(),
      DORVDL_COLUMN(task_id).Parent("download_queue", "task_id"),
      DORVDL_COLUMN(type).Nullable(),
      DORVDL_COLUMN(create_time),
  });
  return columns;
}

int Notification::getType() const {
  constexpr const char* kTypes[] = {"complete", "failed", "captcha"};
  const auto* const type = std::find(std::begin(kTypes), std::end(kTypes), proto().type());
  return type == std::end(kTypes) ? -1 : static_cast<int>(type - std::begin(kTypes));
}

}  // namespace dorvdl::record
