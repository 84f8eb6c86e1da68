// Checks of what stands on the command line.
#ifndef DORVDLCTL_ARGUMENT_H_
#define DORVDLCTL_ARGUMENT_H_

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdint>
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

// For options of type int32: a decimal number, @p least or greater. (CLI11's own conversion, which
// comes after the check, would read 010 as 8; so leading zeros are refused.)
CLI::Validator NumberFrom(std::int32_t least);

// For options that take text.
CLI::Validator Utf8Text();

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_ARGUMENT_H_
