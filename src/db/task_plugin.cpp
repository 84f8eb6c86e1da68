#include <dorvdl/db/task_plugin.h>

namespace dorvdl::db {

template class DBOperator<record::Plugin>;

TaskPlugin::TaskPlugin(DBSession& session) : DBOperator(session) {}

const char* TaskPlugin::GetTableName() { return "task_plugin"; }

const char* TaskPlugin::GetPrimaryKeyName() { return "task_id"; }

std::vector<record::Plugin> TaskPlugin::ListActivePlugin() {
  return DBOperator::List({}, Condition::ConditionFactory<int>("pid", ">", 0));
}

}  // namespace dorvdl::db
