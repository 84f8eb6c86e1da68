// One row of the server's answer, as the decoders see it.
#ifndef SRC_DBQUERY_RESULT_ROW_H_
#define SRC_DBQUERY_RESULT_ROW_H_

#include <libpq-fe.h>

#include <cstddef>
#include <string_view>

namespace dorvdbquery {

// What a column's values may be read as; the same classes that SOCI's dynamic rows have.
enum class ValueKind { kInt, kBigint, kText, kOther };

class ResultRow {
 public:
  ResultRow(const PGresult* result, int row) : result_(result), row_(row) {}

  // The position of the column called @p name, -1 when there is none. @p hint is where it is
  // expected: columns usually come in the order they are asked for.
  int Find(std::string_view name, int hint) const;

  ValueKind Kind(int column) const;

  bool IsNull(int column) const { return PQgetisnull(result_, row_, column) != 0; }

  // The value; empty for a NULL.
  std::string_view Text(int column) const {
    return {PQgetvalue(result_, row_, column),
            static_cast<std::size_t>(PQgetlength(result_, row_, column))};
  }

 private:
  const PGresult* result_;
  int row_;
};

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_RESULT_ROW_H_
