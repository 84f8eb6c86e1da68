#include "language.h"

#include <algorithm>
#include <cstdlib>
#include <system_error>

#include "account.h"
#include "ini.h"
#include "plain_name.h"

namespace dorv {
namespace {

// The language of a locale's name such as "de_DE.UTF-8"; empty for "C" and what is no such name. A
// language becomes a part of paths, which nothing but letters can lead astray.
std::string LanguageOfLocale(const std::string& locale) {
  const std::string language = locale.substr(0, locale.find_first_of("_-.@"));
  const bool is_code = (language.size() == 2 || language.size() == 3) &&
                       std::all_of(language.begin(), language.end(),
                                   [](char letter) { return letter >= 'a' && letter <= 'z'; });
  return is_code ? language : "";
}

std::string LanguageOfSettings(const std::string& user) {
  if (!IsPlainName(user)) {
    return "";
  }
  try {
    const auto account = FindAccountInAnyCase(user);
    const std::string& name = account ? account->name : user;
    return LanguageOfLocale(ReadIni(std::string(DORV_USER_SETTINGS) + "/" + name)[""]["language"]);
  } catch (const std::system_error&) {
    return "";
  }
}

std::string LanguageOfEnvironment() {
  for (const char* const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* const locale = std::getenv(name);
    if (locale != nullptr && *locale != '\0') {
      return LanguageOfLocale(locale);
    }
  }
  return "";
}

}  // namespace

std::vector<std::string> LanguagesOf(const std::string& user) {
  std::vector<std::string> languages = {LanguageOfSettings(user), LanguageOfEnvironment(), "en"};
  languages.erase(std::remove(languages.begin(), languages.end(), ""), languages.end());
  return languages;
}

}  // namespace dorv
