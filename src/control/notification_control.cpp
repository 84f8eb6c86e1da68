#include <dorvdl/control/notification_control.h>
#include <dorvdl/db/notification.h>

#include "control/shared_table_control_impl.h"

namespace dorvdl::control {

template class SharedTableControl<interface::NotificationInterface, db::Notification,
                                  record::Notification>;

std::vector<record::Notification> NotificationControl::List() { return table().List(); }

std::vector<record::Notification> NotificationControl::ListFromView() {
  return table().ListFromView();
}

bool NotificationControl::DeleteEarlierThan(int id) { return table().DeleteEarlierThan(id); }

}  // namespace dorvdl::control
