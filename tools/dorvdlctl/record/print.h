// Printing records of any kind.
#ifndef DORVDLCTL_RECORD_PRINT_H_
#define DORVDLCTL_RECORD_PRINT_H_

#include <json/value.h>

#include <string>
#include <vector>

#include "global_options.h"
#include "record/kind.h"

namespace dorvdl::ctl {

void PrintJson(const Json::Value& json);

// A row as programs get it, without what is secret.
Json::Value WithoutSecrets(Json::Value row);

// Prints a row for people.
void PrintRow(const Description& kind, const Json::Value& row);

// Prints rows, an array, for people; their owners too when @p with_user.
void PrintRows(const Description& kind, const google::protobuf::Descriptor& message,
               const Json::Value& rows, bool with_user);

// Prints one number a line, or an array of them.
void PrintNumbers(const std::vector<int>& numbers, const GlobalOptions& global);

void PrintTable(const Table& table);

template <typename KindType>
void Print(const KindType& kind, const typename KindType::Record& record,
           const GlobalOptions& global) {
  if (global.json) {
    PrintJson(WithoutSecrets(kind.to_json(record)));
  } else {
    PrintRow(kind, kind.to_json(record));
  }
}

template <typename KindType>
void Print(const KindType& kind, const std::vector<typename KindType::Record>& records,
           const GlobalOptions& global) {
  const bool with_user = global.user.empty();
  if (!global.json && kind.draw != nullptr) {
    PrintTable(kind.draw(records, with_user));
    return;
  }
  Json::Value rows(Json::arrayValue);
  for (const auto& record : records) {
    rows.append(WithoutSecrets(kind.to_json(record)));
  }
  if (global.json) {
    PrintJson(rows);
  } else {
    PrintRows(kind, *typename KindType::Record().proto().GetDescriptor(), rows, with_user);
  }
}

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RECORD_PRINT_H_
