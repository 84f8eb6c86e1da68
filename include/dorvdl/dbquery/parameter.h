/// @file
/// Values bound to a statement.
#ifndef DORVDL_DBQUERY_PARAMETER_H_
#define DORVDL_DBQUERY_PARAMETER_H_

#include <optional>
#include <string>
#include <type_traits>

namespace dorvdbquery {

/// A bound value in the server's text form; empty for NULL. Values travel beside the statement,
/// never in its text, and are never logged.
using Parameter = std::optional<std::string>;

/// The parameter for a text.
inline Parameter ToParameter(std::string text) { return text; }

/// The parameter for a whole number; a boolean becomes 0 or 1, as the schema keeps booleans.
template <typename T, typename = std::enable_if_t<std::is_integral_v<T>>>
Parameter ToParameter(T number) {
  return std::to_string(+number);
}

}  // namespace dorvdbquery

#endif  // DORVDL_DBQUERY_PARAMETER_H_
