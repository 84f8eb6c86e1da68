// What an operation costs besides time.
#ifndef BENCH_OBSERVE_H_
#define BENCH_OBSERVE_H_

#include <libpq-fe.h>

#include <functional>

namespace bench {

using Operation = std::function<void()>;

// How often the operation, run once, takes memory from the heap.
int CountAllocations(const Operation& operation);

// How often the operation, run once, waits for the server to be ready again.
int CountRoundTrips(PGconn* connection, const Operation& operation);

}  // namespace bench

#endif  // BENCH_OBSERVE_H_
