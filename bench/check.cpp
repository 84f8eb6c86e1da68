#include "check.h"

#include <string>

#include "files.h"
#include "messages.h"

namespace bench {
namespace {

// One peer beside the one that is the reference.
class Comparison {
 public:
  Comparison(Peer& reference, Peer& peer, bool quotes)
      : reference_(reference), peer_(peer), quotes_(quotes) {}

  void CheckLists(const Data& data) {
    for (const User& user : data.listed) {
      CheckReads(&Peer::List, Tasks(), user.tasks, user.name);
    }
    CheckReads(&Peer::ListItems, Items(), 1000, kFeed);
    CheckReads(&Peer::SearchItems, Items(), 1 + data.items / 40001, kPattern);
    Offers([&] { Expect(peer_.Count(kIdler) == reference_.Count(kIdler), "counts"); });
  }

  void CheckOneByOne(const std::vector<int>& ids) {
    for (std::size_t i = 0; i < 40; ++i) {  // some of them have NULLs
      CheckReads(&Peer::Get, Tasks(), 1, kWorker, ids.at(i));
    }
  }

  // Whether a task becomes what it is to become, and nobody reaches it under another name.
  void CheckUpdates(Connection& watcher, int id) {
    const auto check = [&](const Task& progress, const std::function<void(const char*)>& update) {
      Task expected = Stored(kWorker, id);
      update(kCreator);
      Expect(Bytes(Stored(kWorker, id)) == Bytes(expected), "updates another user's task");
      update(kWorker);
      expected.MergeFrom(progress);
      Expect(Bytes(Stored(kWorker, id)) == Bytes(expected), "updates");
    };
    const Task part = ShortProgress(id, 50);
    const Task whole = Progress(id, 51);
    Offers([&] {
      check(part, [&](const char* user) { peer_.UpdateShort(user, part); });
      check(whole, [&](const char* user) { peer_.Update(user, whole); });
    });
    const auto size = [&] {
      return watcher.Run("SELECT current_size FROM download_queue WHERE task_id = " +
                         std::to_string(id));
    };
    Offers([&] {
      const std::vector<double> before = size();
      peer_.InUnit([&] {
        peer_.Update(kWorker, Progress(id, 52));
        Expect(size() == before, "updates in a unit");
      });
      Expect(size() != before, "commits");
    });
  }

  void CheckCreates() {
    const auto check = [&](const Task& task, int id) {
      const Task stored = Stored(kCreator, id);
      Task expected = stored;
      expected.MergeFrom(task);
      Expect(Bytes(stored) == Bytes(expected), "creates");
    };
    Offers([&] {
      check(NewTask(), peer_.CreateNew(NewTask()));
      check(WholeTask(), peer_.CreateWhole(WholeTask()));
    });
  }

  void CheckFiles(int id, const std::string& folder) {
    const std::string path = MakeFile(folder, 1);
    const std::string copy = path + "." + peer_.name();
    Offers([&] {
      peer_.Import(kWorker, id, path);
      peer_.Export(kWorker, id, copy);
      Expect(AreSameFiles(path, copy), "stores files");
    });
  }

 private:
  // The peer and the reference have read the same, by this function, and as many as there are.
  template <typename Read, typename Messages, typename... Arguments>
  void CheckReads(Read read, Messages expected, int number, const Arguments&... arguments) {
    const auto count = static_cast<std::size_t>(number);
    Messages seen;
    Offers([&] {
      Expect((peer_.*read)(arguments..., &seen) == count, "counts what it reads");
      (reference_.*read)(arguments..., &expected);
      Expect(seen.size() == count && expected.size() == count, "reads");
      for (std::size_t i = 0; i < count; ++i) {
        if constexpr (std::is_same_v<Messages, Tasks>) {
          if (quotes_) {
            seen[i].clear_extra_data();
            expected[i].clear_extra_data();
          }
        }
        Expect(Bytes(seen[i]) == Bytes(expected[i]), "reads");
      }
    });
  }

  Task Stored(const char* user, int id) {
    Tasks tasks;
    Check(reference_.Get(user, id, &tasks) == 1);
    return tasks.front();
  }

  template <typename Message>
  static std::string Bytes(const Message& message) {
    return message.SerializeAsString();
  }

  void Expect(bool good, const char* what) {
    if (!good) {
      Die(peer_.name() + " " + what + " otherwise than " + reference_.name());
    }
  }

  Peer& reference_;
  Peer& peer_;
  const bool quotes_;
};

}  // namespace

void CheckAlike(Connection& watcher, const Peers& peers, const Data& data,
                const std::string& folder) {
  const std::vector<int> ids = TasksOf(watcher, kWorker);
  for (const auto& peer : peers) {
    Comparison comparison(*peers.at(1), *peer, peer == peers.front());
    comparison.CheckLists(data);
    comparison.CheckOneByOne(ids);
    comparison.CheckUpdates(watcher, ids.front());
    comparison.CheckCreates();
    comparison.CheckFiles(ids.back(), folder);
  }
}

}  // namespace bench
