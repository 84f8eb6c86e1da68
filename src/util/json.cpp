#include "util/json.h"

#include <json/reader.h>
#include <json/writer.h>

#include <memory>
#include <sstream>

#include "util/json_numbers.h"
#include "util/thread_locale.h"

namespace dorvdl::util {
namespace {

std::unique_ptr<Json::StreamWriter> MakeWriter() {
  Json::StreamWriterBuilder builder;
  builder["indentation"] = "";
  builder["commentStyle"] = "None";
  builder["emitUTF8"] = true;
  return std::unique_ptr<Json::StreamWriter>(builder.newStreamWriter());
}

Json::CharReaderBuilder MakeReaderBuilder() {
  Json::CharReaderBuilder builder;
  builder["allowTrailingCommas"] = false;
  builder["skipBom"] = false;
  return builder;
}

// The locale that writes numbers as JSON has them; null, which changes none, when memory is short.
locale_t JsonLocale() {
  static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
  return locale;
}

}  // namespace

std::string JsonToText(const Json::Value& value) {
  // Reading a list of tasks comes through here once per row, and making a writer and a stream costs
  // more than the writing. Neither is for several threads at once.
  thread_local const std::unique_ptr<Json::StreamWriter> writer = MakeWriter();
  thread_local std::ostringstream text;
  text.str({});
  const ThreadLocale scope(JsonLocale());  // the writer has its fractions printed by C
  writer->write(value, &text);
  return text.str();
}

bool JsonFromText(std::string text, Json::Value& value) {
  static const Json::CharReaderBuilder builder = MakeReaderBuilder();
  const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  const JsonNumbers numbers(text);
  bool parsed = false;
  try {
    parsed = reader->parse(text.data(), text.data() + text.size(), &value, nullptr);
  } catch (const Json::Exception&) {  // how the parser reports too deep a nesting
  }
  numbers.PutInto(value);
  return parsed;
}

}  // namespace dorvdl::util
