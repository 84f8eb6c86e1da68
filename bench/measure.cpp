#include "measure.h"

#include <benchmark/benchmark.h>

#include "observe.h"

namespace bench {
namespace {

// How many tasks were updated until now, and how many of these updates were heap-only.
struct Updates {
  Updates(Connection& watcher, Peer& peer) {
    peer.Run("SELECT pg_stat_force_next_flush()");  // of what its connection has counted
    const std::vector<double> numbers = watcher.Run(
        "SELECT n_tup_upd, n_tup_hot_upd FROM pg_stat_user_tables WHERE relname = "
        "'download_queue'");
    all = numbers.at(0);
    hot = numbers.at(1);
  }

  double all;
  double hot;
};

void Register(Connection& watcher, Peer& peer, Operation operation) {
  const auto run = [&peer, &operation] { operation.run(peer); };
  if (!Offers(run)) {  // what is made once for all runs is no part of the counts
    return;
  }
  const long long allocations = CountAllocations(run);
  const int round_trips = CountRoundTrips(peer, run);
  const std::string name = operation.name + "/" + peer.name();
  const auto measure = [=, &watcher, &peer](benchmark::State& state) {
    const Updates before(watcher, peer);
    for ([[maybe_unused]] auto _ : state) {
      operation.run(peer);
    }
    const Updates after(watcher, peer);
    state.counters["allocations"] = static_cast<double>(allocations);
    state.counters["round_trips"] = round_trips;
    if (after.all > before.all) {
      state.counters["hot_percent"] = 100 * (after.hot - before.hot) / (after.all - before.all);
    }
    if (operation.tidy) {
      operation.tidy();
    }
  };
  benchmark::RegisterBenchmark(name.c_str(), measure)->UseRealTime()->Unit(benchmark::kMicrosecond);
}

}  // namespace

void Measure(Connection& watcher, const Peers& peers, const Operation& operation) {
  for (const auto& peer : peers) {
    Register(watcher, *peer, operation);
  }
}

}  // namespace bench
