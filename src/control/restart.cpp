#include "control/restart.h"

#include <dorvdl/control/plugin_control.h>
#include <dorvdl/control/task_control.h>
#include <dorvdl/record/task_status.h>

namespace dorvdl::control {

std::vector<int> TasksInStatus(Controller& controller, int status) {
  option::task::ListOption option;
  option.status = std::vector<int>{status};
  std::vector<int> ids;
  for (const record::Task& task : TaskControl(controller).List(option)) {
    ids.push_back(task.primary_key());
  }
  return ids;
}

bool SetToWaiting(Controller& controller, int task_id) {
  record::Task task;
  task.set_primary_key(task_id);
  task.mutable_proto().set_status(record::kStatusWaiting);
  return TaskControl(controller).Update(task);
}

bool ClearPluginAttributes(Controller& controller, int task_id) {
  record::Plugin plugin;
  plugin.set_primary_key(task_id);
  plugin.set_attributes(Json::Value());
  return PluginControl(controller).Update(plugin);
}

}  // namespace dorvdl::control
