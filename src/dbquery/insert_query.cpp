#include <dorvdl/dbquery/insert_query.h>

#include "dbquery/converted_values.h"
#include "dbquery/session_state.h"

namespace dorvdbquery {

InsertQuery::InsertQuery(const Session& session, std::string table)
    : Query(session, std::move(table)) {}

InsertQuery::~InsertQuery() = default;

void InsertQuery::UseConverted(
    const std::function<void(soci::values&, soci::indicator&)>& convert) {
  values_.clear();
  const auto state = session();
  if (state == nullptr) {
    // Nothing can be sent, and SOCI frees converted values only with a session at hand.
    values_.resize(columns_.size());
    return;
  }
  ConvertedValues converted(state->session);
  soci::indicator indicator = soci::i_ok;
  convert(converted.values(), indicator);
  for (const std::string& column : columns_) {
    values_.push_back(converted.Get(column));
  }
}

SqlText InsertQuery::Statement() const {
  SqlText statement;
  statement.Append("INSERT INTO ").AppendIdentifier(table());
  if (columns_.empty()) {
    statement.Append(" DEFAULT VALUES");
  } else {
    statement.Append(" (").AppendIdentifiers(columns_).Append(") VALUES (");
    const char* separator = "";
    for (const Parameter& value : values_) {
      statement.Append(std::exchange(separator, ", ")).Bind(value);
    }
    statement.Append(")");
    if (values_.size() != columns_.size()) {
      statement.Refuse("an insert's columns and values differ in number");
    }
  }
  if (returning_) {
    statement.Append(" RETURNING ").AppendIdentifier(*returning_);
  }
  return statement;
}

}  // namespace dorvdbquery
