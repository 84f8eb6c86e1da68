#include "plugin/commands.h"

#include <dorvdl/db/task_plugin.h>

#include <string>

#include "outcome.h"
#include "reading/json_text.h"
#include "record/commands.h"

namespace dorvdl::ctl {
namespace {

using PluginKind = Kind<db::TaskPlugin>;

Json::Value PluginToJson(const record::Plugin& plugin) {
  Json::Value json = MessageToJson(plugin.proto());
  const auto put = [&json](const char* column, const Json::Value& value) {
    if (json.isMember(column)) {
      json[column] = value;
    }
  };
  put("process", plugin.process());
  put("attributes", plugin.attributes());
  put("response", plugin.response());
  put("result", plugin.result());
  return json;
}

void CheckValue(const std::string& column, const std::string& value) {
  const bool is_json =
      column == "process" || column == "attributes" || column == "response" || column == "result";
  if (is_json && !ParseJson(value)) {
    throw WrongUsage(column + ": no JSON text");
  }
}

const PluginKind& Plugins() {
  static const PluginKind plugins = [] {
    PluginKind kind;
    kind.noun = "plugin";
    kind.title = "States of the tasks' post-processing plug-ins, one per task";
    kind.key = "task_id";
    kind.key_label = "TASK";
    kind.key_is_given = true;
    kind.check = &CheckValue;
    kind.listed = {"task_id", "pid", "current_plugin", "current_type", "current_status"};
    kind.parent = &TaskParent();
    kind.to_json = &PluginToJson;
    kind.footers.list = "Example: dorvdlctl plugin list --sort-by current_plugin";
    kind.footers.show =
        "The columns process, attributes, response and result hold JSON and are shown as such.\n"
        "\nExample: dorvdlctl plugin show 7 --json";
    kind.footers.add =
        "Columns: process, current_plugin, current_type, current_status, attributes, response,\n"
        "result, pid (0 when none runs).\n"
        "\nExample: dorvdlctl plugin add 7 current_plugin=captcha 'attributes={\"tries\": 1}'";
    kind.footers.set =
        "Only the columns named are written: process, current_plugin, current_type,\n"
        "current_status, attributes, response, result, pid.\n"
        "\nExample: dorvdlctl plugin set 7 pid=0 'result={\"files\": 3}'";
    kind.footers.remove = "\nExample: dorvdlctl plugin remove 7";
    return kind;
  }();
  return plugins;
}

}  // namespace

void AddPluginCommands(CLI::App& app, const GlobalOptions& global) {
  CLI::App& group = AddRecordGroup(app, Plugins(), global);
  AddFixedList(group, Plugins(), global, "active", "List the plug-ins that are running (pid > 0)",
               [](Work& work) { return work.Use<db::TaskPlugin>().ListActivePlugin(); })
      .footer("Example: dorvdlctl plugin active");
}

}  // namespace dorvdl::ctl
