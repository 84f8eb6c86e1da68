// Whether an SQL expression falls apart beside others.
#ifndef SRC_DBQUERY_TOP_LEVEL_OR_H_
#define SRC_DBQUERY_TOP_LEVEL_OR_H_

#include <string_view>

namespace dorvdbquery {

// Whether @p sql has an OR outside of brackets, quotes and comments, which an AND around it would
// take apart.
bool HasTopLevelOr(std::string_view sql);

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_TOP_LEVEL_OR_H_
