// Comparing statements that were built without a server.
#ifndef TESTS_SUPPORT_SQL_MATCHERS_H_
#define TESTS_SUPPORT_SQL_MATCHERS_H_

#include <dorvdl/dbquery/condition.h>
#include <dorvdl/dbquery/query.h>
#include <dorvdl/dbquery/sql_text.h>

#include <string>
#include <vector>

namespace test_support {

// A statement as a test writes it down: its text, then its values as "$1=..." in brackets, with
// "NULL" for a NULL; or "refused: " and the reason.
inline std::string Show(const dorvdbquery::SqlText& statement) {
  if (!statement.refusal().empty()) {
    return "refused: " + statement.refusal();
  }
  std::string shown = statement.text();
  int number = 0;
  for (const dorvdbquery::Parameter& value : statement.parameters()) {
    shown += " [$" + std::to_string(++number) + "=" + value.value_or("NULL") + "]";
  }
  return shown;
}

inline std::string Show(const dorvdbquery::Query& query) { return Show(query.Statement()); }

inline std::string Show(const dorvdbquery::Condition& condition) {
  dorvdbquery::SqlText statement;
  condition.AppendTo(statement);
  return Show(statement);
}

}  // namespace test_support

#endif  // TESTS_SUPPORT_SQL_MATCHERS_H_
