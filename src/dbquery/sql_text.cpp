#include <dorvdl/dbquery/sql_text.h>

#include <algorithm>
#include <utility>

#include "util/text.h"

namespace dorvdbquery {
namespace {

using dorvdl::util::AsciiToLower;

// Longer names would be cut by the server and could then mean another column.
constexpr std::size_t kLongestIdentifier = 63;

bool StartsIdentifier(char c) { return (c >= 'a' && c <= 'z') || c == '_'; }

bool ContinuesIdentifier(char c) { return StartsIdentifier(c) || (c >= '0' && c <= '9'); }

}  // namespace

SqlText& SqlText::Append(std::string_view text) {
  text_ += text;
  return *this;
}

SqlText& SqlText::AppendIdentifier(std::string_view name) {
  const bool plain = !name.empty() && name.size() <= kLongestIdentifier &&
                     StartsIdentifier(AsciiToLower(name[0])) &&
                     std::all_of(name.begin(), name.end(),
                                 [](char c) { return ContinuesIdentifier(AsciiToLower(c)); });
  if (!plain) {
    Refuse("a table or column name is no plain identifier");
    return *this;
  }
  const std::size_t start = text_.append(1, '"').size();
  text_.append(name).append(1, '"');
  std::transform(text_.begin() + static_cast<std::ptrdiff_t>(start), text_.end(),
                 text_.begin() + static_cast<std::ptrdiff_t>(start), AsciiToLower);
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
  if (value && dorvdl::util::HasNul(*value)) {
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
