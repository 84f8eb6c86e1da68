/// @file
/// The table of the plug-ins' states.
#ifndef DORVDL_DB_TASK_PLUGIN_H_
#define DORVDL_DB_TASK_PLUGIN_H_

#include <dorvdl/db/operator.h>
#include <dorvdl/record/plugin.h>
#include <dorvdl/util/export.h>

#include <vector>

namespace dorvdl::db {

extern template class DORVDL_EXPORT DBOperator<record::Plugin>;

/// The state of the post-processing plug-ins, at most one row per task, without restriction to a
/// user.
class DORVDL_EXPORT TaskPlugin : public DBOperator<record::Plugin> {
 public:
  explicit TaskPlugin(DBSession& session);

  const char* GetTableName() override;
  const char* GetPrimaryKeyName() override;

  /// The rows whose plug-in is running, that is whose `pid` is greater than 0; empty on failure
  /// (logged).
  std::vector<record::Plugin> ListActivePlugin();
};

}  // namespace dorvdl::db

#endif  // DORVDL_DB_TASK_PLUGIN_H_
