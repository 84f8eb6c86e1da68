// Assignments to the columns of a task.
#ifndef DORVDLCTL_TASK_FIELD_H_
#define DORVDLCTL_TASK_FIELD_H_

#include <dorvdl/record/task.h>

#include <string>

namespace dorvdl::ctl {

// Carries out @p assignment, a "column=value". Throws WrongUsage for an unknown column, the key,
// the password, and a value that the column cannot have.
void Assign(const std::string& assignment, record::Task& task);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_TASK_FIELD_H_
