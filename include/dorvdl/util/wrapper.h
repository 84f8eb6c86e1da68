/// @file
/// Building SQL expressions around a column name.
#ifndef DORVDL_UTIL_WRAPPER_H_
#define DORVDL_UTIL_WRAPPER_H_

#include <dorvdl/util/export.h>

#include <string>

namespace dorvdl::util {

/// Wraps an expression in a function call. For expressions written in code only, never for text
/// from a request.
class DORVDL_EXPORT Wrapper {
 public:
  /// `function(argument)`, or the empty string when @p argument is empty.
  static std::string Wrap(const std::string& function, const std::string& argument);

  /// `lower(argument)`, for comparisons without regard to case; empty when @p argument is.
  static std::string Lower(const std::string& argument);
};

}  // namespace dorvdl::util

#endif  // DORVDL_UTIL_WRAPPER_H_
