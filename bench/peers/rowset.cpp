#include "soci.h"
#include "soci_session.h"

namespace bench {
namespace {

class ByPosition {
 public:
  explicit ByPosition(const soci::row& row) : row_(row) {}

  int Int(const char*) { return row_.get<int>(column_++, 0); }
  long long Bigint(const char*) { return row_.get<long long>(column_++, 0); }
  void Text(const char*, std::string* field) {
    *field = row_.get<std::string>(column_++, std::string());
  }

 private:
  const soci::row& row_;
  std::size_t column_ = 0;
};

class Rowset : public SociSession {
 public:
  Rowset() : SociSession("rowset") {}

  std::size_t List(const std::string& user, Tasks* seen) override {
    const soci::rowset<soci::row> rows = (session().prepare << texts_.list.text, soci::use(user));
    Tasks tasks;
    for (const soci::row& row : rows) {
      Decode(ByPosition(row), tasks.emplace_back());
    }
    const std::size_t count = tasks.size();
    if (seen != nullptr) {
      *seen = std::move(tasks);
    }
    return count;
  }
};

}  // namespace

std::unique_ptr<Peer> MakeRowset() { return std::make_unique<Rowset>(); }

}  // namespace bench
