// JSON from text.
#ifndef DORVDLCTL_READING_JSON_TEXT_H_
#define DORVDLCTL_READING_JSON_TEXT_H_

#include <json/value.h>

#include <optional>
#include <string>

namespace dorvdl::ctl {

// The value that @p text is the JSON of; nothing when the text is none.
std::optional<Json::Value> ParseJson(const std::string& text);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_READING_JSON_TEXT_H_
