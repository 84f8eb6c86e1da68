#include <dorvdl/control/notification_control.h>
#include <dorvdl/db/notification.h>

#include "control/shared_table_control_impl.h"

namespace dorvdl::control {

using dorvdbquery::Condition;

template class SharedTableControl<interface::NotificationInterface, db::Notification,
                                  record::Notification>;

std::vector<record::Notification> NotificationControl::List() {
  return OnTable<db::Notification>(controller_, [](auto& table) { return table.List(); });
}

std::vector<record::Notification> NotificationControl::ListFromView() {
  return OnTable<db::Notification>(controller_, [](auto& table) { return table.ListFromView(); });
}

bool NotificationControl::DeleteEarlierThan(int id) {
  return OnTable<db::Notification>(controller_,
                                   [&](auto& table) { return table.DeleteEarlierThan(id); });
}

std::vector<record::Notification> NotificationControl::ListAll(
    const option::common::ListOption& option) {
  // The accessor's own List() hides the operator's.
  return OnTable<db::Notification>(controller_, [&](db::DBOperator<record::Notification>& table) {
    return table.List(option, Condition::Null());
  });
}

int NotificationControl::Count() {
  return OnTable<db::Notification>(
      controller_, [](auto& table) { return table.Count(Condition::Null()); }, kNoCount);
}

}  // namespace dorvdl::control
