#include "util/json.h"

#include <json/reader.h>
#include <json/writer.h>

#include <memory>
#include <sstream>

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

}  // namespace

std::string JsonToText(const Json::Value& value) {
  // Reading a list of tasks comes through here once per row, and making a writer and a stream costs
  // more than the writing. Neither is for several threads at once.
  thread_local const std::unique_ptr<Json::StreamWriter> writer = MakeWriter();
  thread_local std::ostringstream text;
  text.str({});
  writer->write(value, &text);
  return text.str();
}

bool JsonFromText(const std::string& text, Json::Value& value) {
  static const Json::CharReaderBuilder builder = MakeReaderBuilder();
  const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  try {
    return reader->parse(text.data(), text.data() + text.size(), &value, nullptr);
  } catch (const Json::Exception&) {  // how the parser reports too deep a nesting
    return false;
  }
}

}  // namespace dorvdl::util
