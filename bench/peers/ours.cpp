#include "ours.h"

#include <dorvdl/control/rss_item_control.h>
#include <dorvdl/control/task_control.h>
#include <dorvdl/control/unit.h>

#include "connection.h"

namespace bench {
namespace {

using dorvdl::control::Controller;
using dorvdl::control::RssItemControl;
using dorvdl::control::TaskControl;
using dorvdl::control::Unit;
using ItemOption = dorvdl::control::option::rss_item::ListOption;
using TaskOption = dorvdl::control::option::task::ListOption;

template <typename Record, typename Message>
std::size_t Show(const std::vector<Record>& records, std::vector<Message>* seen) {
  if (seen != nullptr) {
    seen->clear();
    for (const Record& record : records) {
      seen->push_back(record.proto());
    }
  }
  return records.size();
}

class Ours : public Peer {
 public:
  Ours() : Peer("ours"), controller_(connection_.session()) {}

  void Trace(std::FILE* file) override { connection_.Trace(file); }
  void Run(const char* statement) override { connection_.Run(statement); }

  std::size_t List(const std::string& user, Tasks* seen) override {
    return Show(TasksOf(user).List(TaskOption()), seen);
  }

  std::size_t Get(const std::string& user, int id, Tasks* seen) override {
    const dorvdl::record::Task task = TasksOf(user).Get(id);
    if (seen != nullptr) {
      seen->assign(1, task.proto());
    }
    return task.IsValid() ? 1 : 0;
  }

  std::size_t Count(const std::string& user) override {
    return static_cast<std::size_t>(TasksOf(user).Count(TaskOption()));
  }

  std::size_t ListItems(int feed, Items* seen) override {
    ItemOption option;
    option.feed_id = feed;
    return Show(items_.List(option), seen);
  }

  std::size_t SearchItems(const std::string& pattern, Items* seen) override {
    ItemOption option;
    option.title_like = pattern;
    return Show(items_.List(option), seen);
  }

  int CreateNew(const Task& task) override { return Create(task); }
  int CreateWhole(const Task& task) override { return Create(task); }

  void UpdateShort(const std::string& user, const Task& progress) override {
    Update(user, progress);
  }

  void Update(const std::string& user, const Task& progress) override {
    Check(TasksOf(user).Update(dorvdl::record::Task(progress)));
  }

  void InUnit(const std::function<void()>& work) override {
    Unit unit(controller_);
    work();
    Check(unit.Commit() == Unit::Outcome::kCommitted);
  }

  void Import(const std::string& user, int id, const std::string& path) override {
    Check(TasksOf(user).LoImport(id, path));
  }

  void Export(const std::string& user, int id, const std::string& path) override {
    Check(TasksOf(user).LoExport(id, path));
  }

 private:
  TaskControl& TasksOf(const std::string& user) {
    controller_.set_username(user);
    return tasks_;
  }

  int Create(const Task& task) {
    dorvdl::record::Task created(task);
    Check(tasks_.Create(created, ""));
    return created.proto().task_id();
  }

  Connection connection_;
  Controller controller_;
  TaskControl tasks_{controller_};
  RssItemControl items_{controller_};
};

}  // namespace

std::unique_ptr<Peer> MakeOurs() { return std::make_unique<Ours>(); }

}  // namespace bench
