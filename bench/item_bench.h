// RSS items, by the library and by libpq alone.
#ifndef BENCH_ITEM_BENCH_H_
#define BENCH_ITEM_BENCH_H_

#include <dorvdl/db/session.h>

#include <memory>

namespace bench {

// Fills the table of RSS items and registers its benchmarks.
void MeasureItems(const std::shared_ptr<dorvdl::db::DBSession>& session);

}  // namespace bench

#endif  // BENCH_ITEM_BENCH_H_
