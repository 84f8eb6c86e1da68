// The values of columns as people read them.
#ifndef DORVDLCTL_RENDERING_COLUMN_TEXT_H_
#define DORVDLCTL_RENDERING_COLUMN_TEXT_H_

#include <json/value.h>

#include <string>

namespace dorvdl::ctl {

enum class Detail { kBrief, kFull };

// The value of a column of any of the tables: a name means the same in all of them. Times, sizes
// and truth values are made readable, JSON stands on one line, a secret shows only that there is
// one. A brief text fits into a table. Not made printable.
std::string ColumnText(const std::string& column, const Json::Value& value, Detail detail);

// Whether a column holds a secret, which is never printed.
bool IsSecret(const std::string& column);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RENDERING_COLUMN_TEXT_H_
