#include "libpq.h"

namespace bench {
namespace {

class Prepared : public Libpq {
 public:
  Prepared() : Libpq("prepared") {
    for (const Statement& statement : Texts().All()) {
      Checked(connection(),
              PQprepare(connection(), statement.name, statement.text.c_str(), 0, nullptr));
    }
  }

 private:
  PGresult* Send(const Statement& statement, const Values& values) override {
    return PQexecPrepared(connection(), statement.name, values.count(), values.data(), nullptr,
                          nullptr, 0);
  }
};

}  // namespace

std::unique_ptr<Peer> MakePrepared() { return std::make_unique<Prepared>(); }

}  // namespace bench
