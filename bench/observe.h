// What an operation costs besides time.
#ifndef BENCH_OBSERVE_H_
#define BENCH_OBSERVE_H_

#include <functional>

#include "peer.h"

namespace bench {

// How often the operation, run once, takes memory from the heap.
long long CountAllocations(const std::function<void()>& operation);

// How often the operation of the peer, run once, waits for the server to be ready again.
int CountRoundTrips(Peer& peer, const std::function<void()>& operation);

}  // namespace bench

#endif  // BENCH_OBSERVE_H_
