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

  /// The value assigned to @p column, in whatever case it was named; null when there is none.
  const Parameter* Find(const std::string& column) const;

  /// Leaves @p column as it is in the rows.
  void Drop(const std::string& column);

  /// Updates only when @p demand is met; the number of rows reached is not known then.
  using Query::OnlyWhen;

  /// Has the execution fail, unless there is nothing to set. The reason is logged, so it must not
  /// quote input.
  void Refuse(std::string reason) { refusal_ = std::move(reason); }

  /// How many rows the last successful execution reached.
  using Query::AffectedRows;

  SqlText Statement() const override;

 private:
  std::vector<std::pair<std::string, Parameter>> assignments_;
  std::string refusal_;
};

}  // namespace dorvdbquery

#endif  // DORVDL_DBQUERY_UPDATE_QUERY_H_
