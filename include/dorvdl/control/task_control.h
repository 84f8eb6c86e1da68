/// @file
/// Download tasks, for the programs that use the library.
#ifndef DORVDL_CONTROL_TASK_CONTROL_H_
#define DORVDL_CONTROL_TASK_CONTROL_H_

#include <dorvdl/control/controller.h>
#include <dorvdl/control/interface/task_interface.h>
#include <dorvdl/util/export.h>

#include <string>
#include <vector>

namespace dorvdl::control {

/// The download tasks of the controller's acting user, or of all users when it has none. Controller
/// says what holds for all controls.
class DORVDL_EXPORT TaskControl : public interface::TaskInterface {
 public:
  explicit TaskControl(Controller& controller) : controller_(controller) {}

  /// Inserts @p task and sets its id. Its owner is its own `username`, not the acting user. When
  /// @p source_path is not empty, the regular file there (a torrent or NZB file, read as root) is
  /// stored with it. On failure nothing is stored and @p task is as it was.
  bool Create(record::Task& task, const std::string& source_path) override;

  /// Writes the present fields of @p task to the acting user's task with its id. True also when
  /// there is none; false when only the key is present.
  bool Update(const record::Task& task) override;

  /// The acting user's tasks that meet @p option, in its order; empty on failure (logged).
  std::vector<record::Task> List(const option::task::ListOption& option) override;

  /// Deletes the acting user's tasks with these ids. False for no ids, without asking the database.
  bool Delete(const std::vector<int>& ids) override;

  /// The acting user's task with this id; not valid when there is none.
  record::Task Get(int id) override;

  /// Writes the task's stored source file to @p path, with the caller's own ids. False for an empty
  /// path, without asking the database.
  bool LoExport(int id, const std::string& path) override;

  /// Stores the regular file at @p path, read as root, as the task's source file. False for an
  /// empty path, without asking the database or switching ids.
  bool LoImport(int id, const std::string& path) override;

  /// The number of the acting user's tasks that meet @p option; -1 on failure (logged).
  [[nodiscard]] int Count(const option::task::ListOption& option);

 private:
  Controller& controller_;
};

}  // namespace dorvdl::control

#endif  // DORVDL_CONTROL_TASK_CONTROL_H_
