#include "record/print.h"

#include <algorithm>
#include <iostream>

#include "rendering/column_text.h"
#include "rendering/message_json.h"
#include "rendering/record_view.h"
#include "rendering/table.h"

namespace dorvdl::ctl {

void PrintJson(const Json::Value& json) { std::cout << JsonText(json) << '\n'; }

Json::Value WithoutSecrets(Json::Value row) {
  for (const std::string& column : row.getMemberNames()) {
    if (IsSecret(column)) {
      row.removeMember(column);
    }
  }
  return row;
}

void PrintRow(const Description& kind, const Json::Value& row) {
  PrintRow(std::cout, kind.columns, row);
}

void PrintRows(const Description& kind, const google::protobuf::Descriptor& message,
               const Json::Value& rows, bool with_user) {
  std::vector<std::string> columns = kind.listed;
  if (!with_user && kind.key != "username") {
    columns.erase(std::remove(columns.begin(), columns.end(), "username"), columns.end());
  }
  PrintTable(TableOf(message, columns, kind.shrinking, rows));
}

void PrintNumbers(const std::vector<int>& numbers, const GlobalOptions& global) {
  Json::Value list(Json::arrayValue);
  for (const int number : numbers) {
    list.append(number);
    if (!global.json) {
      std::cout << number << '\n';
    }
  }
  if (global.json) {
    PrintJson(list);
  }
}

void PrintTable(const Table& table) { table.Print(std::cout, TerminalWidth()); }

}  // namespace dorvdl::ctl
