/// @file
/// What can be done with tasks that wait for a captcha.
#ifndef DORVDL_CONTROL_INTERFACE_CAPTCHA_INTERFACE_H_
#define DORVDL_CONTROL_INTERFACE_CAPTCHA_INTERFACE_H_

#include <dorvdl/util/export.h>

namespace dorvdl::control::interface {

/// Operations on the acting user's tasks that wait for a captcha; `CaptchaControl`, which
/// implements them, states what each does and returns. Never owned through this type: it has no
/// virtual destructor.
class DORVDL_EXPORT CaptchaInterface {
 public:
  virtual bool RestartCaptchaTask(int task_id) = 0;
  virtual bool RestartAllCaptchaTask() = 0;

 protected:
  ~CaptchaInterface() = default;
};

}  // namespace dorvdl::control::interface

#endif  // DORVDL_CONTROL_INTERFACE_CAPTCHA_INTERFACE_H_
