// JSON as text.
#ifndef SRC_UTIL_JSON_H_
#define SRC_UTIL_JSON_H_

#include <json/value.h>

#include <string>

namespace dorvdl::util {

// Neither depends on a locale of the program's.

// The value as compact JSON text: no white space around it, no newline behind it. UTF-8 stays as it
// is, for readers that drop backslashes would destroy \u escapes.
std::string JsonToText(const Json::Value& value);

// Parses JSON text into @p value; comments are allowed, trailing commas are not. What follows the
// value is not looked at. False when the text is no JSON, has a number that JSON does not have (+1,
// 01, 1.) or nests too deeply; @p value then holds what the parser left.
bool JsonFromText(std::string text, Json::Value& value);

}  // namespace dorvdl::util

#endif  // SRC_UTIL_JSON_H_
