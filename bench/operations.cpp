#include "operations.h"

#include "files.h"
#include "measure.h"
#include "messages.h"

namespace bench {
namespace {

// How many progress reports a program that downloads many tasks writes at a time.
constexpr int kReports = 200;

// A user's tasks in turn, and with each a moment.
class Turns {
 public:
  explicit Turns(std::vector<int> ids) : ids_(std::move(ids)) {}

  int NextId() { return ids_[static_cast<std::size_t>(++moment_) % ids_.size()]; }
  Task NextProgress() { return Progress(NextId(), moment_); }
  Task NextShortProgress() { return ShortProgress(NextId(), moment_); }

 private:
  std::vector<int> ids_;
  int moment_ = 0;
};

void WriteReports(Peer& peer, Turns& turns) {
  for (int i = 0; i < kReports; ++i) {
    peer.Update(kWorker, turns.NextProgress());
  }
}

// Each peer that is measured gets a copy of the operation, and so begins with the same task.
std::vector<Operation> TaskOperations(Turns turns) {
  return {
      {"get", [=](Peer& peer) mutable { Check(peer.Get(kWorker, turns.NextId(), nullptr) == 1); }},
      {"count", [](Peer& peer) { Check(peer.Count(kIdler) > 0); }},
      {"update/3",
       [=](Peer& peer) mutable { peer.UpdateShort(kWorker, turns.NextShortProgress()); }},
      {"update/6", [=](Peer& peer) mutable { peer.Update(kWorker, turns.NextProgress()); }},
      {"updates/200", [=](Peer& peer) mutable { WriteReports(peer, turns); }},
      {"updates/200-unit",
       [=](Peer& peer) mutable { peer.InUnit([&] { WriteReports(peer, turns); }); }},
      {"create/8", [task = NewTask()](Peer& peer) { peer.CreateNew(task); }},
      {"create/34", [task = WholeTask()](Peer& peer) { peer.CreateWhole(task); }},
  };
}

std::vector<Operation> ItemOperations() {
  return {
      {"items/1000", [](Peer& peer) { Check(peer.ListItems(kFeed, nullptr) > 0); }},
      {"search/title", [](Peer& peer) { Check(peer.SearchItems(kPattern, nullptr) > 0); }},
  };
}

// Files of these sizes, stored with one of a user's tasks and written from another.
std::vector<Operation> FileOperations(Connection& watcher, Peer& storer,
                                      const std::vector<int>& ids, const std::vector<int>& sizes,
                                      const std::string& folder) {
  std::vector<Operation> operations;
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    const std::string name = std::to_string(sizes[i]) + "MiB";
    const std::string path = MakeFile(folder, sizes[i]);
    const int into = ids.at(2 * i);
    const int from = ids.at(2 * i + 1);
    storer.Import(kWorker, from, path);
    operations.push_back({"import/" + name, [=](Peer& peer) { peer.Import(kWorker, into, path); },
                          [&watcher] { DropUnusedFiles(watcher); }});
    operations.push_back(
        {"export/" + name, [=](Peer& peer) { peer.Export(kWorker, from, path + ".out"); }});
  }
  return operations;
}

}  // namespace

void MeasureOperations(Connection& watcher, const Peers& peers, const Data& data,
                       const std::string& folder) {
  const auto measure = [&](const std::vector<Operation>& operations) {
    for (const Operation& operation : operations) {
      Measure(watcher, peers, operation);
    }
  };
  for (const User& user : data.listed) {
    measure({{"list/" + std::to_string(user.tasks),
              [name = user.name](Peer& peer) { Check(peer.List(name, nullptr) > 0); }}});
  }
  const std::vector<int> ids = TasksOf(watcher, kWorker);
  measure(TaskOperations(Turns(ids)));
  measure(ItemOperations());
  measure(FileOperations(watcher, *peers.front(), ids, data.files, folder));
}

}  // namespace bench
