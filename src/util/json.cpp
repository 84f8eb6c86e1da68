#include "util/json.h"

#include <json/reader.h>
#include <json/writer.h>

#include <memory>
#include <optional>
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

// Whether the thread's writer is gone: the thread is ending, or the process.
thread_local bool writer_is_gone = false;

// A writer and its stream. Neither is for several threads at once.
class Writer {
 public:
  Writer() = default;
  ~Writer() { writer_is_gone = true; }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  std::string Write(const Json::Value& value) {
    text_.str({});
    std::optional<ThreadLocale> scope;
    if (!value.isString()) {        // which each row of a list of tasks has one of
      scope.emplace(JsonLocale());  // the writer has its fractions printed by C
    }
    writer_->write(value, &text_);
    return text_.str();
  }

 private:
  const std::unique_ptr<Json::StreamWriter> writer_ = MakeWriter();
  std::ostringstream text_;
};

}  // namespace

std::string JsonToText(const Json::Value& value) {
  if (writer_is_gone) {
    return Writer().Write(value);
  }
  // Reading a list of tasks comes through here once per row, and making a writer and a stream costs
  // more than the writing.
  thread_local Writer writer;
  return writer.Write(value);
}

bool JsonFromText(std::string text, Json::Value& value) {
  static const auto& builder =
      *new Json::CharReaderBuilder(MakeReaderBuilder());  // never destroyed
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
