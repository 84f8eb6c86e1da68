#include <dorvdl/dbquery/delete_query.h>

#include <utility>

namespace dorvdbquery {

DeleteQuery::DeleteQuery(const Session& session, std::string table)
    : ConditionalQuery(session, std::move(table)) {}

DeleteQuery::~DeleteQuery() = default;

SqlText DeleteQuery::Statement() const {
  SqlText statement;
  statement.Append("DELETE FROM ").AppendIdentifier(table());
  AppendWhere(statement);
  return statement;
}

}  // namespace dorvdbquery
