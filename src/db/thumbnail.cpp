#include <dorvdl/db/thumbnail.h>

#include "db/conditions.h"
#include "db/distinct.h"

namespace dorvdl::db {
namespace {

using dorvdbquery::Condition;
using ListOption = control::option::thumbnail::ListOption;

}  // namespace

template class DBOperator<record::Thumbnail>;

Thumbnail::Thumbnail(DBSession& session) : DBOperator(session) {}

const char* Thumbnail::GetTableName() { return "thumbnail"; }

const char* Thumbnail::GetPrimaryKeyName() { return "thumbnail_id"; }

Condition Thumbnail::GetCondition(const ListOption& option) const {
  return WhenSet("task_id", "=", option.task_id) && WhenSet("file_index", "=", option.file_index);
}

int Thumbnail::Count(const ListOption& option) { return DBOperator::Count(GetCondition(option)); }

std::vector<record::Thumbnail> Thumbnail::List(const ListOption& option) {
  return DBOperator::List(option.common, GetCondition(option));
}

std::vector<int> Thumbnail::ListFileIndexByTaskID(int task_id) {
  std::vector<int> indexes;
  dorvdbquery::SelectQuery query(GetSession(), GetTableName());
  query.Where(Within(Condition::ConditionFactory<int>("task_id", "=", task_id)));
  if (!ReadDistinct(query, "file_index", indexes)) {
    DORVDL_LOG(LOG_ERR, "Failed to execute list operation");
  }
  return indexes;
}

}  // namespace dorvdl::db
