#include "any_case.h"

#include <clocale>
#include <cwchar>
#include <cwctype>

namespace dorv {
namespace {

// The locale of the package's database, or one that knows ASCII only where there is none. Lives as
// long as the process.
locale_t DatabaseLocale() {
  static const locale_t locale = [] {
    const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return utf8 != nullptr ? utf8 : newlocale(LC_CTYPE_MASK, "C", nullptr);
  }();
  return locale;
}

// Bytes that are no characters become these numbers, which no characters have.
constexpr wchar_t kBytes = 0x200000;

}  // namespace

std::wstring WithoutCase(const std::string& name) {
  std::wstring result;
  result.reserve(name.size());
  const locale_t locale = DatabaseLocale();
  const locale_t before = uselocale(locale);  // mbrtowc() has no variant that takes one
  for (std::size_t i = 0; i < name.size();) {
    wchar_t character = 0;
    std::mbstate_t state{};
    const std::size_t length = std::mbrtowc(&character, &name[i], name.size() - i, &state);
    if (length == 0 || length > name.size() - i) {
      result += static_cast<wchar_t>(kBytes + static_cast<unsigned char>(name[i++]));
    } else {
      result += static_cast<wchar_t>(towlower_l(static_cast<std::wint_t>(character), locale));
      i += length;
    }
  }
  uselocale(before);
  return result;
}

}  // namespace dorv
