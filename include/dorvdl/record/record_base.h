/// @file
/// The contract of every record: how a row of a table is read, written and shown.
#ifndef DORVDL_RECORD_RECORD_BASE_H_
#define DORVDL_RECORD_RECORD_BASE_H_

#include <dorvdl/dbquery/insertable.h>
#include <dorvdl/dbquery/updatable.h>
#include <dorvdl/util/export.h>
#include <json/value.h>
#include <soci/soci.h>

#include <string>
#include <type_traits>
#include <vector>

namespace dorvdl::record {

/// The base of every record. A record's message keeps which columns the record carries: an insert
/// names only those, and an update changes only those.
///
/// A program can bring a record of its own by implementing the pure operations; it then works with
/// `db::DBOperator` like the library's records.
class DORVDL_EXPORT RecordBase : public dorvdbquery::Updatable, public dorvdbquery::Insertable {
 public:
  /// Adds the assignment of every present column but the key to @p query, in column order.
  void BindUpdateField(dorvdbquery::UpdateQuery& query) const override = 0;
  ~RecordBase() override;

  /// The names of the present columns, the key included, in column order.
  std::vector<std::string> GetInsertFields() const override = 0;

  /// True exactly when primary_key() is greater than 0.
  virtual bool IsValid() const;

  /// Empties @p json; records that are shown as JSON override it.
  virtual void ToJson(Json::Value& json) const;

  /// The key; 0 when it is not set.
  virtual int primary_key() const = 0;

  /// Sets the key and marks it present, also when it is 0 or negative.
  virtual void set_primary_key(int key) = 0;

  /// Reads every column by name, in column order, and marks it present.
  ///
  /// @throws soci::soci_error for a NULL where none is allowed and for a missing column,
  ///         std::bad_cast for a value of another type. What was read before stays set.
  virtual void soci_FromBase(const soci::values& values) = 0;

  /// Sets every present column by name, in column order, and @p indicator to "ok".
  virtual void soci_ToBase(soci::values& values, soci::indicator& indicator) const = 0;

 protected:
  // Copying is for whole records; through a base it would lose the message.
  RecordBase() = default;
  RecordBase(const RecordBase&) = default;
  RecordBase(RecordBase&&) = default;
  RecordBase& operator=(const RecordBase&) = default;
  RecordBase& operator=(RecordBase&&) = default;
};

}  // namespace dorvdl::record

namespace soci {

/// Lets SOCI read any record from a row and write it to one, by `into(record)` and `use(record)`.
template <typename Record>
struct type_conversion<Record,
                       std::enable_if_t<std::is_base_of_v<dorvdl::record::RecordBase, Record>>> {
  using base_type = values;

  static void from_base(const values& row, indicator /*row_indicator*/, Record& record) {
    record.soci_FromBase(row);
  }

  static void to_base(const Record& record, values& row, indicator& row_indicator) {
    record.soci_ToBase(row, row_indicator);
  }
};

}  // namespace soci

#endif  // DORVDL_RECORD_RECORD_BASE_H_
