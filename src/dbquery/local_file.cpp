#include "dbquery/local_file.h"

#include <dorvdl/util/log.h>
#include <fcntl.h>
#include <unistd.h>

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
  if (!descriptor.IsRegular()) {
    file.LogNotRegular();
    return file;
  }
  file.descriptor_ = std::move(descriptor);
  return file;
}

ssize_t LocalFile::Read(char* data, std::size_t size) const {
  const ssize_t length = TEMP_FAILURE_RETRY(read(descriptor_.number(), data, size));
  if (length < 0) {
    LogFailure("read");
  }
  return length;
}

bool LocalFile::Write(const char* data, std::size_t size) const {
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

bool LocalFile::PathHasNul() const {
  if (dorvdl::util::HasNul(path_)) {
    DORVDL_LOG(LOG_ERR, "Failed to open file: the path has an embedded NUL");
    return true;
  }
  return false;
}

void LocalFile::LogFailure(const char* what) const {
  DORVDL_LOG(LOG_ERR, "Failed to %s file [%s]: %m", what, path_.c_str());
}

void LocalFile::LogNotRegular() const {
  DORVDL_LOG(LOG_ERR, "Failed to open file [%s]: not a regular file", path_.c_str());
}

}  // namespace dorvdbquery
