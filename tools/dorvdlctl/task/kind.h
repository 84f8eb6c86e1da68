// Download tasks as a kind of record.
#ifndef DORVDLCTL_TASK_KIND_H_
#define DORVDLCTL_TASK_KIND_H_

#include <dorvdl/control/task_control.h>

#include "record/kind.h"

namespace dorvdl::ctl {

using TaskKind = Kind<control::TaskControl, control::option::task::ListOption>;

const TaskKind& Tasks();

// The task's present fields; `extra_data` as the value that its text stands for.
Json::Value TaskToJson(const record::Task& task);

// Throws WrongUsage for a value of a task's column that cannot be set as it is.
void CheckTaskValue(const std::string& column, const std::string& value);

// Tasks for people.
Table DrawTasks(const std::vector<record::Task>& tasks, bool with_user);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_TASK_KIND_H_
