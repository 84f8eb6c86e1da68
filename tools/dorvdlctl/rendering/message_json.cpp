#include "rendering/message_json.h"

#include <json/writer.h>

#include <cstdio>
#include <vector>

namespace dorvdl::ctl {
namespace {

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;

Json::Value FieldToJson(const Message& message, const FieldDescriptor& field) {
  const google::protobuf::Reflection& reflection = *message.GetReflection();
  switch (field.cpp_type()) {
    case FieldDescriptor::CPPTYPE_INT32:
      return reflection.GetInt32(message, &field);
    case FieldDescriptor::CPPTYPE_INT64:
      return Json::Int64{reflection.GetInt64(message, &field)};
    case FieldDescriptor::CPPTYPE_BOOL:
      return reflection.GetBool(message, &field);
    default:  // records have no other type than these and texts
      return reflection.GetString(message, &field);
  }
}

std::string Write(const Json::Value& value, const char* indentation) {
  Json::StreamWriterBuilder builder;
  builder["indentation"] = indentation;
  builder["emitUTF8"] = true;
  builder["enableYAMLCompatibility"] = *indentation != 0;  // "key": value
  const std::string text = Json::writeString(builder, value);
  // The writer escapes what JSON demands: not DEL, nor the control characters U+0080 to U+009F,
  // whose UTF-8 is the byte C2 and that of their number.
  std::string safe;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool is_c1 = byte == 0xc2 && static_cast<unsigned char>(text[i + 1]) < 0xa0;
    if (byte == 0x7f || is_c1) {
      char escape[8];
      std::snprintf(escape, sizeof(escape), "\\u%04x",
                    is_c1 ? static_cast<unsigned char>(text[++i]) : byte);
      safe += escape;
    } else {
      safe += text[i];
    }
  }
  return safe;
}

}  // namespace

Json::Value MessageToJson(const Message& message) {
  Json::Value json(Json::objectValue);
  std::vector<const FieldDescriptor*> fields;
  message.GetReflection()->ListFields(message, &fields);
  for (const FieldDescriptor* const field : fields) {
    json[field->name()] = FieldToJson(message, *field);
  }
  return json;
}

std::string JsonText(const Json::Value& value) { return Write(value, "  "); }

std::string CompactJsonText(const Json::Value& value) { return Write(value, ""); }

}  // namespace dorvdl::ctl
