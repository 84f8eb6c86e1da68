// The library, by its public controls.
#ifndef BENCH_PEERS_OURS_H_
#define BENCH_PEERS_OURS_H_

#include <memory>

#include "peer.h"

namespace bench {

std::unique_ptr<Peer> MakeOurs();

}  // namespace bench

#endif  // BENCH_PEERS_OURS_H_
