#include "task/kind.h"

#include "outcome.h"
#include "reading/json_text.h"
#include "task/criteria.h"

namespace dorvdl::ctl {
namespace {

// The field takes the column's text as it is, but a reader sees it without its backslashes.
void CheckExtraData(const std::string& text) {
  const std::optional<Json::Value> value = ParseJson(text);
  if (!value) {
    throw WrongUsage("extra_data: no JSON text");
  }
  record::Task as_read;
  as_read.set_extra_data(Json::Value(text));
  if (as_read.extra_data() != *value) {
    throw WrongUsage(
        "extra_data: not to be kept, for readers drop backslashes, which quotes within texts, line "
        "breaks and tabs need");
  }
}

}  // namespace

Json::Value TaskToJson(const record::Task& task) {
  Json::Value json = MessageToJson(task.proto());
  if (task.proto().has_extra_data()) {
    json["extra_data"] = task.extra_data();
  }
  return json;
}

void CheckTaskValue(const std::string& column, const std::string& value) {
  if (column == "unzip_password") {
    throw WrongUsage("every process sees a command line: give the password by --password-file");
  }
  if (column == "extra_data") {
    CheckExtraData(value);
  }
}

const TaskKind& Tasks() {
  static const TaskKind tasks = [] {
    TaskKind kind;
    kind.noun = "task";
    kind.title = "Download tasks";
    kind.key = "task_id";
    kind.check = &CheckTaskValue;
    kind.columns = record::Task::GetSelectFields();
    kind.orders = {"progress", "timeleft"};
    kind.to_json = &TaskToJson;
    kind.add_criteria = &AddTaskCriteria;
    kind.draw = &DrawTasks;
    kind.help.list = {"A task is listed when it meets all criteria.",
                      {"--user alice task list --status downloading --sort-by timeleft",
                       "task list --status failed --type bt --type nzb --json"}};
    kind.help.show = {"Of a password it shows only that there is one, and in JSON nothing at all.",
                      {"task show 7 --json"}};
    kind.help.remove = {"", {"task remove 7 8"}};
    return kind;
  }();
  return tasks;
}

}  // namespace dorvdl::ctl
