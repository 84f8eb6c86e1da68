/// @file
/// Pending notifications, for the programs that use the library.
#ifndef DORVDL_CONTROL_NOTIFICATION_CONTROL_H_
#define DORVDL_CONTROL_NOTIFICATION_CONTROL_H_

#include <dorvdl/control/interface/notification_interface.h>
#include <dorvdl/control/shared_table_control.h>
#include <dorvdl/util/export.h>

#include <vector>

namespace dorvdl::db {
class Notification;
}

namespace dorvdl::control {

extern template class DORVDL_EXPORT
    SharedTableControl<interface::NotificationInterface, db::Notification, record::Notification>;

/// The pending notifications about tasks. The acting user plays no part.
class DORVDL_EXPORT NotificationControl
    : public SharedTableControl<interface::NotificationInterface, db::Notification,
                                record::Notification> {
 public:
  using SharedTableControl::SharedTableControl;

  /// All pending notifications; empty on failure (logged).
  std::vector<record::Notification> List() override;

  /// All rows of the view "notification_view" by ascending id; empty on failure (logged).
  std::vector<record::Notification> ListFromView();

  /// Deletes every notification whose id is @p id or less. One of them may never have been listed:
  /// ids are given out before notifications are committed, so one with a smaller id may show up
  /// after one with a greater. Delete() with the ids that were read loses none.
  bool DeleteEarlierThan(int id);
};

}  // namespace dorvdl::control

#endif  // DORVDL_CONTROL_NOTIFICATION_CONTROL_H_
