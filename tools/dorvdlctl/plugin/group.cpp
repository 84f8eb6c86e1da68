#include <dorvdl/control/plugin_control.h>

#include <algorithm>
#include <iterator>
#include <string>

#include "groups.h"
#include "help.h"
#include "outcome.h"
#include "reading/json_text.h"
#include "record/commands.h"
#include "rendering/plugin_json.h"

namespace dorvdl::ctl {
namespace {

using PluginKind = Kind<control::PluginControl>;

Json::Value PluginToJson(const record::Plugin& plugin) {
  Json::Value json = MessageToJson(plugin.proto());
  for (const PluginJson& column : kPluginJson) {
    if (json.isMember(column.name)) {
      json[column.name] = (plugin.*column.value)();
    }
  }
  return json;
}

void CheckValue(const std::string& column, const std::string& value) {
  const auto is_named = [&column](const PluginJson& candidate) { return column == candidate.name; };
  const bool is_json = std::any_of(std::begin(kPluginJson), std::end(kPluginJson), is_named);
  if (is_json && !ParseJson(value)) {
    throw WrongUsage(column + ": no JSON text");
  }
}

const PluginKind& Plugins() {
  static const PluginKind plugins = [] {
    PluginKind kind;
    kind.noun = "plug-in";
    kind.group = "plugin";
    kind.title = "Post-processing states of the tasks, one per task";
    kind.key = "task_id";
    kind.key_label = "TASK";
    kind.key_is_given = true;
    kind.check = &CheckValue;
    kind.listed = {"task_id", "pid", "current_plugin", "current_type", "current_status"};
    kind.parent = &TaskParent();
    kind.to_json = &PluginToJson;
    kind.notes = {{"pid", "0 when none runs"}};
    for (const PluginJson& column : kPluginJson) {
      kind.notes.emplace(column.name, "JSON");
    }
    kind.help.list = {"", {"plugin list --sort-by current_plugin"}};
    kind.help.show = {"Columns that hold JSON are shown as such.", {"plugin show 7 --json"}};
    kind.help.add = {"", {"plugin add 7 current_plugin=captcha 'attributes={\"tries\": 1}'"}};
    kind.help.set = {"", {"plugin set 7 pid=0 'result={\"files\": 3}'"}};
    kind.help.remove = {"", {"plugin remove 7"}};
    return kind;
  }();
  return plugins;
}

}  // namespace

void AddPluginCommands(CLI::App& app, const GlobalOptions& global) {
  CLI::App& group = AddRecordGroup(app, Plugins(), global);
  AddFixedList(group, Plugins(), global, "active", "List the plug-ins that are running (pid > 0)",
               &control::PluginControl::ListActivePlugin)
      .footer(Footer({"", {"plugin active"}}));
}

}  // namespace dorvdl::ctl
