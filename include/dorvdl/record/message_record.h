/// @file
/// The mechanism that the library's records share.
#ifndef DORVDL_RECORD_MESSAGE_RECORD_H_
#define DORVDL_RECORD_MESSAGE_RECORD_H_

#include <dorvdl/dbquery/parameter.h>
#include <dorvdl/dbquery/row_target.h>
#include <dorvdl/record/ownership.h>
#include <dorvdl/record/record_base.h>
#include <dorvdl/util/export.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace dorvdl::record {

class ColumnTable;

/// A record whose only state is a protobuf message with one field per column. Everything follows
/// from `Self::Columns()`, the record's column table.
///
/// @tparam Self  the record class itself.
template <typename Self, typename Message>
class MessageRecord : public RecordBase {
 public:
  /// A record that carries no column.
  MessageRecord() = default;

  /// A record with a copy of @p message, carrying the fields that are present in it. A message may
  /// stand wherever a record is asked for.
  MessageRecord(const Message& message) : message_(message) {}

  const Message& proto() const { return message_; }
  Message& mutable_proto() { return message_; }

  void BindUpdateField(dorvdbquery::UpdateQuery& query) const override;
  std::vector<std::string> GetInsertFields() const override;

  /// In the records that are shown as JSON (RSS feeds, filters and items, thumbnails): sets a key
  /// of @p json for every present column and leaves its other keys alone; a value that is no object
  /// becomes one. In the others: empties @p json.
  void ToJson(Json::Value& json) const override;
  int primary_key() const override;
  void set_primary_key(int key) override;
  void soci_FromBase(const soci::values& values) override;
  void soci_ToBase(soci::values& values, soci::indicator& indicator) const override;

  /// How rows of this kind belong to users. Never destroyed.
  static const Ownership& GetOwnership();

  /// The values of GetInsertFields(), in the same order.
  std::vector<dorvdbquery::Parameter> InsertValues() const;

  /// Decodes rows into this record as soci_FromBase() does, only faster. The record must outlive
  /// the target.
  std::shared_ptr<dorvdbquery::RowTarget> RowTarget() &;

  /// Decodes each row into a new record at the end of @p records, which must outlive the target.
  static std::shared_ptr<dorvdbquery::RowTarget> AppendingTarget(std::vector<Self>& records);

 private:
  Message message_;
};

/// True for the library's own records, whose rows can be decoded without SOCI's dynamic rows. A
/// class derived from one may override the conversion hooks, so it does not count.
template <typename Record, typename = void>
inline constexpr bool kIsMessageRecord = false;

namespace details {
template <typename Self, typename Message>
Self RecordOf(const MessageRecord<Self, Message>*);
}  // namespace details

template <typename Record>
inline constexpr bool
    kIsMessageRecord<Record, std::void_t<decltype(details::RecordOf(std::declval<Record*>()))>> =
        std::is_same_v<decltype(details::RecordOf(std::declval<Record*>())), Record>;

}  // namespace dorvdl::record

#endif  // DORVDL_RECORD_MESSAGE_RECORD_H_
