// Records for tests that do not care for the rest of them.
#ifndef TESTS_SUPPORT_MAKE_RECORDS_H_
#define TESTS_SUPPORT_MAKE_RECORDS_H_

#include <dorvdl/record/task.h>

#include <string>

namespace test_support {

inline dorvdl::record::Task TaskOf(const std::string& username, const std::string& url) {
  dorvdl::record::Task task;
  task.mutable_proto().set_username(username);
  task.mutable_proto().set_url(url);
  return task;
}

// An update of nothing but the task's file name.
inline dorvdl::record::Task Renaming(int task_id, const std::string& filename) {
  dorvdl::record::Task task;
  task.set_primary_key(task_id);
  task.mutable_proto().set_filename(filename);
  return task;
}

}  // namespace test_support

#endif  // TESTS_SUPPORT_MAKE_RECORDS_H_
