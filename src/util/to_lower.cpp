#include <dorvdl/util/to_lower.h>

#include <climits>
#include <clocale>
#include <cwchar>
#include <cwctype>

#include "util/text.h"
#include "util/thread_locale.h"

namespace dorvdl::util {
namespace {

// The database's own locale; null on a system without it. Lives as long as the process.
locale_t DatabaseLocale() {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale;
}

bool IsAscii(const std::string& text) {
  for (const char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) {
      return false;
    }
  }
  return true;
}

std::string LowerAscii(std::string text) {
  for (char& c : text) {
    c = AsciiToLower(c);
  }
  return text;
}

}  // namespace

std::string ToLower(const std::string& text) {
  const locale_t locale = DatabaseLocale();
  if (IsAscii(text) || locale == nullptr) {
    return LowerAscii(text);
  }
  // The conversions between bytes and characters have no variant that takes a locale.
  const ThreadLocale scope(locale);
  std::string lower;
  lower.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    wchar_t character = 0;
    std::mbstate_t state{};
    const std::size_t length = std::mbrtowc(&character, text.data() + i, text.size() - i, &state);
    const bool no_character = length == 0 || length > text.size() - i;  // NUL, or not UTF-8
    if (no_character) {
      lower += text[i++];
      continue;
    }
    char bytes[MB_LEN_MAX];
    state = {};
    const std::size_t written = std::wcrtomb(
        bytes, static_cast<wchar_t>(towlower_l(static_cast<std::wint_t>(character), locale)),
        &state);
    lower.append(bytes, written);
    i += length;
  }
  return lower;
}

}  // namespace dorvdl::util
