#include "record/column_table.h"

#include <dorvdl/util/log.h>

#include <cstdlib>

namespace dorvdl::record {
namespace {

// The value of one column in SOCI's dynamic row.
class ValuesReader {
 public:
  ValuesReader(const soci::values& values, const Column& column)
      : values_(values), column_(column) {}

  int Int() const { return Get<int>(); }
  long long Bigint() const { return Get<long long>(); }
  std::string Text() const { return Get<std::string>(); }
  bool IsNull() const { return values_.get_indicator(column_.name()) == soci::i_null; }

 private:
  template <typename T>
  T Get() const {
    return column_.IsNullable() ? values_.get<T>(column_.name(), T())
                                : values_.get<T>(column_.name());
  }

  const soci::values& values_;
  const Column& column_;
};

// Calls @p visit(column, field) for every column that is present in the message, in order.
template <typename Visitor>
void ForEachPresent(const std::vector<Column>& columns, const MessageLite& message,
                    Visitor&& visit) {
  for (const Column& column : columns) {
    if (column.IsPresent(message)) {
      std::visit([&](const auto& field) { visit(column, field); }, column.field());
    }
  }
}

}  // namespace

ColumnTable::ColumnTable(std::vector<Column> columns, Rendering rendering)
    : columns_(std::move(columns)), rendering_(rendering) {
  for (const Column& column : columns_) {
    if (column.is_key()) {
      key_ = &column;
      ownership_.key = column.name();
    }
    if (column.is_withheld()) {
      ownership_.withheld = column.name();
    }
    if (column.MakesItAUsers()) {
      ownership_.column = column.name();
    }
    if (column.parent_table() != nullptr) {
      ownership_.parent_table = column.parent_table();
      ownership_.parent_key = column.parent_key();
    }
  }
}

const IntField& ColumnTable::KeyField() const {
  const auto* const field = key_ == nullptr ? nullptr : std::get_if<IntField>(&key_->field());
  if (field == nullptr) {
    DORVDL_LOG(LOG_CRIT, "A record without an integer key was asked for its key");
    std::abort();
  }
  return *field;
}

std::vector<std::string> ColumnTable::Names() const {
  std::vector<std::string> names;
  names.reserve(columns_.size());
  for (const Column& column : columns_) {
    names.push_back(column.name());
  }
  return names;
}

std::vector<std::string> ColumnTable::PresentNames(const MessageLite& message) const {
  std::vector<std::string> names;
  names.reserve(columns_.size());
  for (const Column& column : columns_) {
    if (column.IsPresent(message)) {
      names.push_back(column.name());
    }
  }
  return names;
}

std::vector<dorvdbquery::Parameter> ColumnTable::PresentValues(const MessageLite& message) const {
  std::vector<dorvdbquery::Parameter> values;
  values.reserve(columns_.size());
  ForEachPresent(columns_, message, [&](const Column&, const auto& field) {
    values.push_back(dorvdbquery::ToParameter(field.SqlValue(message)));
  });
  return values;
}

void ColumnTable::BindUpdate(const MessageLite& message, dorvdbquery::UpdateQuery& query) const {
  ForEachPresent(columns_, message, [&](const Column& column, const auto& field) {
    if (column.is_updated()) {
      query.SetFactory(column.name(), field.SqlValue(message));
    }
  });
}

void ColumnTable::FromValues(const soci::values& values, MessageLite& message) const {
  for (const Column& column : columns_) {
    column.Store(message, ValuesReader(values, column));
  }
}

void ColumnTable::ToValues(const MessageLite& message, soci::values& values) const {
  ForEachPresent(columns_, message, [&](const Column& column, const auto& field) {
    values.set(column.name(), field.SqlValue(message));
  });
}

void ColumnTable::ToJson(const MessageLite& message, Json::Value& json) const {
  if (!json.isObject()) {
    json = Json::objectValue;
  }
  ForEachPresent(columns_, message, [&](const Column& column, const auto& field) {
    json[column.name()] = field.get(message);
  });
}

}  // namespace dorvdl::record
