/// @file
/// Putting tasks that wait for a file host back into the queue.
#ifndef DORVDL_CONTROL_FILE_HOSTING_CONTROL_H_
#define DORVDL_CONTROL_FILE_HOSTING_CONTROL_H_

#include <dorvdl/control/controller.h>
#include <dorvdl/control/interface/file_hosting_interface.h>
#include <dorvdl/util/export.h>

namespace dorvdl::control {

/// Puts the acting user's tasks that wait for a file host (status 9) back to waiting (status 1).
/// Nothing else of a task changes, and nothing is logged but by the layers below. Controller says
/// what holds for all controls.
class DORVDL_EXPORT FileHostingControl : public interface::FileHostingInterface {
 public:
  explicit FileHostingControl(Controller& controller) : controller_(controller) {}

  /// Restarts the task and leaves its plug-in's row alone. False when the acting user has no such
  /// task, when it is not in status 9, or when the update failed.
  bool RestartHostWaitingTask(int task_id) override;

  /// Calls RestartHostWaitingTask(), an override of it included, for every task in status 9, and
  /// clears what the plug-in of each restarted one kept in `attributes`. True whatever the results,
  /// also when the tasks could not be listed.
  bool RestartAllHostWaitingTask() override;

 private:
  Controller& controller_;
};

}  // namespace dorvdl::control

#endif  // DORVDL_CONTROL_FILE_HOSTING_CONTROL_H_
