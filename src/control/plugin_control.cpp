#include <dorvdl/control/plugin_control.h>
#include <dorvdl/db/task_plugin.h>

#include "control/shared_table_control_impl.h"

namespace dorvdl::control {

using dorvdbquery::Condition;

template class SharedTableControl<interface::PluginInterface, db::TaskPlugin, record::Plugin>;

std::vector<record::Plugin> PluginControl::ListActivePlugin() {
  return OnTable<db::TaskPlugin>(controller_, [](auto& table) { return table.ListActivePlugin(); });
}

std::vector<record::Plugin> PluginControl::ListAll(const option::common::ListOption& option) {
  return OnTable<db::TaskPlugin>(
      controller_, [&](auto& table) { return table.List(option, Condition::Null()); });
}

int PluginControl::Count() {
  return OnTable<db::TaskPlugin>(
      controller_, [](auto& table) { return table.Count(Condition::Null()); }, kNoCount);
}

}  // namespace dorvdl::control
