// The smallest program: puts a download into a user's queue and lists what is there.
#include <dorvdl/control/task_control.h>

#include <iostream>

int main() {
  dorvdl::control::Controller controller;
  controller.set_username("alice");
  dorvdl::control::TaskControl tasks(controller);

  dorvdl::record::Task task;
  task.mutable_proto().set_username("alice");
  task.mutable_proto().set_url("https://example.org/disk.iso");
  task.mutable_proto().set_task_flags(task.GetFlagByURL(task.proto().url()));
  if (!tasks.Create(task, "")) {
    return 1;  // the system log says why
  }

  dorvdl::control::option::task::ListOption option;
  option.common.sort_by = "progress";
  option.common.limit = 50;
  for (const dorvdl::record::Task& found : tasks.List(option)) {
    std::cout << found.primary_key() << ' ' << found.GetTaskType() << ' ' << found.proto().url()
              << '\n';
  }
}
