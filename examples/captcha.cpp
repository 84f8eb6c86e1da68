// A request handler: its user has solved the captcha of a task, which goes back into the queue.
//
// usage: captcha USER TASK_ID
#include <dorvdl/control/captcha_control.h>
#include <dorvdl/control/task_control.h>
#include <dorvdl/control/unit.h>
#include <dorvdl/record/task_status.h>

#include <exception>
#include <iostream>
#include <string>

#include "tell.h"

namespace {

namespace control = dorvdl::control;
namespace record = dorvdl::record;

}  // namespace

int main(int argc, char** argv) try {
  if (argc != 3) {
    return TellUsage("captcha USER TASK_ID");
  }
  const int task_id = std::stoi(argv[2]);
  auto controller = control::Controller::ForUser(argv[1]);

  const record::Task task = control::TaskControl(controller).Get(task_id);
  if (controller.failure()) {
    return Tell("the task cannot be read", controller);
  }
  if (!task.IsValid()) {  // or another user's, which is the same to this one
    return Tell("there is no such task", controller);
  }
  // The restart itself would take a task in any state, one that is finished as well.
  if (task.proto().status() != record::kStatusCaptchaNeeded) {
    return Tell("the task waits for no captcha", controller);
  }

  control::Unit unit(controller);  // the task's row and its plug-in's, both or none
  const bool good = control::CaptchaControl(controller).RestartCaptchaTask(task_id);
  if (!good || unit.Commit() != control::Unit::Outcome::kCommitted) {
    return Tell("the task is not restarted", controller);
  }
  std::cout << "task " << task_id << " waits for a worker\n";
  return 0;
} catch (const std::exception& error) {  // no connection, or no number
  std::cerr << "captcha: " << error.what() << '\n';
  return 1;
}
