// The commands on download tasks.
#ifndef DORVDLCTL_TASK_COMMANDS_H_
#define DORVDLCTL_TASK_COMMANDS_H_

#include <CLI/CLI.hpp>

#include "global_options.h"

namespace dorvdl::ctl {

// Adds the group "task". @p global must outlive @p app.
void AddTaskCommands(CLI::App& app, const GlobalOptions& global);

// The commands that only this group has, and those that have more to them than in other groups.
void AddTaskAdd(CLI::App& group, const GlobalOptions& global);
void AddTaskSet(CLI::App& group, const GlobalOptions& global);
void AddTaskImport(CLI::App& group, const GlobalOptions& global);
void AddTaskExport(CLI::App& group, const GlobalOptions& global);
void AddTaskRestart(CLI::App& group, const GlobalOptions& global);
void AddTaskClean(CLI::App& group, const GlobalOptions& global);
void AddTaskNotify(CLI::App& group, const GlobalOptions& global);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_TASK_COMMANDS_H_
