// The controls' operations beside the same work done in other ways. Changes the database, so it
// works with a private server only; bench/run starts one.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "check.h"
#include "operations.h"
#include "peers/libpq.h"
#include "peers/ours.h"
#include "peers/pqxx.h"
#include "peers/soci.h"

namespace bench {

Peers MakePeers() {
  Peers peers;
  for (const auto make :
       {MakeOurs, MakePrepared, MakeParams, MakeSoci, MakeRowset, MakePqxx, MakePqxxNames}) {
    peers.push_back(make());
  }
  return peers;
}

}  // namespace bench

// With --short it measures little data, in seconds.
int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const bool is_short = argc > 1 && argv[1] == std::string_view("--short");
  if (is_short) {
    argv[1] = argv[0];
    ++argv;
    --argc;
  }
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 2;
  }
  const char* const server = std::getenv("DORVDL_PRIVATE_SERVER");
  if (server == nullptr) {
    bench::Die("changes the database: run it by bench/run");
  }
  // Goes with the server.
  const std::string folder = server + std::string("/bench");
  std::filesystem::create_directory(folder);

  const bench::Data data = is_short ? bench::ShortData() : bench::WholeData();
  bench::Connection watcher;
  bench::Fill(watcher, data);
  const bench::Peers peers = bench::MakePeers();
  bench::CheckAlike(watcher, peers, data, folder);
  bench::MeasureOperations(watcher, peers, data, folder);
  benchmark::RunSpecifiedBenchmarks();
}
