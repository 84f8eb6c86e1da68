#include <dorvdl/dbquery/update_query.h>

#include <algorithm>

#include "util/text.h"

namespace dorvdbquery {
namespace {

using dorvdl::util::EqualsInAnyCase;

// The part of a statement that tells whether its demand is met.
constexpr char kMet[] = "dorvdl_met";

}  // namespace

UpdateQuery::UpdateQuery(const Session& session, std::string table)
    : ConditionalQuery(session, std::move(table)) {}

UpdateQuery::~UpdateQuery() = default;

const Parameter* UpdateQuery::Find(const std::string& column) const {
  for (const auto& [name, value] : assignments_) {
    if (EqualsInAnyCase(name, column)) {
      return &value;
    }
  }
  return nullptr;
}

void UpdateQuery::Drop(const std::string& column) {
  const auto is_dropped = [&column](const auto& assignment) {
    return EqualsInAnyCase(assignment.first, column);
  };
  assignments_.erase(std::remove_if(assignments_.begin(), assignments_.end(), is_dropped),
                     assignments_.end());
}

SqlText UpdateQuery::Statement() const {
  SqlText statement;
  if (assignments_.empty()) {
    return statement;
  }
  if (!refusal_.empty()) {
    statement.Refuse(refusal_);
  }
  const bool is_demanding = !demand().IsNull();
  if (is_demanding) {
    // The answer is about the demand. The update is done in any case, and reaches no row when the
    // demand is not met.
    statement.Append("WITH ").Append(kMet).Append(" AS (SELECT 1");
    demand().AppendWhereTo(statement);
    statement.Append("), dorvdl_changed AS (");
  }
  statement.Append("UPDATE ").AppendIdentifier(table());
  const char* separator = " SET ";
  for (const auto& [column, value] : assignments_) {
    statement.Append(std::exchange(separator, ", "));
    statement.AppendIdentifier(column).Append(" = ").Bind(value);
  }
  AppendWhere(statement,
              is_demanding ? Condition::HasRow(kMet, Condition::Null()) : Condition::Null());
  if (is_demanding) {
    statement.Append(") SELECT 1 FROM ").Append(kMet);
  }
  return statement;
}

}  // namespace dorvdbquery
