// Small questions about texts.
#ifndef SRC_UTIL_TEXT_H_
#define SRC_UTIL_TEXT_H_

#include <algorithm>
#include <string_view>

namespace dorvdl::util {

// Whether C would see only the part of the text before a NUL.
inline bool HasNul(std::string_view text) { return text.find('\0') != std::string_view::npos; }

// The letter in lower case when it is one of ASCII's, whatever the locale.
constexpr char AsciiToLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Whether both are the same but for the case of ASCII letters, as SQL's plain identifiers are.
inline bool EqualsInAnyCase(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return AsciiToLower(a) == AsciiToLower(b); });
}

}  // namespace dorvdl::util

#endif  // SRC_UTIL_TEXT_H_
