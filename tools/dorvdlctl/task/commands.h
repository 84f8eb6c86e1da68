// The commands on tasks that only their group has, and those that have more to them there than in
// other groups.
#ifndef DORVDLCTL_TASK_COMMANDS_H_
#define DORVDLCTL_TASK_COMMANDS_H_

#include <CLI/CLI.hpp>

#include "global_options.h"

namespace dorvdl::ctl {

// Each adds its command to @p group. @p global must outlive it.
void AddTaskAdd(CLI::App& group, const GlobalOptions& global);
void AddTaskSet(CLI::App& group, const GlobalOptions& global);
void AddTaskImport(CLI::App& group, const GlobalOptions& global);
void AddTaskExport(CLI::App& group, const GlobalOptions& global);
void AddTaskRestart(CLI::App& group, const GlobalOptions& global);
void AddTaskClean(CLI::App& group, const GlobalOptions& global);
void AddTaskNotify(CLI::App& group, const GlobalOptions& global);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_TASK_COMMANDS_H_
