#include <dorvdl/dbquery/sql_text.h>

#include <algorithm>
#include <utility>

namespace dorvdbquery {
namespace {

// Longer names would be cut by the server and could then mean another column.
constexpr std::size_t kLongestIdentifier = 63;

char FoldAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool StartsIdentifier(char c) { return (c >= 'a' && c <= 'z') || c == '_'; }

bool ContinuesIdentifier(char c) { return StartsIdentifier(c) || (c >= '0' && c <= '9'); }

}  // namespace

SqlText& SqlText::Append(std::string_view text) {
  text_ += text;
  return *this;
}

SqlText& SqlText::AppendIdentifier(std::string_view name) {
  const bool plain = !name.empty() && name.size() <= kLongestIdentifier &&
                     StartsIdentifier(FoldAscii(name[0])) &&
                     std::all_of(name.begin(), name.end(),
                                 [](char c) { return ContinuesIdentifier(FoldAscii(c)); });
  if (!plain) {
    Refuse("a table or column name is no plain identifier");
    return *this;
  }
  const std::size_t start = text_.append(1, '"').size();
  text_.append(name).append(1, '"');
  std::transform(text_.begin() + static_cast<std::ptrdiff_t>(start), text_.end(),
                 text_.begin() + static_cast<std::ptrdiff_t>(start), FoldAscii);
  return *this;
}

SqlText& SqlText::AppendIdentifiers(const std::vector<std::string>& names) {
  const char* separator = "";
  for (const std::string& name : names) {
    Append(std::exchange(separator, ", ")).AppendIdentifier(name);
  }
  return *this;
}

SqlText& SqlText::Bind(Parameter value) {
  if (value && value->find('\0') != std::string::npos) {
    Refuse("a text value has an embedded NUL");
  }
  parameters_.push_back(std::move(value));
  text_ += '$';
  text_ += std::to_string(parameters_.size());
  return *this;
}

void SqlText::Refuse(std::string_view reason) {
  if (refusal_.empty()) {
    refusal_ = reason;
  }
}

}  // namespace dorvdbquery
