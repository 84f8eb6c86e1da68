#include "dbquery/converted_values.h"

#include <locale>
#include <sstream>

namespace dorvdbquery {
namespace {

template <typename T>
std::string ToText(const T& value) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text.precision(17);  // enough for every double to come back as it was
  text << value;
  return text.str();
}

// SOCI tells the type that a value was set with only by refusing the others.
template <typename First, typename... Others>
std::string GetAsOneOf(const soci::values& values, const std::string& name) {
  if constexpr (sizeof...(Others) == 0) {
    return ToText(values.get<First>(name));
  } else {
    try {
      return ToText(values.get<First>(name));
    } catch (const soci::soci_error&) {
      return GetAsOneOf<Others...>(values, name);
    }
  }
}

}  // namespace

ConvertedValues::~ConvertedValues() {
  soci::details::statement_impl(session_).bind(values_);
  soci::details::use_type<soci::values>(values_).clean_up();
}

Parameter ConvertedValues::Get(const std::string& name) const {
  if (values_.get_indicator(name) == soci::i_null) {
    return {};
  }
  return GetAsOneOf<std::string, int, long long, long, unsigned long long, unsigned long, unsigned,
                    double, short, unsigned short, char>(values_, name);
}

}  // namespace dorvdbquery
