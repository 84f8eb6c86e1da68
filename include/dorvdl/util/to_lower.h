/// @file
/// Lower-casing as the database does it.
#ifndef DORVDL_UTIL_TO_LOWER_H_
#define DORVDL_UTIL_TO_LOWER_H_

#include <dorvdl/util/export.h>

#include <string>

namespace dorvdl::util {

/// A lower-cased copy of the UTF-8 text @p text, letter by letter as the database's `lower()` does
/// it in a C.UTF-8 database, whatever the process's locale is. Bytes that are no UTF-8 pass
/// unchanged.
DORVDL_EXPORT std::string ToLower(const std::string& text);

}  // namespace dorvdl::util

#endif  // DORVDL_UTIL_TO_LOWER_H_
