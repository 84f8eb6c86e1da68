#include "rendering/text.h"

#include <wchar.h>

#include <boost/algorithm/string/trim_all.hpp>
#include <clocale>
#include <cstdio>
#include <optional>
#include <sstream>
#include <stdexcept>

namespace dorvdl::ctl {
namespace {

// One character of a text; without a code when its byte is no UTF-8.
struct Character {
  std::string bytes;
  std::optional<wchar_t> code;
};

// The character of @p text that begins at @p position, which is moved behind it.
Character NextCharacter(const std::string& text, std::size_t& position) {
  wchar_t code = 0;
  std::mbstate_t state{};
  const std::size_t rest = text.size() - position;
  std::size_t length = std::mbrtowc(&code, text.data() + position, rest, &state);
  const bool valid = length <= rest;  // the codes for errors are the greatest numbers there are
  if (!valid || length == 0) {        // 0 stands for a NUL character
    length = 1;
  }
  Character character{text.substr(position, length), {}};
  if (valid) {
    character.code = code;
  }
  position += length;
  return character;
}

bool TurnsDirection(wchar_t code) {
  return code == 0x61c || code == 0x200e || code == 0x200f || (code >= 0x202a && code <= 0x202e) ||
         (code >= 0x2066 && code <= 0x2069);
}

std::string Escape(const Character& character) {
  if (character.bytes == "\n") {
    return "\\n";
  }
  if (character.bytes == "\t") {
    return "\\t";
  }
  const bool is_byte = character.bytes.size() == 1;
  const unsigned number = is_byte ? static_cast<unsigned char>(character.bytes.front())
                                  : static_cast<unsigned>(*character.code);
  char escape[16];
  std::snprintf(escape, sizeof(escape), is_byte ? "\\x%02x" : "\\u{%x}", number);
  return escape;
}

}  // namespace

void UseUtf8() {
  if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr) {
    throw std::runtime_error("the system lacks the locale C.UTF-8");
  }
}

bool IsUtf8(const std::string& text) {
  for (std::size_t position = 0; position < text.size();) {
    if (!NextCharacter(text, position).code) {
      return false;
    }
  }
  return true;
}

std::string Printable(const std::string& text) {
  std::string printable;
  for (std::size_t position = 0; position < text.size();) {
    const Character character = NextCharacter(text, position);
    const bool harmless = character.code && *character.code != 0 && wcwidth(*character.code) >= 0 &&
                          !TurnsDirection(*character.code);
    printable += harmless ? character.bytes : Escape(character);
  }
  return printable;
}

int Width(const std::string& printable) {
  int width = 0;
  for (std::size_t position = 0; position < printable.size();) {
    width += wcwidth(NextCharacter(printable, position).code.value());
  }
  return width;
}

std::string FitInto(const std::string& printable, int width) {
  if (Width(printable) <= width) {
    return printable;
  }
  std::size_t position = 0;
  std::size_t end = 0;
  int used = 1;  // the ellipsis
  while (used <= width) {
    end = position;
    used += wcwidth(NextCharacter(printable, position).code.value());
  }
  return printable.substr(0, end) + "…";
}

std::string Wrap(const std::string& printable, int width) {
  std::istringstream words(printable);
  std::string lines;
  int used = 0;
  for (std::string word; words >> word;) {
    const bool fits = used + 1 + Width(word) <= width;
    if (used > 0) {
      lines += fits ? ' ' : '\n';
      used = fits ? used + 1 : 0;
    }
    lines += word;
    used += Width(word);
  }
  return lines;
}

std::string JoinLines(const std::string& text) {
  return boost::algorithm::trim_fill_copy(text, " ");
}

}  // namespace dorvdl::ctl
