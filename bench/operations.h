// What is measured.
#ifndef BENCH_OPERATIONS_H_
#define BENCH_OPERATIONS_H_

#include <string>

#include "connection.h"
#include "data.h"
#include "peer.h"

namespace bench {

// Registers all operations, each for the peers that offer it. Files are put into the folder.
void MeasureOperations(Connection& watcher, const Peers& peers, const Data& data,
                       const std::string& folder);

}  // namespace bench

#endif  // BENCH_OPERATIONS_H_
