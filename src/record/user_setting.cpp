#include <dorvdl/record/user_setting.h>

#include "record/message_record_impl.h"

namespace dorvdl::record {

template class MessageRecord<UserSetting, proto::UserSetting>;

const ColumnTable& UserSetting::Columns() {
  using Message = proto::UserSetting;
  static const auto& columns = *new ColumnTable({
      DORVDL_COLUMN(username).Key().Owner(),
      DORVDL_COLUMN(uid),
      DORVDL_COLUMN(share_folder),
      DORVDL_COLUMN(user_disabled),
      DORVDL_COLUMN(delete_watchtorrent),
      DORVDL_COLUMN(watchfolder),
      DORVDL_COLUMN(enable_watchffolder),
  });
  return columns;
}

bool UserSetting::IsValid() const { return !proto().username().empty(); }

}  // namespace dorvdl::record
