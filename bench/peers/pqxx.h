// libpqxx, with prepared statements.
#ifndef BENCH_PEERS_PQXX_H_
#define BENCH_PEERS_PQXX_H_

#include <memory>

#include "peer.h"

namespace bench {

// Reads tasks only: values by the positions of their columns, or by their names.
std::unique_ptr<Peer> MakePqxx();
std::unique_ptr<Peer> MakePqxxNames();

}  // namespace bench

#endif  // BENCH_PEERS_PQXX_H_
