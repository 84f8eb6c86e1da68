#include "rendering/record_view.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/replace.hpp>
#include <iomanip>
#include <locale>

#include "rendering/column_text.h"
#include "rendering/text.h"

namespace dorvdl::ctl {
namespace {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

constexpr int kNameWidth = 20;

bool IsNumber(const FieldDescriptor& field) {
  return field.cpp_type() == FieldDescriptor::CPPTYPE_INT32 ||
         field.cpp_type() == FieldDescriptor::CPPTYPE_INT64;
}

std::string TitleOf(const std::string& column) {
  return boost::to_upper_copy(boost::replace_all_copy(column, "_", " "), std::locale::classic());
}

}  // namespace

std::vector<std::string> ColumnsOf(const Descriptor& message) {
  std::vector<std::string> columns;
  columns.reserve(static_cast<std::size_t>(message.field_count()));
  for (int i = 0; i < message.field_count(); ++i) {
    columns.push_back(message.field(i)->name());
  }
  return columns;
}

Table TableOf(const Descriptor& message, const std::vector<std::string>& columns,
              const std::string& shrinking, const Json::Value& rows) {
  std::vector<Column> headings;
  for (const std::string& column : columns) {
    const bool is_number = IsNumber(*message.FindFieldByName(column));
    headings.push_back(
        {TitleOf(column), is_number ? Alignment::kRight : Alignment::kLeft, column == shrinking});
  }
  Table table(headings);
  for (const Json::Value& row : rows) {
    std::vector<std::string> cells;
    cells.reserve(columns.size());
    for (const std::string& column : columns) {
      cells.push_back(ColumnText(column, row[column], Detail::kBrief));
    }
    table.Add(cells);
  }
  return table;
}

void PrintRow(std::ostream& out, const std::vector<std::string>& columns, const Json::Value& row) {
  for (const std::string& column : columns) {
    if (row.isMember(column)) {
      const std::string value = ColumnText(column, row[column], Detail::kFull);
      out << std::left << std::setw(value.empty() ? 0 : kNameWidth) << column << Printable(value)
          << '\n';
    }
  }
}

}  // namespace dorvdl::ctl
