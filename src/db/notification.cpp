#include <dorvdl/db/notification.h>

namespace dorvdl::db {

template class DBOperator<record::Notification>;

Notification::Notification(DBSession& session) : DBOperator(session) {}

const char* Notification::GetTableName() { return "notification"; }

const char* Notification::GetPrimaryKeyName() { return "id"; }

std::vector<record::Notification> Notification::List() {
  return DBOperator::List({}, Condition::Null());
}

std::vector<record::Notification> Notification::ListFromView() {
  std::vector<record::Notification> notifications;
  dorvdbquery::SelectQuery query(GetSession(), "notification_view");
  query.OrderBy("id", dorvdbquery::SelectQuery::kAscending);
  query.Where(Within(Condition::Null()));
  if (!ReadAll(query, notifications)) {
    DORVDL_LOG(LOG_ERR, "Failed to execute list operation");
  }
  return notifications;
}

}  // namespace dorvdl::db
