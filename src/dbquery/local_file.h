// Files on this side of the connection.
#ifndef SRC_DBQUERY_LOCAL_FILE_H_
#define SRC_DBQUERY_LOCAL_FILE_H_

#include <sys/types.h>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "dbquery/descriptor.h"

namespace dorvdbquery {

// An open file. Failures are logged at error level with the path and the reason.
class LocalFile {
 public:
  // Opens a regular file for reading; anything else (a folder, a FIFO, a device, a path with an
  // embedded NUL) is refused, without waiting for a FIFO's other end.
  static LocalFile OpenRegular(const std::string& path);

  bool IsOpen() const { return descriptor_.IsOpen(); }

  // Reads up to @p size bytes; 0 at the end that the file had when it was opened, however it grows,
  // -1 on failure, also when the file ends before. A file of /proc, of unknown size, is read as far
  // as it goes.
  ssize_t Read(char* data, std::size_t size);

  // Writes all of @p size bytes; false on failure.
  bool Write(const char* data, std::size_t size);

  // What failed last, without the path.
  const std::string& problem() const { return problem_; }

 protected:
  explicit LocalFile(std::string path) : path_(std::move(path)) {}

  // Each logs a problem, and remembers it.
  bool PathHasNul();
  void LogFailure(const char* what);
  void LogNotRegular();

  std::string path_;
  Descriptor descriptor_;

 private:
  void LogFailure(const char* what, const std::string& reason);

  std::string problem_;
  std::optional<std::size_t> left_;  // of the size that it had, where it had one
};

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_LOCAL_FILE_H_
