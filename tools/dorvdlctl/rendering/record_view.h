// Records of any kind for people. A row is an object with a member per column.
#ifndef DORVDLCTL_RENDERING_RECORD_VIEW_H_
#define DORVDLCTL_RENDERING_RECORD_VIEW_H_

#include <google/protobuf/descriptor.h>
#include <json/value.h>

#include <ostream>
#include <string>
#include <vector>

#include "rendering/table.h"

namespace dorvdl::ctl {

// The columns of a record's message, in its order.
std::vector<std::string> ColumnsOf(const google::protobuf::Descriptor& message);

// A table of @p rows, an array, with these of their columns, numbers to the right. The column
// @p shrinking gives way when the table is too wide.
Table TableOf(const google::protobuf::Descriptor& message, const std::vector<std::string>& columns,
              const std::string& shrinking, const Json::Value& rows);

// Prints a line for each of @p columns that @p row has: the name, under which it can be set, and
// the value in full.
void PrintRow(std::ostream& out, const std::vector<std::string>& columns, const Json::Value& row);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RENDERING_RECORD_VIEW_H_
