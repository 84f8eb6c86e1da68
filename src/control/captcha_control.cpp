#include <dorvdl/control/captcha_control.h>
#include <dorvdl/control/task_control.h>
#include <dorvdl/record/task_status.h>

#include "control/operation.h"
#include "control/restart.h"

namespace dorvdl::control {

bool CaptchaControl::RestartCaptchaTask(int task_id) {
  // The task's status is not asked for, which differs from the restart after a file host's wait on
  // purpose: keep it so.
  return Operate(controller_, [&](Operation& /*operation*/) {
    return TaskControl(controller_).Get(task_id).IsValid() && SetToWaiting(controller_, task_id) &&
           ClearPluginAttributes(controller_, task_id);
  });
}

bool CaptchaControl::RestartAllCaptchaTask() {
  return Operate(controller_, [&](Operation& /*operation*/) {
    for (const int task_id : TasksInStatus(controller_, record::kStatusCaptchaNeeded)) {
      RestartCaptchaTask(task_id);
    }
    return true;
  });
}

}  // namespace dorvdl::control
