#include "task/field.h"

#include <json/reader.h>

#include <cstdint>
#include <memory>

#include "outcome.h"
#include "parse_number.h"
#include "rendering/text.h"

namespace dorvdl::ctl {
namespace {

using google::protobuf::FieldDescriptor;

template <typename T>
T NumberOf(const std::string& column, const std::string& value) {
  T number = 0;
  if (!ParseNumber(value, number)) {
    throw WrongUsage(column + ": \"" + value + "\" is no whole number of " +
                     std::to_string(sizeof(T) * 8) + " bits");
  }
  return number;
}

Json::Value ParseJson(const std::string& text) {
  Json::CharReaderBuilder builder;
  builder["allowTrailingCommas"] = false;
  builder["failIfExtra"] = true;
  const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  Json::Value value;
  try {
    if (reader->parse(text.data(), text.data() + text.size(), &value, nullptr)) {
      return value;
    }
  } catch (const Json::Exception&) {  // how the parser reports too deep a nesting
  }
  throw WrongUsage("extra_data: no JSON text");
}

// The field takes the column's text as it is, but a reader sees it without its backslashes.
void AssignExtraData(const std::string& text, record::Task& task) {
  record::Task as_read;
  as_read.set_extra_data(Json::Value(text));
  if (as_read.extra_data() != ParseJson(text)) {
    throw WrongUsage(
        "extra_data: not to be kept, for readers drop backslashes, which quotes within texts, line "
        "breaks and tabs need");
  }
  task.mutable_proto().set_extra_data(text);
}

}  // namespace

void Assign(const std::string& assignment, record::Task& task) {
  const std::size_t sign = assignment.find('=');
  if (sign == std::string::npos) {
    throw WrongUsage("\"" + assignment + "\" is not of the form KEY=VALUE");
  }
  const std::string column = assignment.substr(0, sign);
  const std::string value = assignment.substr(sign + 1);
  record::proto::Task& message = task.mutable_proto();
  const FieldDescriptor* const field = message.GetDescriptor()->FindFieldByName(column);
  if (field == nullptr) {
    throw WrongUsage("a task has no column \"" + column + "\"");
  }
  if (column == "task_id") {
    throw WrongUsage("task_id is the key and cannot be set");
  }
  if (column == "unzip_password") {
    throw WrongUsage("every process sees a command line: give the password by --password-file");
  }
  if (!IsUtf8(value)) {
    throw WrongUsage(column + ": not UTF-8");
  }
  const google::protobuf::Reflection& reflection = *message.GetReflection();
  if (column == "extra_data") {
    AssignExtraData(value, task);
  } else if (field->cpp_type() == FieldDescriptor::CPPTYPE_INT32) {
    reflection.SetInt32(&message, field, NumberOf<std::int32_t>(column, value));
  } else if (field->cpp_type() == FieldDescriptor::CPPTYPE_INT64) {
    reflection.SetInt64(&message, field, NumberOf<std::int64_t>(column, value));
  } else {
    reflection.SetString(&message, field, value);
  }
}

}  // namespace dorvdl::ctl
