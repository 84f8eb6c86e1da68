/// @file
/// A statement while it is put together: its text with numbered placeholders, and the values.
#ifndef DORVDL_DBQUERY_SQL_TEXT_H_
#define DORVDL_DBQUERY_SQL_TEXT_H_

#include <dorvdl/dbquery/parameter.h>
#include <dorvdl/util/export.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dorvdbquery {

/// The text of one statement and the values of its placeholders, in order. Needs no server.
///
/// What must not be sent (a name that is no plain identifier, a text with an embedded NUL) is
/// remembered as the refusal; a refused statement never reaches the server.
class DORVDL_EXPORT SqlText {
 public:
  SqlText() {
    text_.reserve(kUsualSize);
    parameters_.reserve(kUsualParameters);
  }

  /// Appends text that code has written. Never pass text from a request.
  SqlText& Append(std::string_view text);

  /// Appends a name in double quotes, its ASCII capitals lower-cased as SQL folds unquoted names.
  /// Anything but a plain identifier (letter or underscore, then letters, digits and underscores,
  /// at most 63 bytes) refuses the statement.
  SqlText& AppendIdentifier(std::string_view name);

  /// Appends several names as AppendIdentifier() does, separated by commas.
  SqlText& AppendIdentifiers(const std::vector<std::string>& names);

  /// Appends the next placeholder and binds @p value to it. A text with an embedded NUL refuses
  /// the statement, for the server would see only the part before it.
  SqlText& Bind(Parameter value);

  /// Refuses the statement; the first reason stands. The reason is logged, so it must not quote
  /// input.
  void Refuse(std::string_view reason);

  /// The text so far, with placeholders $1, $2 ... and their values in order.
  const std::string& text() const { return text_; }
  const std::vector<Parameter>& parameters() const { return parameters_; }

  /// Why the statement must not be sent; empty when it may be.
  const std::string& refusal() const { return refusal_; }

 private:
  // Enough for most statements, so that they are put together without another allocation.
  static constexpr std::size_t kUsualSize = 512;  // bytes
  static constexpr std::size_t kUsualParameters = 8;

  std::string text_;
  std::vector<Parameter> parameters_;
  std::string refusal_;
};

}  // namespace dorvdbquery

#endif  // DORVDL_DBQUERY_SQL_TEXT_H_
