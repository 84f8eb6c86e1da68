#include <dorvdl/dbquery/update_query.h>

namespace dorvdbquery {

UpdateQuery::UpdateQuery(const Session& session, std::string table)
    : ConditionalQuery(session, std::move(table)) {}

UpdateQuery::~UpdateQuery() = default;

SqlText UpdateQuery::Statement() const {
  SqlText statement;
  if (assignments_.empty()) {
    return statement;
  }
  statement.Append("UPDATE ").AppendIdentifier(table());
  const char* separator = " SET ";
  for (const auto& [column, value] : assignments_) {
    statement.Append(std::exchange(separator, ", "));
    statement.AppendIdentifier(column).Append(" = ").Bind(value);
  }
  AppendWhere(statement);
  return statement;
}

}  // namespace dorvdbquery
