#include "pqxx.h"

#include <pqxx/pqxx>

#include "connection.h"
#include "statements.h"

namespace bench {
namespace {

class ByPosition {
 public:
  explicit ByPosition(const pqxx::row& row) : row_(row) {}

  int Int(const char*) { return row_[column_++].as<int>(0); }
  long long Bigint(const char*) { return row_[column_++].as<long long>(0); }
  void Text(const char*, std::string* field) { *field = row_[column_++].as<std::string>(""); }

 private:
  const pqxx::row& row_;
  pqxx::row::size_type column_ = 0;
};

class ByName {
 public:
  explicit ByName(const pqxx::row& row) : row_(row) {}

  int Int(const char* name) { return row_[name].as<int>(0); }
  long long Bigint(const char* name) { return row_[name].as<long long>(0); }
  void Text(const char* name, std::string* field) { *field = row_[name].as<std::string>(""); }

 private:
  const pqxx::row& row_;
};

template <typename Row>
class Pqxx : public Peer {
 public:
  explicit Pqxx(std::string name) : Peer(std::move(name)), connection_(Connection().Options()) {
    connection_.prepare(Texts().list.name, Texts().list.text);
    connection_.prepare(Texts().get.name, Texts().get.text);
  }

  void Trace(std::FILE* file) override { connection_.trace(file); }
  void Run(const char* statement) override { pqxx::nontransaction(connection_).exec(statement); }

  std::size_t List(const std::string& user, Tasks* seen) override {
    return Read(pqxx::nontransaction(connection_).exec_prepared(Texts().list.name, user), seen);
  }

  std::size_t Get(const std::string& user, int id, Tasks* seen) override {
    return Read(pqxx::nontransaction(connection_).exec_prepared(Texts().get.name, id, user), seen);
  }

 private:
  static std::size_t Read(const pqxx::result& result, Tasks* seen) {
    Tasks tasks;
    tasks.reserve(result.size());
    for (const pqxx::row& row : result) {
      Decode(Row(row), tasks.emplace_back());
    }
    const std::size_t count = tasks.size();
    if (seen != nullptr) {
      *seen = std::move(tasks);
    }
    return count;
  }

  pqxx::connection connection_;
};

}  // namespace

std::unique_ptr<Peer> MakePqxx() { return std::make_unique<Pqxx<ByPosition>>("pqxx"); }
std::unique_ptr<Peer> MakePqxxNames() { return std::make_unique<Pqxx<ByName>>("pqxx-names"); }

}  // namespace bench
