#include "libpq.h"

namespace bench {
namespace {

class Params : public Libpq {
 public:
  Params() : Libpq("params") {}

 private:
  PGresult* Send(const Statement& statement, const Values& values) override {
    return PQexecParams(connection(), statement.text.c_str(), values.count(), nullptr,
                        values.data(), nullptr, nullptr, 0);
  }
};

}  // namespace

std::unique_ptr<Peer> MakeParams() { return std::make_unique<Params>(); }

}  // namespace bench
