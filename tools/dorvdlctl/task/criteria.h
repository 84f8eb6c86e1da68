// Command line options that say which tasks are wanted.
#ifndef DORVDLCTL_TASK_CRITERIA_H_
#define DORVDLCTL_TASK_CRITERIA_H_

#include <dorvdl/control/option/task.h>

#include <CLI/CLI.hpp>

namespace dorvdl::ctl {

// Adds options to @p command that set @p option, which must outlive the command.
void AddTaskCriteria(CLI::App& command, control::option::task::ListOption& option);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_TASK_CRITERIA_H_
