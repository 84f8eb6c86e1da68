// What the peers on SOCI have in common.
#ifndef BENCH_PEERS_SOCI_SESSION_H_
#define BENCH_PEERS_SOCI_SESSION_H_

#include <soci/soci.h>

#include <string>
#include <utility>

#include "connection.h"
#include "peer.h"
#include "statements.h"

namespace bench {

class SociSession : public Peer {
 public:
  explicit SociSession(std::string name) : Peer(std::move(name)) {}

  void Trace(std::FILE* file) override { connection_.Trace(file); }
  void Run(const char* statement) override { connection_.Run(statement); }

 protected:
  soci::session& session() { return connection_.soci(); }

  // With SOCI's names for the parameters.
  const Statements texts_ = WithNames(Texts());

 private:
  Connection connection_;
};

}  // namespace bench

#endif  // BENCH_PEERS_SOCI_SESSION_H_
