#include <dorvdl/dbquery/insert_query.h>

#include <algorithm>
#include <cstddef>

#include "dbquery/converted_values.h"
#include "dbquery/session_state.h"
#include "util/text.h"

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
  ConvertedValues converted(*state->session);
  soci::indicator indicator = soci::i_ok;
  convert(converted.values(), indicator);
  for (const std::string& column : columns_) {
    values_.push_back(converted.Get(column));
  }
}

void InsertQuery::Add(std::string column, Parameter value) {
  columns_.push_back(std::move(column));
  values_.push_back(std::move(value));
}

const Parameter* InsertQuery::Find(const std::string& column) const {
  const auto found = std::find_if(columns_.begin(), columns_.end(), [&column](const auto& name) {
    return dorvdl::util::EqualsInAnyCase(name, column);
  });
  const auto place = static_cast<std::size_t>(found - columns_.begin());
  return place < values_.size() ? &values_[place] : nullptr;
}

SqlText InsertQuery::Statement() const {
  SqlText statement;
  if (!refusal_.empty()) {
    statement.Refuse(refusal_);
  }
  statement.Append("INSERT INTO ").AppendIdentifier(table());
  if (columns_.empty()) {
    statement.Append(" DEFAULT VALUES");
  } else {
    const bool is_demanding = !demand().IsNull();
    statement.Append(" (").AppendIdentifiers(columns_);
    statement.Append(is_demanding ? ") SELECT " : ") VALUES (");
    const char* separator = "";
    for (const Parameter& value : values_) {
      statement.Append(std::exchange(separator, ", ")).Bind(value);
    }
    if (is_demanding) {
      demand().AppendWhereTo(statement);
    } else {
      statement.Append(")");
    }
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
