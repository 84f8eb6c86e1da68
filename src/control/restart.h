// What the restarts of parked tasks have in common.
#ifndef SRC_CONTROL_RESTART_H_
#define SRC_CONTROL_RESTART_H_

#include <dorvdl/control/controller.h>

#include <vector>

namespace dorvdl::control {

// The ids of the acting user's tasks in @p status, in the order of the list; empty on failure.
std::vector<int> TasksInStatus(Controller& controller, int status);

// Sets the status of the acting user's task to waiting, and nothing else of it.
bool SetToWaiting(Controller& controller, int task_id);

// Sets the attributes of the task's plug-in row to null; true also when there is no such row.
bool ClearPluginAttributes(Controller& controller, int task_id);

}  // namespace dorvdl::control

#endif  // SRC_CONTROL_RESTART_H_
