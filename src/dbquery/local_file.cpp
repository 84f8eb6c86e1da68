#include "dbquery/local_file.h"

#include <dorvdl/util/log.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include "util/text.h"

namespace dorvdbquery {

LocalFile LocalFile::OpenRegular(const std::string& path) {
  LocalFile file(path);
  if (file.PathHasNul()) {
    return file;
  }
  // O_NONBLOCK: the open of a FIFO would wait for a writer before its kind can be asked for.
  Descriptor descriptor(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!descriptor.IsOpen()) {
    file.LogFailure("open");
    return file;
  }
  const struct stat status = descriptor.Status();
  if (!S_ISREG(status.st_mode)) {
    file.LogNotRegular();
    return file;
  }
  if (status.st_size > 0 || !descriptor.IsOnProc()) {
    file.left_ = static_cast<std::size_t>(status.st_size);
  }
  file.descriptor_ = std::move(descriptor);
  return file;
}

ssize_t LocalFile::Read(char* data, std::size_t size) {
  const std::size_t most = std::min(size, left_.value_or(size));
  const ssize_t length = TEMP_FAILURE_RETRY(read(descriptor_.number(), data, most));
  if (length < 0) {
    LogFailure("read");
  } else if (length == 0 && most > 0 && left_) {
    LogFailure("read", "it has become shorter");
    return -1;
  } else if (left_) {
    *left_ -= static_cast<std::size_t>(length);
  }
  return length;
}

bool LocalFile::Write(const char* data, std::size_t size) {
  while (size > 0) {
    const ssize_t length = TEMP_FAILURE_RETRY(write(descriptor_.number(), data, size));
    if (length < 0) {
      LogFailure("write");
      return false;
    }
    data += length;
    size -= static_cast<std::size_t>(length);
  }
  return true;
}

bool LocalFile::PathHasNul() {
  if (dorvdl::util::HasNul(path_)) {
    problem_ = "Failed to open file: the path has an embedded NUL";
    DORVDL_LOG(LOG_ERR, "%s", problem_.c_str());
    return true;
  }
  return false;
}

void LocalFile::LogFailure(const char* what) {
  LogFailure(what, std::generic_category().message(errno));
}

void LocalFile::LogNotRegular() { LogFailure("open", "not a regular file"); }

void LocalFile::LogFailure(const char* what, const std::string& reason) {
  problem_ = std::string("Failed to ") + what + " file: " + reason;
  DORVDL_LOG(LOG_ERR, "Failed to %s file [%s]: %s", what, path_.c_str(), reason.c_str());
}

}  // namespace dorvdbquery
