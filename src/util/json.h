// JSON as text.
#ifndef SRC_UTIL_JSON_H_
#define SRC_UTIL_JSON_H_

#include <json/value.h>

#include <string>

namespace dorvdl::util {

// The value as compact JSON text: no white space around it, no newline behind it. UTF-8 stays as it
// is, for readers that drop backslashes would destroy \u escapes.
std::string JsonToText(const Json::Value& value);

// Parses JSON text into @p value; comments are allowed, trailing commas are not. False when the
// text is no JSON or nests too deeply; @p value then holds what the parser left.
bool JsonFromText(const std::string& text, Json::Value& value);

}  // namespace dorvdl::util

#endif  // SRC_UTIL_JSON_H_
