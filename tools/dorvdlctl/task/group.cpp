#include "groups.h"
#include "record/commands.h"
#include "task/commands.h"
#include "task/kind.h"

namespace dorvdl::ctl {

void AddTaskCommands(CLI::App& app, const GlobalOptions& global) {
  CLI::App& group = AddGroup(app, Tasks());
  AddTaskAdd(group, global);
  AddList(group, Tasks(), global);
  AddShow(group, Tasks(), global);
  AddTaskSet(group, global);
  AddRemove(group, Tasks(), global);
  AddTaskImport(group, global);
  AddTaskExport(group, global);
  AddTaskRestart(group, global);
  AddTaskClean(group, global);
  AddTaskNotify(group, global);
}

}  // namespace dorvdl::ctl
