// What several of the commands on tasks need.
#ifndef DORVDLCTL_TASK_COMMON_H_
#define DORVDLCTL_TASK_COMMON_H_

#include <dorvdl/record/task.h>
#include <json/value.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <string>
#include <vector>

#include "global_options.h"
#include "outcome.h"
#include "work.h"

namespace dorvdl::ctl {

// Adds the positional argument that names a task.
CLI::Option* AddTaskId(CLI::App& command, std::int32_t& id);

// Adds --password-file.
void AddPasswordFile(CLI::App& command, std::string& path);

// The first line of the file at @p path, of the standard input for "-": a secret does not belong on
// a command line, where every process sees it. Throws Failure.
std::string ReadPassword(const std::string& path);

// "no task 7" or "no tasks 7, 9", and of whom.
Failure NoSuchTask(const std::vector<std::int32_t>& ids, const GlobalOptions& global);

// The acting user's task. Throws Failure when there is none.
record::Task GetTask(Work& work, std::int32_t id, const GlobalOptions& global);

// The task's present fields without the password; `extra_data` as the value that its text stands
// for.
Json::Value TaskToJson(const record::Task& task);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_TASK_COMMON_H_
