#include <dorvdl/control/plugin_control.h>
#include <dorvdl/db/task_plugin.h>

#include "control/shared_table_control_impl.h"

namespace dorvdl::control {

template class SharedTableControl<interface::PluginInterface, db::TaskPlugin, record::Plugin>;

std::vector<record::Plugin> PluginControl::ListActivePlugin() { return table().ListActivePlugin(); }

}  // namespace dorvdl::control
