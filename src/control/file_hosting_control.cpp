#include <dorvdl/control/file_hosting_control.h>
#include <dorvdl/control/task_control.h>
#include <dorvdl/record/task_status.h>

#include "control/operation.h"
#include "control/restart.h"

namespace dorvdl::control {

bool FileHostingControl::RestartHostWaitingTask(int task_id) {
  return Operate(controller_, [&](Operation& /*operation*/) {
    const record::Task task = TaskControl(controller_).Get(task_id);
    return task.IsValid() && task.proto().status() == record::kStatusFileHostingWaiting &&
           SetToWaiting(controller_, task_id);
  });
}

bool FileHostingControl::RestartAllHostWaitingTask() {
  return Operate(controller_, [&](Operation& /*operation*/) {
    for (const int task_id : TasksInStatus(controller_, record::kStatusFileHostingWaiting)) {
      // Here and not in the restart of one task, which leaves the plug-in's row alone on purpose:
      // keep it so.
      if (RestartHostWaitingTask(task_id)) {
        ClearPluginAttributes(controller_, task_id);
      }
    }
    return true;
  });
}

}  // namespace dorvdl::control
