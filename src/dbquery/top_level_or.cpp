#include "dbquery/top_level_or.h"

#include <algorithm>
#include <cstddef>

#include "util/text.h"

namespace dorvdbquery {
namespace {

using dorvdl::util::AsciiToLower;

// Whether @p c can stand in a name or key word; all bytes beyond ASCII can.
bool IsInWord(char c) {
  const char lower = AsciiToLower(c);
  return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '$' ||
         static_cast<unsigned char>(c) >= 0x80;
}

std::size_t WordLength(std::string_view sql) {
  return static_cast<std::size_t>(std::find_if_not(sql.begin(), sql.end(), IsInWord) - sql.begin());
}

// The length of what @p sql starts with when it ends with the next @p end from @p start on.
std::size_t LengthUpTo(std::string_view sql, std::string_view end, std::size_t start) {
  const std::size_t found = sql.find(end, start);
  return found == std::string_view::npos ? sql.size() : found + end.size();
}

// The length of the text in quotes that @p sql starts with, in which backslashes escape.
std::size_t EscapedTextLength(std::string_view sql) {
  std::size_t i = 1;
  while (i < sql.size() && sql[i] != '\'') {
    i += sql[i] == '\\' ? 2 : 1;
  }
  return std::min(i + 1, sql.size());
}

// The length of the comment that @p sql starts with; comments nest.
std::size_t CommentLength(std::string_view sql) {
  std::size_t i = 2;
  for (int depth = 1; i < sql.size() && depth > 0; ++i) {
    const std::string_view mark = sql.substr(i, 2);
    const int change = mark == "/*" ? 1 : mark == "*/" ? -1 : 0;
    depth += change;
    i += change == 0 ? 0 : 1;
  }
  return std::min(i, sql.size());
}

// The length of the text between two tags, "$$" or "$name$", that @p sql starts with; 1 when it
// starts with no tag.
std::size_t DollarTextLength(std::string_view sql) {
  const std::size_t end = sql.find('$', 1);
  if (end == std::string_view::npos || WordLength(sql) <= end) {
    return 1;
  }
  const std::string_view tag = sql.substr(0, end + 1);
  return LengthUpTo(sql, tag, tag.size());
}

// The length of the word, text, quoted name, comment or other character that @p sql starts with. A
// doubled quote ends one text and starts the next, which comes to the same.
std::size_t TokenLength(std::string_view sql) {
  const std::string_view two = sql.substr(0, 2);
  if (two == "--") {
    return LengthUpTo(sql, "\n", 2);
  }
  if (two == "/*") {
    return CommentLength(sql);
  }
  if (two == "e'" || two == "E'") {
    return 1 + EscapedTextLength(sql.substr(1));
  }
  switch (sql[0]) {
    case '\'':
      return LengthUpTo(sql, "'", 1);
    case '"':
      return LengthUpTo(sql, "\"", 1);
    case '$':
      return DollarTextLength(sql);
    default:
      return std::max<std::size_t>(WordLength(sql), 1);
  }
}

}  // namespace

bool HasTopLevelOr(std::string_view sql) {
  int depth = 0;
  while (!sql.empty()) {
    const std::string_view token = sql.substr(0, TokenLength(sql));
    if (token == "(" || token == "[") {
      ++depth;
    } else if (token == ")" || token == "]") {
      --depth;
    } else if (depth == 0 && token.size() == 2 && AsciiToLower(token[0]) == 'o' &&
               AsciiToLower(token[1]) == 'r') {
      return true;
    }
    sql.remove_prefix(token.size());
  }
  return false;
}

}  // namespace dorvdbquery
