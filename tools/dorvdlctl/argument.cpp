#include "argument.h"

#include <limits>
#include <string>

#include "reading/parse_number.h"
#include "rendering/text.h"

namespace dorvdl::ctl {

CLI::Validator NumberFrom(std::int32_t least) {
  const auto check = [least](const std::string& text) -> std::string {
    std::int32_t number = 0;
    if (ParseNumber(text, number) && number >= least && std::to_string(number) == text) {
      return "";
    }
    return "\"" + text + "\" is no whole number from " + std::to_string(least) + " to " +
           std::to_string(std::numeric_limits<std::int32_t>::max());
  };
  return CLI::Validator(check, "", "");
}

CLI::Validator Utf8Text() {
  const auto check = [](const std::string& text) -> std::string {
    return IsUtf8(text) ? "" : "not UTF-8";
  };
  return CLI::Validator(check, "", "");
}

}  // namespace dorvdl::ctl
