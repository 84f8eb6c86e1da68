// Stand-ins for the calls with which the library looks at the download folder, for answers that a
// real file system does not give. Only for programs that ask for them, see tests/CMakeLists.txt.
#ifndef TESTS_SUPPORT_FILE_CALLS_H_
#define TESTS_SUPPORT_FILE_CALLS_H_

#include <sys/stat.h>
#include <sys/vfs.h>

#include <cstddef>
#include <string>

namespace test_support {

// While an object lives its answers take the place of the real ones for the link and its target;
// all other files are the machine's. One at a time. Not for several threads at once.
struct FileCalls {
  FileCalls();
  ~FileCalls();
  FileCalls(const FileCalls&) = delete;
  FileCalls& operator=(const FileCalls&) = delete;

  // What the calls answer; an error number makes one fail.
  std::string link = "/var/services/download";
  std::string target = "/volume1/download";
  int readlink_error = 0;
  mode_t mode = S_IFDIR | 0755;
  int stat_error = 0;
  struct statfs64 file_system {};
  int statfs_error = 0;
  bool formatting_fails = false;  // snprintf() with the format "%s"

  // What was asked.
  std::size_t readlink_size = 0;
  int stats = 0;
  int statfses = 0;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_FILE_CALLS_H_
