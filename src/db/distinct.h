// The different values of one column.
#ifndef SRC_DB_DISTINCT_H_
#define SRC_DB_DISTINCT_H_

#include <dorvdl/dbquery/select_query.h>

#include <string>
#include <vector>

namespace dorvdl::db {

// Runs @p query with DISTINCT(@p column), an integer column, as its only field and appends the
// values to @p values in the database's order; false when the execution failed. Throws for a NULL.
bool ReadDistinct(dorvdbquery::SelectQuery& query, const std::string& column,
                  std::vector<int>& values);

}  // namespace dorvdl::db

#endif  // SRC_DB_DISTINCT_H_
