#include "measure.h"

#include <benchmark/benchmark.h>
#include <soci/postgresql/soci-postgresql.h>
#include <soci/soci.h>

#include <cstdlib>
#include <iostream>

#include "raw.h"

namespace bench {
namespace {

// How many rows were updated until now, and how many of these updates were heap-only.
struct Updates {
  explicit Updates(PGconn* connection) {
    Run(connection, "SELECT pg_stat_force_next_flush()");
    const std::vector<double> numbers =
        Run(connection,
            "SELECT n_tup_upd, n_tup_hot_upd FROM pg_stat_user_tables "
            "WHERE relname = 'download_queue'");
    all = numbers.at(0);
    hot = numbers.at(1);
  }

  double all;
  double hot;
};

}  // namespace

void Die(const std::string& why) {
  std::cerr << "controls_bench: " << why << '\n';
  std::exit(1);
}

void Check(bool good) {
  if (!good) {
    Die("an operation failed");
  }
}

PGconn* Connection(dorvdl::db::DBSession& session) {
  return static_cast<soci::postgresql_session_backend*>(session.session().handle()->get_backend())
      ->conn_;
}

std::vector<double> Run(PGconn* connection, const char* query) {
  const Result result = Checked(connection, PQexec(connection, query));
  std::vector<double> numbers;
  for (int column = 0; PQntuples(result.get()) > 0 && column < PQnfields(result.get()); ++column) {
    numbers.push_back(std::atof(PQgetvalue(result.get(), 0, column)));
  }
  return numbers;
}

void Measure(PGconn* connection, const std::string& name, const Operation& operation) {
  operation();  // what is made once for all runs is no part of the counts
  const int allocations = CountAllocations(operation);
  const int round_trips = CountRoundTrips(connection, operation);
  benchmark::RegisterBenchmark(name.c_str(),
                               [=](benchmark::State& state) {
                                 const Updates before(connection);
                                 for ([[maybe_unused]] auto _ : state) {
                                   operation();
                                 }
                                 const Updates after(connection);
                                 state.counters["allocations"] = allocations;
                                 state.counters["round_trips"] = round_trips;
                                 if (after.all > before.all) {
                                   state.counters["hot_percent"] =
                                       100 * (after.hot - before.hot) / (after.all - before.all);
                                 }
                               })
      ->UseRealTime()
      ->Unit(benchmark::kMicrosecond);
}

}  // namespace bench
