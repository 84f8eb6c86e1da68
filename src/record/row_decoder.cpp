#include "record/row_decoder.h"

#include <charconv>
#include <typeinfo>

#include "dbquery/result_row.h"

namespace dorvdl::record {
namespace {

using dorvdbquery::ResultRow;

// The failures are worded as SOCI words them: callers cannot tell which way a row was read.
[[noreturn]] void ThrowMissing(const Column& column) {
  throw soci::soci_error("Column '" + column.name() + "' not found");
}
[[noreturn]] void ThrowNull() { throw soci::soci_error("Null value not allowed for this type"); }

template <typename T>
T ParseNumber(std::string_view text) {
  if (text == "t" || text == "f") {  // a boolean column
    return text == "t" ? 1 : 0;
  }
  T number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw soci::soci_error("Cannot convert data.");
  }
  return number;
}

// The value of one column in the server's answer.
class TextReader {
 public:
  TextReader(std::string_view text, bool is_null) : text_(text), is_null_(is_null) {}

  std::int32_t Int() const { return is_null_ ? 0 : ParseNumber<std::int32_t>(text_); }
  std::int64_t Bigint() const { return is_null_ ? 0 : ParseNumber<std::int64_t>(text_); }
  std::string Text() const { return std::string(text_); }
  bool IsNull() const { return is_null_; }

 private:
  std::string_view text_;
  bool is_null_;
};

}  // namespace

void RowDecoder::Describe(const ResultRow& row) {
  sources_.clear();
  sources_.reserve(table_.columns().size());
  for (const Column& column : table_.columns()) {
    const int position = row.Find(column.name(), static_cast<int>(sources_.size()));
    const auto wanted = std::visit([](const auto& field) { return field.kKind; }, column.field());
    sources_.push_back({position, position >= 0 && row.Kind(position) == wanted});
  }
}

void RowDecoder::Read(const ResultRow& row) {
  MessageLite& message = destination_();
  const Source* source = sources_.data();
  for (const Column& column : table_.columns()) {
    ReadColumn(column, *source++, row, message);
  }
}

void RowDecoder::ReadColumn(const Column& column, const Source& source, const ResultRow& row,
                            MessageLite& message) {
  if (source.position < 0) {
    ThrowMissing(column);
  }
  const std::string_view text = row.Text(source.position);
  const bool is_null = text.empty() && row.IsNull(source.position);
  const bool is_default = is_null && column.IsNullable();
  if (!source.type_is_readable && !is_default) {
    throw std::bad_cast();
  }
  if (is_null && !is_default) {
    ThrowNull();
  }
  column.Store(message, TextReader(text, is_null));
}

}  // namespace dorvdl::record
