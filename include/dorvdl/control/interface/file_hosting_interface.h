/// @file
/// What can be done with tasks that wait for a file host.
#ifndef DORVDL_CONTROL_INTERFACE_FILE_HOSTING_INTERFACE_H_
#define DORVDL_CONTROL_INTERFACE_FILE_HOSTING_INTERFACE_H_

#include <dorvdl/util/export.h>

namespace dorvdl::control::interface {

/// Operations on the acting user's tasks that wait for a file host; `FileHostingControl`, which
/// implements them, states what each does and returns. Never owned through this type: it has no
/// virtual destructor.
class DORVDL_EXPORT FileHostingInterface {
 public:
  virtual bool RestartHostWaitingTask(int task_id) = 0;
  virtual bool RestartAllHostWaitingTask() = 0;

 protected:
  ~FileHostingInterface() = default;
};

}  // namespace dorvdl::control::interface

#endif  // DORVDL_CONTROL_INTERFACE_FILE_HOSTING_INTERFACE_H_
