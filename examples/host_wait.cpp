// A scheduler's run: puts the tasks that their file host has made wait long enough back into the
// queue, those of all users.
//
// usage: host_wait
#include <dorvdl/control/file_hosting_control.h>
#include <dorvdl/control/task_control.h>
#include <dorvdl/record/task_status.h>

#include <cstdint>
#include <ctime>
#include <exception>
#include <iostream>
#include <vector>

#include "tell.h"

namespace {

namespace control = dorvdl::control;
namespace record = dorvdl::record;

}  // namespace

int main() try {
  control::Controller controller;
  control::option::task::ListOption parked;
  parked.common.sort_by = "task_id";
  parked.status = std::vector<std::int32_t>{record::kStatusFileHostingWaiting};
  const auto tasks = control::TaskControl(controller).List(parked);
  if (controller.failure()) {
    return Tell("the tasks cannot be listed", controller);
  }

  int status = 0;
  for (const record::Task& task : tasks) {
    if (task.proto().waiting_until_time() > std::time(nullptr)) {
      continue;
    }
    if (control::FileHostingControl(controller).RestartHostWaitingTask(task.primary_key())) {
      std::cout << "task " << task.primary_key() << " waits for a worker\n";
    } else if (controller.failure()) {  // else its user has paused or removed it meanwhile
      status = Tell("a task is not restarted", controller);
    }
  }
  return status;
} catch (const std::exception& error) {  // no connection, or a row that cannot be read
  std::cerr << "host_wait: " << error.what() << '\n';
  return 1;
}
