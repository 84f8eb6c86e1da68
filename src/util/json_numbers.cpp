#include "util/json_numbers.h"

#include <algorithm>
#include <locale>
#include <optional>
#include <sstream>
#include <string_view>

namespace dorvdl::util {
namespace {

constexpr std::string_view kDigits = "0123456789";

// What numbers consist of, and what would be read as a part of one that it follows.
constexpr std::string_view kWord =
    "0123456789+-._ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

std::size_t Find(std::size_t position, std::string_view text) {
  return std::min(position, text.size());
}

// The end of the text in quotes that starts at @p start.
std::size_t EndOfText(std::string_view text, std::size_t start) {
  std::size_t i = start + 1;
  while (i < text.size() && text[i] != '"') {
    i += text[i] == '\\' ? 2 : 1;
  }
  return i + 1;
}

// The end of the comment, or of what else there is, that starts at @p start with a slash.
std::size_t EndOfComment(std::string_view text, std::size_t start) {
  const std::string_view opening = text.substr(start, 2);
  if (opening == "/*") {
    return Find(text.find("*/", start + 2), text) + 2;
  }
  return opening == "//" ? Find(text.find_first_of("\r\n", start), text) : start + 1;
}

// Takes one of these characters, if it is there, off the front of @p text.
bool Take(std::string_view& text, std::string_view characters) {
  const bool there = !text.empty() && characters.find(text.front()) != std::string_view::npos;
  text.remove_prefix(there ? 1 : 0);
  return there;
}

bool TakeDigits(std::string_view& text) {
  const std::size_t count = Find(text.find_first_not_of(kDigits), text);
  text.remove_prefix(count);
  return count > 0;
}

bool TakeExponent(std::string_view& text) {
  Take(text, "+-");
  return TakeDigits(text);
}

bool IsNumber(std::string_view text) {
  Take(text, "-");
  return (Take(text, "0") || TakeDigits(text)) && (!Take(text, ".") || TakeDigits(text)) &&
         (!Take(text, "eE") || TakeExponent(text)) && text.empty();
}

// The number; nothing when the text is none, or one too large.
std::optional<double> ToDouble(const std::string& text) {
  std::istringstream stream(text);
  stream.imbue(std::locale::classic());
  double value = 0;
  return IsNumber(text) && stream >> value ? std::optional<double>(value) : std::nullopt;
}

}  // namespace

JsonNumbers::JsonNumbers(std::string& text) {
  std::size_t end = 0;
  for (std::size_t start = 0; start < text.size(); start = end) {
    if (text[start] == '"') {
      end = EndOfText(text, start);
    } else if (text[start] == '/') {
      end = EndOfComment(text, start);
    } else if (kWord.find(text[start]) == std::string_view::npos) {
      end = start + 1;
    } else {
      end = Find(text.find_first_not_of(kWord, start), text);
      TakeOut(text, start, end);
    }
  }
}

void JsonNumbers::TakeOut(std::string& text, std::size_t start, std::size_t end) {
  const std::string word = text.substr(start, end - start);
  const bool is_name = word.find_first_of("+-0123456789") != 0;
  const bool is_whole = IsNumber(word) && word.find_first_of(".eE") == std::string::npos;
  if (is_name || is_whole) {
    return;  // the parser needs no help with these
  }
  if (const std::optional<double> value = ToDouble(word)) {
    fractions_.emplace(start, *value);
    text.replace(start, word.size(), word.size(), ' ');
    text[start] = '0';
  } else {
    text[start] = '?';  // with which nothing in JSON starts
  }
}

void JsonNumbers::PutInto(Json::Value& value) const {
  for (Json::Value& element : value) {
    PutInto(element);
  }
  const auto fraction = value.isInt() ? fractions_.find(value.getOffsetStart()) : fractions_.end();
  if (fraction != fractions_.end()) {
    Json::Value number(fraction->second);
    value.swapPayload(number);
  }
}

}  // namespace dorvdl::util
