// The smallest program: puts a download into a user's queue and lists what is there.
#include <dorvdl/control/task_control.h>
#include <dorvdl/record/task_status.h>

#include <ctime>
#include <exception>
#include <iostream>

int main() try {
  auto controller = dorvdl::control::Controller::ForUser("alice");
  dorvdl::control::TaskControl tasks(controller);

  dorvdl::record::Task task;
  task.mutable_proto().set_url("https://example.org/disk.iso");
  task.mutable_proto().set_task_flags(task.GetFlagByURL(task.proto().url()));
  task.mutable_proto().set_status(dorvdl::record::kStatusWaiting);
  task.mutable_proto().set_created_time(static_cast<int>(std::time(nullptr)));
  if (tasks.Create(task, "")) {
    dorvdl::control::option::task::ListOption option;
    option.common.sort_by = "progress";
    option.common.limit = 50;
    for (const dorvdl::record::Task& found : tasks.List(option)) {
      std::cout << found.primary_key() << ' ' << found.GetTaskType() << ' ' << found.proto().url()
                << '\n';
    }
  }
  if (controller.failure()) {  // of Create() or of List()
    std::cerr << "failed: " << controller.failure().message << '\n';
    return 1;
  }
} catch (const std::exception& error) {  // no connection
  std::cerr << error.what() << '\n';
  return 1;
}
