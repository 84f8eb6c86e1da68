// One way of reading and writing the database, which is measured beside the others.
#ifndef BENCH_PEER_H_
#define BENCH_PEER_H_

#include <cstddef>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "columns.h"

namespace bench {

// Thrown by an operation that a peer leaves out.
struct LeftOut {};

// Has a connection of its own, made like all others. All peers do the same work: they fill the same
// messages and reach the same rows, those of a user, whose name is given in lower case and compared
// without regard to case. Whoever gives `seen` gets a copy of what was read there; nobody does
// while the peer is measured. A peer overrides what it has a way of its own for. It ends the
// program on any error.
class Peer {
 public:
  explicit Peer(std::string name) : name_(std::move(name)) {}
  virtual ~Peer() = default;
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  // What it is called in the results.
  const std::string& name() const { return name_; }

  // Has libpq write each message on the connection to the file; to none when it is null.
  virtual void Trace(std::FILE* file) = 0;
  // Runs any statement on the connection.
  virtual void Run(const char* statement) = 0;

  // Read all of a user's tasks, or one; how many there are.
  virtual std::size_t List(const std::string& user, Tasks* seen);
  virtual std::size_t Get(const std::string& user, int id, Tasks* seen);
  virtual std::size_t Count(const std::string& user);

  // Read a feed's items, or those with a title like the pattern; how many there are.
  virtual std::size_t ListItems(int feed, Items* seen);
  virtual std::size_t SearchItems(const std::string& pattern, Items* seen);

  // Insert a task with BENCH_NEW_TASK_COLUMNS, or with all columns, and return its id.
  virtual int CreateNew(const Task& task);
  virtual int CreateWhole(const Task& task);

  // Write a progress report to a user's task: the size, rate and pieces that have come, or the
  // peers and the upload as well.
  virtual void UpdateShort(const std::string& user, const Task& progress);
  virtual void Update(const std::string& user, const Task& progress);

  // Does the work in one transaction.
  virtual void InUnit(const std::function<void()>& work);

  // Store the file at the path as the task's, or write the task's to the path.
  virtual void Import(const std::string& user, int id, const std::string& path);
  virtual void Export(const std::string& user, int id, const std::string& path);

 private:
  const std::string name_;
};

using Peers = std::vector<std::unique_ptr<Peer>>;

// All of them, the library first. The second is bare libpq with prepared statements, which the
// others are compared with.
Peers MakePeers();

// Does what the call asks of a peer; false when the peer leaves it out.
template <typename Call>
bool Offers(Call call) {
  try {
    call();
    return true;
  } catch (const LeftOut&) {
    return false;
  }
}

}  // namespace bench

#endif  // BENCH_PEER_H_
