/// @file
/// What a WHERE clause demands.
#ifndef DORVDL_DBQUERY_CONDITION_H_
#define DORVDL_DBQUERY_CONDITION_H_

#include <dorvdl/dbquery/sql_text.h>
#include <dorvdl/util/export.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace dorvdbquery {

/// An immutable condition on the rows of a statement. Copies are cheap and share their content.
/// Values are bound as parameters and never become statement text.
class DORVDL_EXPORT Condition {
 public:
  /// The condition that restricts nothing: with `&&` it yields the other operand, alone it makes
  /// no WHERE clause. Its negation is FALSE.
  static Condition Null();

  /// The comparison `expression op value`, such as `ConditionFactory<int>("pid", ">", 0)`.
  ///
  /// @param expression  a column or SQL expression that code has written; goes out as it stands,
  ///                    and the comparison in parentheses when the expression has an OR outside of
  ///                    its own, so that `&&` takes it as a whole.
  /// @param op          an operator that code has written ("=", "<=", "ILIKE", "~" ...); anything
  ///                    but words and operator characters makes the execution fail.
  /// @param value       bound as a parameter; a text with an embedded NUL makes the execution fail.
  template <typename T>
  static Condition ConditionFactory(const std::string& expression, const std::string& op,
                                    const T& value) {
    return Compare(expression, op, ToParameter(value));
  }

  /// The comparison `subject op value` of two texts that are both bound as parameters; for a
  /// subject that is no column but a text from elsewhere. The rest is as for ConditionFactory().
  static Condition CompareTexts(const std::string& subject, const std::string& op,
                                const std::string& value);

  /// True for rows whose @p column (a plain identifier) holds one of @p values; FALSE for no
  /// values. All values travel as one array parameter, so the text does not grow with them.
  template <typename T>
  static Condition In(const std::string& column, const std::vector<T>& values) {
    static_assert(std::is_integral_v<T>, "lists of whole numbers only");
    std::string list;
    for (const T value : values) {
      list.append(1, list.empty() ? '{' : ',').append(std::to_string(value));
    }
    return InList(column, list.empty() ? list : list + "}");
  }

  /// True for rows whose @p column holds one of the values that @p key has in those rows of @p
  /// table that meet @p condition. All three names are plain identifiers.
  static Condition InRows(const std::string& column, const std::string& table,
                          const std::string& key, const Condition& condition);

  /// True when @p table (a plain identifier) has a row that meets @p condition.
  static Condition HasRow(const std::string& table, const Condition& condition);

  /// True for rows whose @p column (a plain identifier) contains @p text literally: percent,
  /// underscore and backslash are plain characters, and case counts.
  static Condition HasSubstring(const std::string& column, const std::string& text);

  /// True for rows that this condition is false for; rows for which it is NULL meet neither.
  Condition operator!() const;

  /// True for rows that meet both, this one's terms first.
  Condition operator&&(const Condition& other) const;

  /// True for Null() only.
  bool IsNull() const { return node_ == nullptr; }

  /// Appends the condition to a statement. Must not be called on Null().
  void AppendTo(SqlText& statement) const { node_->AppendTo(statement); }

  /// Appends " WHERE " and the condition; nothing for Null().
  void AppendWhereTo(SqlText& statement) const;

 private:
  struct Node {
    virtual ~Node() = default;
    virtual void AppendTo(SqlText& statement) const = 0;
  };

  Condition() = default;

  // The condition that @p append, called with a statement, appends to it.
  template <typename Append>
  static Condition Of(Append append);

  static Condition Compare(const std::string& expression, const std::string& op, Parameter value);
  static Condition InList(const std::string& column, const std::string& array);

  std::shared_ptr<const Node> node_;
};

}  // namespace dorvdbquery

#endif  // DORVDL_DBQUERY_CONDITION_H_
