// The numbers in a JSON text.
#ifndef SRC_UTIL_JSON_NUMBERS_H_
#define SRC_UTIL_JSON_NUMBERS_H_

#include <json/value.h>

#include <cstddef>
#include <string>
#include <unordered_map>

namespace dorvdl::util {

// Reads what the parser would read by the rules of the program's global locale, its fractions, and
// has it refuse numbers that it takes and JSON does not have. The parser gets a text of the same
// length in which a 0 stands for each fraction, and tells of each value where it found it.
class JsonNumbers {
 public:
  // Takes the fractions out of @p text, and makes it no JSON where there is no JSON number.
  explicit JsonNumbers(std::string& text);

  // Puts the fractions into what the parser made of the text.
  void PutInto(Json::Value& value) const;

 private:
  void TakeOut(std::string& text, std::size_t start, std::size_t end);

  std::unordered_map<std::ptrdiff_t, double> fractions_;  // by their places in the text
};

}  // namespace dorvdl::util

#endif  // SRC_UTIL_JSON_NUMBERS_H_
