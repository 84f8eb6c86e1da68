#include "db/distinct.h"

namespace dorvdl::db {

bool ReadDistinct(dorvdbquery::SelectQuery& query, const std::string& column,
                  std::vector<int>& values) {
  int value = 0;
  query.SelectField<int>("DISTINCT(" + column + ")", value);
  if (!query.ExecuteWithoutPreFetch()) {
    return false;
  }
  values.reserve(static_cast<std::size_t>(query.RowCount()));
  while (query.Fetch()) {
    values.push_back(value);
  }
  return true;
}

}  // namespace dorvdl::db
