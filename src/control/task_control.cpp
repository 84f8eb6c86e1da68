#include <dorvdl/control/task_control.h>
#include <dorvdl/db/download_queue.h>

namespace dorvdl::control {

bool TaskControl::Create(record::Task& task, const std::string& source_path) {
  return controller_.UseWithName<db::DownloadQueue>().Create(task, source_path);
}

bool TaskControl::Update(const record::Task& task) {
  return controller_.UseWithName<db::DownloadQueue>().Update(task);
}

std::vector<record::Task> TaskControl::List(const option::task::ListOption& option) {
  return controller_.UseWithName<db::DownloadQueue>().List(option);
}

bool TaskControl::Delete(const std::vector<int>& ids) {
  return !ids.empty() && controller_.UseWithName<db::DownloadQueue>().Delete(ids);
}

record::Task TaskControl::Get(int id) {
  return controller_.UseWithName<db::DownloadQueue>().Get(id);
}

bool TaskControl::LoExport(int id, const std::string& path) {
  return !path.empty() && controller_.UseWithName<db::DownloadQueue>().LoExport(id, path);
}

bool TaskControl::LoImport(int id, const std::string& path) {
  return !path.empty() && controller_.UseWithName<db::DownloadQueue>().LoImport(id, path);
}

}  // namespace dorvdl::control
