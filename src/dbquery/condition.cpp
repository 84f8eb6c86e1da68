#include <dorvdl/dbquery/condition.h>

#include <string_view>
#include <utility>

#include "dbquery/top_level_or.h"

namespace dorvdbquery {
namespace {

// An operator is a word or two ("ILIKE", "IS DISTINCT FROM") or a run of operator characters.
bool IsOperator(const std::string& op) {
  constexpr std::string_view kAllowed =
      " ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz<>=!~*@#%^&|?+/";
  return !op.empty() && op.find("/*") == std::string::npos &&
         op.find_first_not_of(kAllowed) == std::string::npos;
}

void AppendOperator(const std::string& op, SqlText& statement) {
  if (!IsOperator(op)) {
    statement.Refuse("a comparison has no valid operator");
    return;
  }
  statement.Append(" ").Append(op).Append(" ");
}

}  // namespace

template <typename Append>
Condition Condition::Of(Append append) {
  struct AppendNode : Node {
    explicit AppendNode(Append function) : append(std::move(function)) {}
    void AppendTo(SqlText& statement) const override { append(statement); }
    const Append append;
  };
  Condition condition;
  condition.node_ = std::make_shared<const AppendNode>(std::move(append));
  return condition;
}

Condition Condition::Null() { return {}; }

Condition Condition::Compare(const std::string& expression, const std::string& op,
                             Parameter value) {
  const bool falls_apart = HasTopLevelOr(expression) || HasTopLevelOr(op);
  return Of([expression, op, value = std::move(value), falls_apart](SqlText& statement) {
    statement.Append(falls_apart ? "(" : "").Append(expression);
    AppendOperator(op, statement);
    statement.Bind(value).Append(falls_apart ? ")" : "");
  });
}

Condition Condition::CompareTexts(const std::string& subject, const std::string& op,
                                  const std::string& value) {
  return Of([subject, op, value](SqlText& statement) {
    statement.Bind(subject);
    AppendOperator(op, statement);
    statement.Bind(value);
  });
}

Condition Condition::InList(const std::string& column, const std::string& array) {
  return Of([column, array](SqlText& statement) {
    if (array.empty()) {
      statement.Append("FALSE");
      return;
    }
    statement.AppendIdentifier(column).Append(" = ANY(").Bind(array).Append(")");
  });
}

Condition Condition::InRows(const std::string& column, const std::string& table,
                            const std::string& key, const Condition& condition) {
  return Of([column, table, key, condition](SqlText& statement) {
    statement.AppendIdentifier(column).Append(" IN (SELECT ").AppendIdentifier(key);
    statement.Append(" FROM ").AppendIdentifier(table);
    condition.AppendWhereTo(statement);
    statement.Append(")");
  });
}

Condition Condition::HasRow(const std::string& table, const Condition& condition) {
  return Of([table, condition](SqlText& statement) {
    statement.Append("EXISTS (SELECT 1 FROM ").AppendIdentifier(table);
    condition.AppendWhereTo(statement);
    statement.Append(")");
  });
}

Condition Condition::HasSubstring(const std::string& column, const std::string& text) {
  return Of([column, text](SqlText& statement) {
    statement.Append("strpos(").AppendIdentifier(column).Append(", ").Bind(text).Append(") > 0");
  });
}

Condition Condition::operator!() const {
  if (IsNull()) {
    return Of([](SqlText& statement) { statement.Append("FALSE"); });
  }
  return Of([inner = *this](SqlText& statement) {
    statement.Append("NOT (");
    inner.AppendTo(statement);
    statement.Append(")");
  });
}

Condition Condition::operator&&(const Condition& other) const {
  if (IsNull()) {
    return other;
  }
  if (other.IsNull()) {
    return *this;
  }
  return Of([left = *this, right = other](SqlText& statement) {
    left.AppendTo(statement);
    statement.Append(" AND ");
    right.AppendTo(statement);
  });
}

void Condition::AppendWhereTo(SqlText& statement) const {
  if (!IsNull()) {
    statement.Append(" WHERE ");
    AppendTo(statement);
  }
}

}  // namespace dorvdbquery
