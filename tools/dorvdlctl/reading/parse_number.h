// Decimal numbers from text.
#ifndef DORVDLCTL_READING_PARSE_NUMBER_H_
#define DORVDLCTL_READING_PARSE_NUMBER_H_

#include <charconv>
#include <string>
#include <system_error>

namespace dorvdl::ctl {

// True when the whole of @p text is a decimal number that fits into @p number, which then has it.
template <typename T>
bool ParseNumber(const std::string& text, T& number) {
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && rest == end;
}

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_READING_PARSE_NUMBER_H_
