#include "task/commands.h"

namespace dorvdl::ctl {

void AddTaskCommands(CLI::App& app, const GlobalOptions& global) {
  CLI::App& group = *app.add_subcommand("task", "Download tasks");
  group.require_subcommand(1);
  AddTaskAdd(group, global);
  AddTaskList(group, global);
  AddTaskShow(group, global);
  AddTaskSet(group, global);
  AddTaskRemove(group, global);
  AddTaskImport(group, global);
  AddTaskExport(group, global);
}

}  // namespace dorvdl::ctl
