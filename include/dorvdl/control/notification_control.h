/// @file
/// Pending notifications, for the programs that use the library.
#ifndef DORVDL_CONTROL_NOTIFICATION_CONTROL_H_
#define DORVDL_CONTROL_NOTIFICATION_CONTROL_H_

#include <dorvdl/control/interface/notification_interface.h>
#include <dorvdl/control/option/common.h>
#include <dorvdl/control/shared_table_control.h>
#include <dorvdl/util/export.h>

#include <vector>

namespace dorvdl::db {
class Notification;
}

namespace dorvdl::control {

extern template class DORVDL_EXPORT
    SharedTableControl<interface::NotificationInterface, db::Notification, record::Notification>;

/// The pending notifications about tasks. The acting user plays no part, but on a user's
/// controller.
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

  /// The pending notifications, paged and ordered by @p option; empty on failure (logged).
  std::vector<record::Notification> ListAll(const option::common::ListOption& option);

  /// The number of pending notifications; -1 on failure (logged).
  [[nodiscard]] int Count();
};

}  // namespace dorvdl::control

#endif  // DORVDL_CONTROL_NOTIFICATION_CONTROL_H_
