/// @file
/// The plug-ins' states, for the programs that use the library.
#ifndef DORVDL_CONTROL_PLUGIN_CONTROL_H_
#define DORVDL_CONTROL_PLUGIN_CONTROL_H_

#include <dorvdl/control/interface/plugin_interface.h>
#include <dorvdl/control/option/common.h>
#include <dorvdl/control/shared_table_control.h>
#include <dorvdl/util/export.h>

#include <vector>

namespace dorvdl::db {
class TaskPlugin;
}

namespace dorvdl::control {

extern template class DORVDL_EXPORT
    SharedTableControl<interface::PluginInterface, db::TaskPlugin, record::Plugin>;

/// The states of the post-processing plug-ins, at most one per task and under its id. The acting
/// user plays no part, but on a user's controller.
class DORVDL_EXPORT PluginControl
    : public SharedTableControl<interface::PluginInterface, db::TaskPlugin, record::Plugin> {
 public:
  using SharedTableControl::SharedTableControl;

  /// The states of the plug-ins that are running (`pid` greater than 0); empty on failure (logged).
  std::vector<record::Plugin> ListActivePlugin();

  /// All states, paged and ordered by @p option; empty on failure (logged).
  std::vector<record::Plugin> ListAll(const option::common::ListOption& option);

  /// The number of all states; -1 on failure (logged).
  [[nodiscard]] int Count();
};

}  // namespace dorvdl::control

#endif  // DORVDL_CONTROL_PLUGIN_CONTROL_H_
