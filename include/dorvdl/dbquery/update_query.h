/// @file
/// UPDATE statements.
#ifndef DORVDL_DBQUERY_UPDATE_QUERY_H_
#define DORVDL_DBQUERY_UPDATE_QUERY_H_

#include <dorvdl/dbquery/parameter.h>
#include <dorvdl/dbquery/query.h>
#include <dorvdl/util/export.h>

#include <string>
#include <utility>
#include <vector>

namespace dorvdbquery {

/// An UPDATE. One that reaches no row is a success; one with nothing to set sends no statement, and
/// its execution is false without a log line.
class DORVDL_EXPORT UpdateQuery : public ConditionalQuery {
 public:
  UpdateQuery(const Session& session, std::string table);
  ~UpdateQuery() override;

  /// Adds the assignment of @p value (`int`, `long long` or `std::string`) to @p column, a plain
  /// identifier.
  template <typename T>
  void SetFactory(const std::string& column, const T& value) {
    assignments_.emplace_back(column, ToParameter(value));
  }

  /// How many rows the last successful execution reached.
  using Query::AffectedRows;

  SqlText Statement() const override;

 private:
  std::vector<std::pair<std::string, Parameter>> assignments_;
};

}  // namespace dorvdbquery

#endif  // DORVDL_DBQUERY_UPDATE_QUERY_H_
