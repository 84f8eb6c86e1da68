// SOCI, as its documentation shows it.
#ifndef BENCH_PEERS_SOCI_H_
#define BENCH_PEERS_SOCI_H_

#include <memory>

#include "peer.h"

namespace bench {

// A statement of its own for each call, and values by the names of their columns.
std::unique_ptr<Peer> MakeSoci();

// A rowset for each list, and values by position. Has lists of tasks only.
std::unique_ptr<Peer> MakeRowset();

}  // namespace bench

#endif  // BENCH_PEERS_SOCI_H_
