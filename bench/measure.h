// What the benchmarks share.
#ifndef BENCH_MEASURE_H_
#define BENCH_MEASURE_H_

#include <dorvdl/db/session.h>
#include <libpq-fe.h>

#include <string>
#include <vector>

#include "observe.h"

namespace bench {

[[noreturn]] void Die(const std::string& why);

// Ends the program unless @p good.
void Check(bool good);

// libpq's own connection below the library's.
PGconn* Connection(dorvdl::db::DBSession& session);

// Runs the statements and returns the numbers in the last one's first row.
std::vector<double> Run(PGconn* connection, const char* query);

// Registers the operation as a benchmark of this name.
void Measure(PGconn* connection, const std::string& name, const Operation& operation);

}  // namespace bench

#endif  // BENCH_MEASURE_H_
