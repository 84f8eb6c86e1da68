#include <dorvdl/control/task_control.h>
#include <dorvdl/db/download_queue.h>

namespace dorvdl::control {
namespace {

// A new accessor, for one call.
db::DownloadQueue Queue(Controller& controller) {
  return controller.UseWithName<db::DownloadQueue>();
}

}  // namespace

bool TaskControl::Create(record::Task& task, const std::string& source_path) {
  return Queue(controller_).Create(task, source_path);
}

bool TaskControl::Update(const record::Task& task) { return Queue(controller_).Update(task); }

std::vector<record::Task> TaskControl::List(const option::task::ListOption& option) {
  return Queue(controller_).List(option);
}

bool TaskControl::Delete(const std::vector<int>& ids) {
  return !ids.empty() && Queue(controller_).Delete(ids);
}

record::Task TaskControl::Get(int id) { return Queue(controller_).Get(id); }

bool TaskControl::LoExport(int id, const std::string& path) {
  return !path.empty() && Queue(controller_).LoExport(id, path);
}

bool TaskControl::LoImport(int id, const std::string& path) {
  return !path.empty() && Queue(controller_).LoImport(id, path);
}

}  // namespace dorvdl::control
