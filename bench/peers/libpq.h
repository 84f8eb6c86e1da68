// libpq alone, written out by hand for these tables: all that it takes, and no more.
#ifndef BENCH_PEERS_LIBPQ_H_
#define BENCH_PEERS_LIBPQ_H_

#include <libpq-fe.h>

#include <memory>
#include <string>

#include "connection.h"
#include "peer.h"
#include "statements.h"
#include "values.h"

namespace bench {

// What the two ways of sending a statement share. One thing it leaves out: `extra_data` is stored
// as it comes, while the library quotes it as JSON.
class Libpq : public Peer {
 public:
  void Trace(std::FILE* file) override;
  void Run(const char* statement) override;

  std::size_t List(const std::string& user, Tasks* seen) override;
  std::size_t Get(const std::string& user, int id, Tasks* seen) override;
  std::size_t Count(const std::string& user) override;
  std::size_t ListItems(int feed, Items* seen) override;
  std::size_t SearchItems(const std::string& pattern, Items* seen) override;
  int CreateNew(const Task& task) override;
  int CreateWhole(const Task& task) override;
  void UpdateShort(const std::string& user, const Task& progress) override;
  void Update(const std::string& user, const Task& progress) override;
  void InUnit(const std::function<void()>& work) override;
  void Import(const std::string& user, int id, const std::string& path) override;
  void Export(const std::string& user, int id, const std::string& path) override;

 protected:
  explicit Libpq(std::string name) : Peer(std::move(name)) {}

  PGconn* connection() { return connection_.get(); }

 private:
  // Sends one of Texts() and receives the whole answer.
  virtual PGresult* Send(const Statement& statement, const Values& values) = 0;

  Result Ask(const Statement& statement, const Values& values);

  Connection connection_;
};

// Prepares each statement once, when it connects.
std::unique_ptr<Peer> MakePrepared();

// Sends each statement's text with its values.
std::unique_ptr<Peer> MakeParams();

}  // namespace bench

#endif  // BENCH_PEERS_LIBPQ_H_
