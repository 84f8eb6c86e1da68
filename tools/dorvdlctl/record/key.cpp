#include "record/key.h"

#include "argument.h"

namespace dorvdl::ctl {

CLI::Validator KeyCheck(std::int32_t /*type*/) { return NumberFrom(1); }

CLI::Validator KeyCheck(const std::string& /*type*/) {
  const auto is_name = [](const std::string& text) {
    return text.empty() ? "must not be empty" : "";
  };
  return CLI::Validator(is_name, "", "") & Utf8Text();
}

void SetKey(const Description& kind, std::int32_t key, google::protobuf::Message& message) {
  const auto* const field = message.GetDescriptor()->FindFieldByName(kind.key);
  message.GetReflection()->SetInt32(&message, field, key);
}

void SetKey(const Description& kind, const std::string& key, google::protobuf::Message& message) {
  const auto* const field = message.GetDescriptor()->FindFieldByName(kind.key);
  message.GetReflection()->SetString(&message, field, key);
}

}  // namespace dorvdl::ctl
