#include <dorvdl/control/task_control.h>
#include <dorvdl/db/download_queue.h>

#include "control/operation.h"

namespace dorvdl::control {
namespace {

// Runs @p call, which is given an accessor, as one operation.
template <typename Call>
auto OnQueue(Controller& controller, Call call) {
  return OnTable<db::DownloadQueue>(controller, call);
}

}  // namespace

bool TaskControl::Create(record::Task& task, const std::string& source_path) {
  return OnQueue(controller_, [&](auto& queue) { return queue.Create(task, source_path); });
}

bool TaskControl::Update(const record::Task& task) {
  return OnQueue(controller_, [&](auto& queue) { return queue.Update(task); });
}

std::vector<record::Task> TaskControl::List(const option::task::ListOption& option) {
  return OnQueue(controller_, [&](auto& queue) { return queue.List(option); });
}

bool TaskControl::Delete(const std::vector<int>& ids) {
  return ids.empty() ? NothingToDo(controller_)
                     : OnQueue(controller_, [&](auto& queue) { return queue.Delete(ids); });
}

record::Task TaskControl::Get(int id) {
  return OnQueue(controller_, [&](auto& queue) { return queue.Get(id); });
}

bool TaskControl::LoExport(int id, const std::string& path) {
  return path.empty() ? NothingToDo(controller_)
                      : OnQueue(controller_, [&](auto& queue) { return queue.LoExport(id, path); });
}

bool TaskControl::LoImport(int id, const std::string& path) {
  return path.empty() ? NothingToDo(controller_)
                      : OnQueue(controller_, [&](auto& queue) { return queue.LoImport(id, path); });
}

int TaskControl::Count(const option::task::ListOption& option) {
  return OnTable<db::DownloadQueue>(
      controller_, [&](auto& queue) { return queue.Count(option); }, kNoCount);
}

}  // namespace dorvdl::control
