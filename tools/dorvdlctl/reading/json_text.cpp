#include "reading/json_text.h"

#include <json/reader.h>

#include <memory>

namespace dorvdl::ctl {

std::optional<Json::Value> ParseJson(const std::string& text) {
  Json::CharReaderBuilder builder;
  builder["allowTrailingCommas"] = false;
  builder["failIfExtra"] = true;
  const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  Json::Value value;
  try {
    if (reader->parse(text.data(), text.data() + text.size(), &value, nullptr)) {
      return value;
    }
  } catch (const Json::Exception&) {  // how the parser reports too deep a nesting
  }
  return std::nullopt;
}

}  // namespace dorvdl::ctl
