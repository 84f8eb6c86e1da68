/// @file
/// INSERT statements.
#ifndef DORVDL_DBQUERY_INSERT_QUERY_H_
#define DORVDL_DBQUERY_INSERT_QUERY_H_

#include <dorvdl/dbquery/parameter.h>
#include <dorvdl/dbquery/query.h>
#include <dorvdl/util/export.h>
#include <soci/soci.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace dorvdbquery {

/// An INSERT of one row. With no column named it inserts a row of defaults.
class DORVDL_EXPORT InsertQuery : public Query {
 public:
  InsertQuery(const Session& session, std::string table);
  ~InsertQuery() override;

  /// Names the columns (plain identifiers) to insert, exactly these.
  void SetInsertAll(std::vector<std::string> columns) { columns_ = std::move(columns); }

  /// Gives the columns' values, one per column in the order of SetInsertAll().
  void Values(std::vector<Parameter> values) { values_ = std::move(values); }

  /// Adds one column and its value to those given.
  void Add(std::string column, Parameter value);

  /// The value given for @p column, in whatever case it was named; null when there is none.
  const Parameter* Find(const std::string& column) const;

  /// Takes the columns' values by name from @p record, through its `soci::type_conversion` over
  /// `soci::values`. Call after SetInsertAll(). The record is only read.
  ///
  /// @throws soci::soci_error when the record gives a named column no value, or one of a type that
  ///         is neither text nor number; and whatever the conversion throws.
  template <typename Record>
  void Use(const Record& record) {
    UseConverted([&record](soci::values& values, soci::indicator& indicator) {
      soci::type_conversion<Record>::to_base(record, values, indicator);
    });
  }

  /// Returns @p column (a plain identifier) of the new row into @p out, which must outlive the
  /// query's use. Replaces what an earlier call named.
  template <typename T>
  void Returning(std::string column, T& out) {
    returning_ = std::move(column);
    SetTarget([&out](soci::statement& statement) { statement.exchange(soci::into(out)); });
  }
  template <typename T>
  void Returning(std::string column, const T& out) = delete;  // a temporary, or not to be written

  /// Inserts only when @p demand is met; needs at least one column, and Returning().
  using Query::OnlyWhen;

  /// Has the execution fail. The reason is logged, so it must not quote input.
  void Refuse(std::string reason) { refusal_ = std::move(reason); }

  SqlText Statement() const override;

 private:
  void UseConverted(const std::function<void(soci::values&, soci::indicator&)>& convert);

  std::vector<std::string> columns_;
  std::vector<Parameter> values_;
  std::optional<std::string> returning_;
  std::string refusal_;
};

}  // namespace dorvdbquery

#endif  // DORVDL_DBQUERY_INSERT_QUERY_H_
