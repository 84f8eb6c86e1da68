#include "kept_notification.h"

#include <json/reader.h>
#include <json/value.h>
#include <json/writer.h>

#include <sstream>
#include <stdexcept>

namespace dorv {
namespace {

using dorvdl::common::KeptNotification;

// The texts of a notification, by the names that they have in its file.
constexpr struct {
  const char* name;
  std::string KeptNotification::*text;
} kTexts[] = {
    {"event", &KeptNotification::event},     {"application", &KeptNotification::application},
    {"user", &KeptNotification::user},       {"title", &KeptNotification::title},
    {"message", &KeptNotification::message},
};

}  // namespace

std::string ToJson(const KeptNotification& notification) {
  Json::Value object;
  for (const auto& [name, text] : kTexts) {
    object[name] = notification.*text;
  }
  object["created"] = Json::Int64{notification.created};
  Json::Value& placeholders = object["placeholders"] = Json::objectValue;
  for (const auto& [key, value] : notification.placeholders) {
    placeholders[key] = value;
  }
  Json::StreamWriterBuilder style;
  style["emitUTF8"] = true;
  style["indentation"] = "  ";
  return writeString(style, object) + '\n';
}

KeptNotification FromJson(const std::string& json) {
  std::istringstream content(json);
  Json::Value object;
  content >> object;
  KeptNotification notification;
  for (const auto& [name, text] : kTexts) {
    if (!object[name].isString()) {
      throw std::invalid_argument(std::string("no ") + name);
    }
    notification.*text = object[name].asString();
  }
  notification.created = object["created"].asInt64();
  const Json::Value& placeholders = object["placeholders"];
  for (const std::string& key : placeholders.getMemberNames()) {
    notification.placeholders[key] = placeholders[key].asString();
  }
  return notification;
}

}  // namespace dorv
