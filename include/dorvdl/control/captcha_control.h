/// @file
/// Putting tasks that wait for a captcha back into the queue.
#ifndef DORVDL_CONTROL_CAPTCHA_CONTROL_H_
#define DORVDL_CONTROL_CAPTCHA_CONTROL_H_

#include <dorvdl/control/controller.h>
#include <dorvdl/control/interface/captcha_interface.h>
#include <dorvdl/util/export.h>

namespace dorvdl::control {

/// Puts the acting user's tasks that wait for a captcha (status 15) back to waiting (status 1), and
/// clears what their plug-in kept in `attributes`. Nothing else of a task changes, and nothing is
/// logged but by the layers below. Controller says what holds for all controls.
class DORVDL_EXPORT CaptchaControl : public interface::CaptchaInterface {
 public:
  explicit CaptchaControl(Controller& controller) : controller_(controller) {}

  /// Restarts the task, whatever its status. False when the acting user has no such task, or when
  /// an update failed; the plug-in's row is left alone when the task's update did. A task without a
  /// plug-in row is a success.
  bool RestartCaptchaTask(int task_id) override;

  /// Calls RestartCaptchaTask(), an override of it included, for every task in status 15. True
  /// whatever the results, also when the tasks could not be listed.
  bool RestartAllCaptchaTask() override;

 private:
  Controller& controller_;
};

}  // namespace dorvdl::control

#endif  // DORVDL_CONTROL_CAPTCHA_CONTROL_H_
