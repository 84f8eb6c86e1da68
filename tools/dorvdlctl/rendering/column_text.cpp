#include "rendering/column_text.h"

#include <dorvdl/record/task.h>

#include <cstdint>
#include <map>

#include "rendering/message_json.h"
#include "rendering/plugin_json.h"
#include "rendering/status_word.h"
#include "rendering/units.h"

namespace dorvdl::ctl {
namespace {

using Rendering = std::string (*)(const Json::Value&);

template <std::string (*kRender)(std::int64_t)>
std::string Number(const Json::Value& value) {
  return kRender(value.asInt64());
}

std::string SizeInFull(std::int64_t bytes) {
  return bytes < 1024 ? Size(bytes) : Size(bytes) + " (" + std::to_string(bytes) + " bytes)";
}

std::string StatusInFull(std::int64_t status) {
  const auto code = static_cast<int>(status);
  const std::string word = StatusWord(code);
  const std::string number = std::to_string(code);
  return word == number ? number : number + " (" + word + ")";
}

std::string StatusInBrief(std::int64_t status) { return StatusWord(static_cast<int>(status)); }

std::string FlagsInFull(std::int64_t flags) {
  record::Task task;
  task.mutable_proto().set_task_flags(static_cast<int>(flags));
  return std::to_string(flags) + " (" + task.GetTaskType() + ")";
}

// The column holds the unsigned id bit for bit.
std::string ObjectId(std::int64_t oid) { return std::to_string(static_cast<std::uint32_t>(oid)); }

std::string Secret(const Json::Value& value) { return value.asString().empty() ? "" : "(set)"; }

struct Renderings {
  Rendering full;
  Rendering brief;
};

std::map<std::string, Renderings> MakeKnown() {
  constexpr Renderings kTime = {&Number<LocalTime>, &Number<LocalTime>};
  constexpr Renderings kSize = {&Number<SizeInFull>, &Number<Size>};
  constexpr Renderings kRate = {&Number<Rate>, &Number<Rate>};
  constexpr Renderings kJson = {&CompactJsonText, &CompactJsonText};
  std::map<std::string, Renderings> known = {
      {"created_time", kTime},
      {"started_time", kTime},
      {"completed_time", kTime},
      {"waiting_until_time", kTime},
      {"create_time", kTime},
      {"last_update", kTime},
      {"date", kTime},
      {"total_size", kSize},
      {"current_size", kSize},
      {"total_upload", kSize},
      {"size", kSize},
      {"current_rate", kRate},
      {"upload_rate", kRate},
      {"extra_data", kJson},
      {"status", {&Number<StatusInFull>, &Number<StatusInBrief>}},
      {"task_flags", {&Number<FlagsInFull>, &Number<FlagsInFull>}},
      {"file_oid", {&Number<ObjectId>, &Number<ObjectId>}},
      {"unzip_password", {&Secret, &Secret}},
  };
  for (const PluginJson& column : kPluginJson) {
    known.emplace(column.name, kJson);
  }
  return known;
}

// The columns whose type does not say how to show them.
const std::map<std::string, Renderings>& Known() {
  static const std::map<std::string, Renderings> known = MakeKnown();
  return known;
}

}  // namespace

std::string ColumnText(const std::string& column, const Json::Value& value, Detail detail) {
  const auto known = Known().find(column);
  if (known != Known().end()) {
    return (detail == Detail::kFull ? known->second.full : known->second.brief)(value);
  }
  if (value.isBool()) {
    return value.asBool() ? "yes" : "no";
  }
  return value.asString();
}

bool IsSecret(const std::string& column) {
  const auto known = Known().find(column);
  return known != Known().end() && known->second.full == &Secret;
}

}  // namespace dorvdl::ctl
