// Messages as JSON.
#ifndef DORVDLCTL_RENDERING_MESSAGE_JSON_H_
#define DORVDLCTL_RENDERING_MESSAGE_JSON_H_

#include <google/protobuf/message.h>
#include <json/value.h>

#include <string>

namespace dorvdl::ctl {

// The present fields of a record's message under their names. Protobuf's own JSON would make texts
// of 64-bit numbers; here every number is one.
Json::Value MessageToJson(const google::protobuf::Message& message);

// Indented JSON text. UTF-8 stays readable, but what could steer a terminal is escaped.
std::string JsonText(const Json::Value& value);

// The same on one line.
std::string CompactJsonText(const Json::Value& value);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RENDERING_MESSAGE_JSON_H_
