// How an operation of a peer is measured.
#ifndef BENCH_MEASURE_H_
#define BENCH_MEASURE_H_

#include <functional>
#include <string>

#include "connection.h"
#include "peer.h"

namespace bench {

struct Operation {
  std::string name;  // of its row in the table
  std::function<void(Peer&)> run;
  // What is done after some runs, unmeasured; may be empty.
  std::function<void()> tidy = {};
};

// Registers the operation for each of the peers that has a way to do it. The connection, the peers
// and what the operation refers to must live as long as benchmarks run.
void Measure(Connection& watcher, const Peers& peers, const Operation& operation);

}  // namespace bench

#endif  // BENCH_MEASURE_H_
