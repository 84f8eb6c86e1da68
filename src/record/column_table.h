// The one statement of a record's columns, and all that follows from it.
#ifndef SRC_RECORD_COLUMN_TABLE_H_
#define SRC_RECORD_COLUMN_TABLE_H_

#include <dorvdl/dbquery/parameter.h>
#include <dorvdl/dbquery/update_query.h>
#include <dorvdl/record/ownership.h>
#include <google/protobuf/message_lite.h>
#include <json/value.h>
#include <soci/soci.h>

#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "dbquery/result_row.h"

namespace dorvdl::record {

using google::protobuf::MessageLite;

// The generated accessors of one message field, behind a cast to the message's own type.
template <typename GetResult, typename SetArgument>
struct Accessors {
  GetResult (*get)(const MessageLite&);
  void (*set)(MessageLite&, SetArgument);
};

// The kinds of fields. Each says which values of the server it can be read from, how a reader of
// such a value (see Column::Store()) is asked for it (for texts the column knows more about that),
// and how its own value is handed to SOCI and to the query builder.
struct IntField : Accessors<std::int32_t, std::int32_t> {
  static constexpr auto kKind = dorvdbquery::ValueKind::kInt;
  template <typename Reader>
  static std::int32_t Read(const Reader& reader) {
    return reader.Int();
  }
  int SqlValue(const MessageLite& message) const { return get(message); }
};
struct BigintField : Accessors<std::int64_t, std::int64_t> {
  static constexpr auto kKind = dorvdbquery::ValueKind::kBigint;
  template <typename Reader>
  static std::int64_t Read(const Reader& reader) {
    return reader.Bigint();
  }
  long long SqlValue(const MessageLite& message) const { return get(message); }
};
struct BoolField : Accessors<bool, bool> {
  static constexpr auto kKind = dorvdbquery::ValueKind::kInt;
  template <typename Reader>
  static bool Read(const Reader& reader) {
    return reader.Int() == 1;
  }
  int SqlValue(const MessageLite& message) const { return get(message) ? 1 : 0; }
};
struct TextField : Accessors<const std::string&, std::string> {
  static constexpr auto kKind = dorvdbquery::ValueKind::kText;
  const std::string& SqlValue(const MessageLite& message) const { return get(message); }
};
using Field = std::variant<IntField, BigintField, BoolField, TextField>;

// The kind of field whose generated getter returns T; there is none for other types.
template <typename T>
struct FieldFor;
template <>
struct FieldFor<std::int32_t> {
  using Type = IntField;
};
template <>
struct FieldFor<std::int64_t> {
  using Type = BigintField;
};
template <>
struct FieldFor<bool> {
  using Type = BoolField;
};
template <>
struct FieldFor<const std::string&> {
  using Type = TextField;
};

// One column: its name, its message field, and how its values are read. Made by DORVDL_COLUMN and
// refined by the functions that return a changed copy.
class Column {
 public:
  using TextConversion = std::string (*)(const std::string&);

  Column(const char* name, bool (*has)(const MessageLite&), const Field& field)
      : name_(name), has_(has), field_(field) {}

  // The record's key: what primary_key() reports when it is an integer. It is not in an update's
  // SET list.
  Column Key() const { return With(&Column::is_key_, true); }

  // A key that an update assigns all the same.
  Column UpdatedKey() const { return Key().With(&Column::is_updated_, true); }

  // It holds the name of the user to whom the row belongs.
  Column Owner() const { return With(&Column::is_owner_, true); }

  // It holds the key of the row that this one belongs to: a value of @p key in @p table.
  Column Parent(const char* table, const char* key) const {
    return With(&Column::parent_table_, table).With(&Column::parent_key_, key);
  }

  // It is not for a user to write, though the row is the user's.
  Column Withheld() const { return With(&Column::is_withheld_, true); }

  // A NULL reads as 0, or as @p text, just as it stands; without this it is an error.
  Column Nullable(const char* text = "") const {
    return With(&Column::null_text_, std::optional<std::string>(text));
  }

  // A text read from a row goes through @p conversion before it is stored.
  Column ReadThrough(TextConversion conversion) const {
    return With(&Column::conversion_, conversion);
  }

  const std::string& name() const { return name_; }
  bool is_key() const { return is_key_; }
  bool is_updated() const { return is_updated_ || !is_key_; }
  bool is_withheld() const { return is_withheld_; }
  bool MakesItAUsers() const { return is_owner_ || parent_table_ != nullptr; }
  const char* parent_table() const { return parent_table_; }
  const char* parent_key() const { return parent_key_; }
  const Field& field() const { return field_; }
  bool IsPresent(const MessageLite& message) const { return has_(message); }

  // Whether a NULL is read as the column's default and not an error.
  bool IsNullable() const { return null_text_.has_value(); }

  // Stores the value that the reader has of this column: Int(), Bigint() or Text(), each 0 or empty
  // for a NULL that this column allows and throwing for what cannot be read; and IsNull().
  template <typename Reader>
  void Store(MessageLite& message, const Reader& reader) const {
    std::visit(
        [&](const auto& field) {
          using FieldType = std::decay_t<decltype(field)>;
          if constexpr (std::is_same_v<FieldType, TextField>) {
            field.set(message, TextFrom(reader));
          } else {
            field.set(message, FieldType::Read(reader));
          }
        },
        field_);
  }

 private:
  template <typename Reader>
  std::string TextFrom(const Reader& reader) const {
    // First: it is SOCI's get() that words what a missing name is told by, not get_indicator().
    std::string text = reader.Text();
    if (null_text_ && reader.IsNull()) {
      return *null_text_;
    }
    return conversion_ == nullptr ? std::move(text) : conversion_(text);
  }

  template <typename T, typename Value>
  Column With(T Column::*member, Value value) const {
    Column copy = *this;
    copy.*member = std::move(value);
    return copy;
  }

  std::string name_;
  bool (*has_)(const MessageLite&);
  Field field_;
  bool is_key_ = false;
  bool is_updated_ = false;
  bool is_owner_ = false;
  bool is_withheld_ = false;
  const char* parent_table_ = nullptr;
  const char* parent_key_ = nullptr;
  std::optional<std::string> null_text_;
  TextConversion conversion_ = nullptr;
};

// The column of the field @p field_name of the message type that is called Message where this
// stands. The type of the column is the field's.
#define DORVDL_COLUMN(field_name)                                                              \
  ::dorvdl::record::Column(                                                                    \
      #field_name,                                                                             \
      [](const ::google::protobuf::MessageLite& message) {                                     \
        return static_cast<const Message&>(message).has_##field_name();                        \
      },                                                                                       \
      ::dorvdl::record::FieldFor<decltype(std::declval<const Message&>().field_name())>::Type{ \
          [](const ::google::protobuf::MessageLite& message) -> decltype(auto) {               \
            return static_cast<const Message&>(message).field_name();                          \
          },                                                                                   \
          [](::google::protobuf::MessageLite& message, auto value) {                           \
            static_cast<Message&>(message).set_##field_name(std::move(value));                 \
          }})

// A record's columns in their order, and the record operations that follow from them. The messages
// passed must be of the type that the table was made for. The records make theirs with `new` and
// never destroy them, for they are used in the destructors of static objects, too.
class ColumnTable {
 public:
  // Whether the records render themselves as JSON.
  enum class Rendering { kNone, kJson };

  explicit ColumnTable(std::vector<Column> columns, Rendering rendering = Rendering::kNone);
  ColumnTable(const ColumnTable&) = delete;
  ColumnTable& operator=(const ColumnTable&) = delete;

  const std::vector<Column>& columns() const { return columns_; }
  std::vector<std::string> Names() const;

  std::vector<std::string> PresentNames(const MessageLite& message) const;
  std::vector<dorvdbquery::Parameter> PresentValues(const MessageLite& message) const;

  // Assigns every present column but a plain key.
  void BindUpdate(const MessageLite& message, dorvdbquery::UpdateQuery& query) const;

  // Reads all columns; throws what SOCI throws, with the columns before the failing one stored.
  void FromValues(const soci::values& values, MessageLite& message) const;

  // Sets every present column.
  void ToValues(const MessageLite& message, soci::values& values) const;

  Rendering rendering() const { return rendering_; }

  const Ownership& ownership() const { return ownership_; }

  // Sets a key of @p json for every present column and leaves its other keys alone. A value that is
  // no object becomes one.
  void ToJson(const MessageLite& message, Json::Value& json) const;

  // The key column's value. Ends the process in a table without an integer key, for which nothing
  // may ask.
  int key(const MessageLite& message) const { return KeyField().get(message); }
  void set_key(MessageLite& message, int key) const { KeyField().set(message, key); }

 private:
  const IntField& KeyField() const;

  std::vector<Column> columns_;
  Rendering rendering_;
  const Column* key_ = nullptr;
  Ownership ownership_;
};

}  // namespace dorvdl::record

#endif  // SRC_RECORD_COLUMN_TABLE_H_
