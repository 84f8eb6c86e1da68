#include <dorvdl/control/captcha_control.h>
#include <dorvdl/control/task_control.h>
#include <dorvdl/record/task_status.h>

#include "control/restart.h"

namespace dorvdl::control {

bool CaptchaControl::RestartCaptchaTask(int task_id) {
  // Unlike a file host's wait, which ends by itself, a captcha is restarted on a user's word: then
  // the task starts again whatever has become of it, so its status is not asked for.
  return TaskControl(controller_).Get(task_id).IsValid() && SetToWaiting(controller_, task_id) &&
         ClearPluginAttributes(controller_, task_id);
}

bool CaptchaControl::RestartAllCaptchaTask() {
  for (const int task_id : TasksInStatus(controller_, record::kStatusCaptchaNeeded)) {
    RestartCaptchaTask(task_id);
  }
  return true;
}

}  // namespace dorvdl::control
