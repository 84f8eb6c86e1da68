#include "record/column_table.h"

#include <dorvdl/util/log.h>

#include <cstdlib>

namespace dorvdl::record {
namespace {

// How a field's value is handed to SOCI and to the query builder: a boolean as 0 or 1.
int SqlValue(bool value) { return value ? 1 : 0; }
int SqlValue(std::int32_t value) { return value; }
long long SqlValue(std::int64_t value) { return value; }
const std::string& SqlValue(const std::string& value) { return value; }

// Reads the column's value as the type that SqlValue() gives it; a NULL as T's default value.
template <typename T>
T ReadValue(const soci::values& values, const Column& column) {
  return column.IsNullable() ? values.get<T>(column.name(), T()) : values.get<T>(column.name());
}

// Calls @p visit(column, value) for every column that is present in the message, in order.
template <typename Visitor>
void ForEachPresent(const std::vector<Column>& columns, const MessageLite& message,
                    Visitor&& visit) {
  for (const Column& column : columns) {
    if (column.IsPresent(message)) {
      std::visit([&](const auto& field) { visit(column, field.get(message)); }, column.field());
    }
  }
}

}  // namespace

void Column::StoreText(MessageLite& message, std::string text) const {
  std::get<TextField>(field_).set(message,
                                  conversion_ == nullptr ? std::move(text) : conversion_(text));
}

void Column::StoreNullText(MessageLite& message) const {
  std::get<TextField>(field_).set(message, *null_text_);
}

ColumnTable::ColumnTable(std::vector<Column> columns, Rendering rendering)
    : columns_(std::move(columns)), rendering_(rendering) {
  for (const Column& column : columns_) {
    if (column.is_key()) {
      key_ = &column;
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
  for (const Column& column : columns_) {
    if (column.IsPresent(message)) {
      names.push_back(column.name());
    }
  }
  return names;
}

std::vector<dorvdbquery::Parameter> ColumnTable::PresentValues(const MessageLite& message) const {
  std::vector<dorvdbquery::Parameter> values;
  ForEachPresent(columns_, message, [&](const Column&, const auto& value) {
    values.push_back(dorvdbquery::ToParameter(SqlValue(value)));
  });
  return values;
}

void ColumnTable::BindUpdate(const MessageLite& message, dorvdbquery::UpdateQuery& query) const {
  ForEachPresent(columns_, message, [&](const Column& column, const auto& value) {
    if (column.is_updated()) {
      query.SetFactory(column.name(), SqlValue(value));
    }
  });
}

void ColumnTable::FromValues(const soci::values& values, MessageLite& message) const {
  for (const Column& column : columns_) {
    if (const auto* const integer = std::get_if<IntField>(&column.field())) {
      integer->set(message, ReadValue<int>(values, column));
    } else if (const auto* const bigint = std::get_if<BigintField>(&column.field())) {
      bigint->set(message, ReadValue<long long>(values, column));
    } else if (const auto* const boolean = std::get_if<BoolField>(&column.field())) {
      boolean->set(message, ReadValue<int>(values, column) == 1);
    } else {
      std::string text = ReadValue<std::string>(values, column);
      if (values.get_indicator(column.name()) == soci::i_null) {
        column.StoreNullText(message);
      } else {
        column.StoreText(message, std::move(text));
      }
    }
  }
}

void ColumnTable::ToValues(const MessageLite& message, soci::values& values) const {
  ForEachPresent(columns_, message, [&](const Column& column, const auto& value) {
    values.set(column.name(), SqlValue(value));
  });
}

void ColumnTable::ToJson(const MessageLite& message, Json::Value& json) const {
  if (!json.isObject()) {
    json = Json::objectValue;
  }
  ForEachPresent(columns_, message,
                 [&](const Column& column, const auto& value) { json[column.name()] = value; });
}

}  // namespace dorvdl::record
