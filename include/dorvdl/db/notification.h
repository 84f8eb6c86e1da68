/// @file
/// The table of pending notifications.
#ifndef DORVDL_DB_NOTIFICATION_H_
#define DORVDL_DB_NOTIFICATION_H_

#include <dorvdl/db/operator.h>
#include <dorvdl/record/notification.h>
#include <dorvdl/util/export.h>

#include <vector>

namespace dorvdl::db {

extern template class DORVDL_EXPORT DBOperator<record::Notification>;

/// The pending notifications about tasks, without restriction to a user.
class DORVDL_EXPORT Notification : public DBOperator<record::Notification> {
 public:
  explicit Notification(DBSession& session);

  const char* GetTableName() override;
  const char* GetPrimaryKeyName() override;

  /// All notifications, in the database's order; empty on failure (logged).
  std::vector<record::Notification> List();

  /// All rows of the view "notification_view" by ascending id, whatever the view's own order; empty
  /// on failure (logged).
  std::vector<record::Notification> ListFromView();
};

}  // namespace dorvdl::db

#endif  // DORVDL_DB_NOTIFICATION_H_
