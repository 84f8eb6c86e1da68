/// @file
/// SELECT statements.
#ifndef DORVDL_DBQUERY_SELECT_QUERY_H_
#define DORVDL_DBQUERY_SELECT_QUERY_H_

#include <dorvdl/dbquery/query.h>
#include <dorvdl/dbquery/row_target.h>
#include <dorvdl/util/export.h>
#include <soci/soci.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace dorvdbquery {

/// An expression to order by that stands in the source code: it can be made from constant text
/// only, which a string literal is, so that no text from a request becomes one.
class OrderExpression {
 public:
  template <std::size_t kSize>
  explicit constexpr OrderExpression(const char (&literal)[kSize]) : text_(literal) {}

  /// A buffer that can be written to is no literal.
  template <std::size_t kSize>
  explicit OrderExpression(char (&buffer)[kSize]) = delete;

  constexpr const char* text() const { return text_; }

 private:
  const char* text_;
};

/// The part of a SELECT that pages its rows.
class DORVDL_EXPORT SelectBase : public ConditionalQuery {
 public:
  enum Order { kAscending = 0, kDescending = 1 };

  ~SelectBase() override;

  /// Returns at most @p rows rows; 0 returns none, a negative number makes the execution fail.
  void Limit(int rows) { limit_ = rows; }

  /// Skips the first @p rows rows; a negative number makes the execution fail.
  void Offset(int rows) { offset_ = rows; }

 protected:
  using ConditionalQuery::ConditionalQuery;

  void AppendPaging(SqlText& statement) const;

 private:
  std::optional<int> limit_;
  std::optional<int> offset_;
};

/// A SELECT on one table or view; of all its columns unless fields are named.
class DORVDL_EXPORT SelectQuery : public SelectBase {
 public:
  SelectQuery(const Session& session, std::string table);
  ~SelectQuery() override;

  /// Adds a selected expression and binds it to @p out, which must outlive the query's use.
  ///
  /// @param expression  a column or SQL expression that code has written.
  template <typename T>
  void SelectField(const std::string& expression, T& out) {
    fields_.push_back(expression);
    AddTarget([&out](soci::statement& statement) { statement.exchange(soci::into(out)); });
  }
  template <typename T>
  void SelectField(const std::string& expression, const T& out) = delete;  // see Into()

  /// Adds selected columns or expressions, separated by commas, that code has written; for rows
  /// that go into a target as a whole.
  void SelectFields(const std::string& expressions) { fields_.push_back(expressions); }

  /// Binds each row to @p target, which must outlive the query's use, through its
  /// `soci::type_conversion`.
  template <typename T>
  void Into(T& target) {
    AddTarget([&target](soci::statement& statement) { statement.exchange(soci::into(target)); });
  }
  template <typename T>
  void Into(const T& target) = delete;  // a temporary, or not to be written

  /// Binds each row to a target that decodes the server's answer itself.
  void IntoRow(std::shared_ptr<RowTarget> target);

  /// Orders by @p column, after the orders given before. Capitals fold as in SQL; anything but a
  /// plain identifier makes the execution fail.
  void OrderBy(const std::string& column, Order order);

  /// Orders by an expression of the source code, after the orders given before.
  void OrderBy(OrderExpression expression, Order order);

  /// Runs the statement without reading a row. Result and failures as for Execute().
  bool ExecuteWithoutPreFetch() { return Run(); }

  /// Reads the next row into the bound targets; false when no row is left, before an execution and
  /// after one that failed. A query without targets reads no rows: RowCount() tells how many it
  /// has.
  ///
  /// @throws as Execute() does; the next call goes on with the following row.
  bool Fetch() { return FetchNext(); }

  /// How many rows the last successful execution returned.
  using Query::RowCount;

  SqlText Statement() const override;

 private:
  struct OrderTerm {
    std::string text;
    bool is_column;
    Order order;
  };

  std::vector<std::string> fields_;
  std::vector<OrderTerm> order_;
};

}  // namespace dorvdbquery

#endif  // DORVDL_DBQUERY_SELECT_QUERY_H_
