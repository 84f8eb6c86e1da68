// Whether all peers do the same work.
#ifndef BENCH_CHECK_H_
#define BENCH_CHECK_H_

#include <string>

#include "connection.h"
#include "data.h"
#include "peer.h"

namespace bench {

// Has every peer do all that it offers, and ends the program unless each has read what the others
// have and has written what it was given. One thing may differ: the library quotes `extra_data` as
// JSON when it reads it. Files are put into the folder.
void CheckAlike(Connection& watcher, const Peers& peers, const Data& data,
                const std::string& folder);

}  // namespace bench

#endif  // BENCH_CHECK_H_
