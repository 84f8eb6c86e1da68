/// @file
/// What can be done with download tasks.
#ifndef DORVDL_CONTROL_INTERFACE_TASK_INTERFACE_H_
#define DORVDL_CONTROL_INTERFACE_TASK_INTERFACE_H_

#include <dorvdl/control/option/task.h>
#include <dorvdl/record/task.h>
#include <dorvdl/util/export.h>

#include <string>
#include <vector>

namespace dorvdl::control::interface {

/// Operations on the acting user's download tasks; `TaskControl`, which implements them, states
/// what each does and returns. Never owned through this type: it has no virtual destructor.
class DORVDL_EXPORT TaskInterface {
 public:
  virtual bool Create(record::Task& task, const std::string& source_path) = 0;
  virtual bool Update(const record::Task& task) = 0;
  virtual std::vector<record::Task> List(const option::task::ListOption& option) = 0;
  virtual bool Delete(const std::vector<int>& ids) = 0;
  virtual record::Task Get(int id) = 0;
  virtual bool LoExport(int id, const std::string& path) = 0;
  virtual bool LoImport(int id, const std::string& path) = 0;

 protected:
  ~TaskInterface() = default;
};

}  // namespace dorvdl::control::interface

#endif  // DORVDL_CONTROL_INTERFACE_TASK_INTERFACE_H_
