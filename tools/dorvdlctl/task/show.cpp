#include <dorvdl/record/task_status.h>

#include <iomanip>
#include <iostream>
#include <map>
#include <memory>

#include "rendering/message_json.h"
#include "rendering/status_word.h"
#include "rendering/text.h"
#include "rendering/units.h"
#include "task/commands.h"
#include "task/common.h"

namespace dorvdl::ctl {
namespace {

std::string SizeInFull(std::int64_t bytes) {
  return bytes < 1024 ? Size(bytes) : Size(bytes) + " (" + std::to_string(bytes) + " bytes)";
}

std::string StatusInFull(std::int64_t status) {
  const auto code = static_cast<int>(status);
  const std::string word = StatusWord(code);
  const std::string number = std::to_string(code);
  return word == number ? number : number + " (" + word + ")";
}

// The column holds the unsigned id bit for bit.
std::string ObjectId(std::int64_t oid) { return std::to_string(static_cast<std::uint32_t>(oid)); }

// How the columns that are more than a number are shown.
const std::map<std::string, std::string (*)(std::int64_t)>& Renderings() {
  static const std::map<std::string, std::string (*)(std::int64_t)> renderings = {
      {"status", &StatusInFull},
      {"created_time", &LocalTime},
      {"started_time", &LocalTime},
      {"completed_time", &LocalTime},
      {"waiting_until_time", &LocalTime},
      {"total_size", &SizeInFull},
      {"current_size", &SizeInFull},
      {"total_upload", &SizeInFull},
      {"current_rate", &Rate},
      {"upload_rate", &Rate},
      {"file_oid", &ObjectId},
  };
  return renderings;
}

std::string ValueForPeople(const std::string& column, const Json::Value& value,
                           const record::Task& task) {
  if (column == "unzip_password") {
    return value.asString().empty() ? "" : "(set)";
  }
  if (column == "extra_data") {
    return CompactJsonText(task.extra_data());
  }
  if (column == "task_flags") {
    return value.asString() + " (" + task.GetTaskType() + ")";
  }
  const auto rendering = Renderings().find(column);
  return rendering == Renderings().end() ? value.asString() : rendering->second(value.asInt64());
}

// In the order of the columns, under their names: those are what `task set` takes.
void PrintForPeople(const record::Task& task) {
  const Json::Value fields = MessageToJson(task.proto());
  for (const std::string& column : record::Task::GetSelectFields()) {
    if (fields.isMember(column)) {
      const std::string value = ValueForPeople(column, fields[column], task);
      std::cout << std::left << std::setw(value.empty() ? 0 : 20) << column << Printable(value)
                << '\n';
    }
  }
}

void Show(std::int32_t id, const GlobalOptions& global) {
  Work work(global);
  const record::Task task = GetTask(work, id, global);
  work.Commit();
  if (global.json) {
    std::cout << JsonText(TaskToJson(task)) << '\n';
  } else {
    PrintForPeople(task);
  }
}

}  // namespace

void AddTaskShow(CLI::App& group, const GlobalOptions& global) {
  const auto id = std::make_shared<std::int32_t>();
  CLI::App& command = *group.add_subcommand("show", "Show all columns of a task");
  AddTaskId(command, *id);
  command.footer("Of a password it shows only that there is one, and in JSON nothing at all.");
  command.callback([id, &global] { Show(*id, global); });
}

}  // namespace dorvdl::ctl
