// Files on this side of the connection.
#ifndef SRC_DBQUERY_LOCAL_FILE_H_
#define SRC_DBQUERY_LOCAL_FILE_H_

#include <sys/types.h>

#include <cstddef>
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

  // Reads up to @p size bytes; 0 at the end of the file, -1 on failure.
  ssize_t Read(char* data, std::size_t size) const;

  // Writes all of @p size bytes; false on failure.
  bool Write(const char* data, std::size_t size) const;

 protected:
  explicit LocalFile(std::string path) : path_(std::move(path)) {}

  bool PathHasNul() const;
  void LogFailure(const char* what) const;
  void LogNotRegular() const;

  std::string path_;
  Descriptor descriptor_;
};

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_LOCAL_FILE_H_
