// Where a new task comes from.
#ifndef DORVDLCTL_TASK_SOURCE_H_
#define DORVDLCTL_TASK_SOURCE_H_

#include <dorvdl/record/task.h>

#include <string>

namespace dorvdl::ctl {

// A task to be created, and the file to be stored with it; no path for a task from a URL.
struct NewTask {
  record::Task task;
  std::string source_path;
};

// The task for @p source: for a URL of a known scheme its flag; for the name of an existing file
// that ends in .torrent or .nzb (in any case) the flag of its kind and the file's base name.
// Throws Failure for anything else.
NewTask TaskFrom(const std::string& source);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_TASK_SOURCE_H_
