#include "localised_texts.h"

#include <cerrno>
#include <optional>
#include <system_error>
#include <utility>

#include "fail.h"
#include "language.h"

namespace dorv {
namespace {

std::optional<Sections> ReadIfPresent(const std::string& path) {
  try {
    return ReadIni(path);
  } catch (const std::system_error& error) {
    if (error.code() == std::errc::no_such_file_or_directory) {
      return std::nullopt;
    }
    throw;
  }
}

}  // namespace

Sections ReadLocalisedTexts(const std::string& folder, const std::string& name,
                            const std::string& user) {
  const auto path_of = [&](const std::string& language) {
    return folder + "/texts/" + language + "/" + name;
  };
  const auto english = ReadIfPresent(path_of("en"));
  for (const std::string& language : LanguagesOf(user)) {
    auto texts = language == "en" ? english : ReadIfPresent(path_of(language));
    if (texts) {
      for (auto& [section, more] : english.value_or(Sections())) {
        (*texts)[section].insert(more.begin(), more.end());
      }
      return *std::move(texts);
    }
  }
  Fail(ENOENT, path_of("en"));
}

}  // namespace dorv
