#include "dbquery/local_file.h"

#include <dorvdl/util/log.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <climits>
#include <cstdio>
#include <utility>

#include "util/text.h"

namespace dorvdbquery {
namespace {

bool RefusedForNul(const std::string& path) {
  if (dorvdl::util::HasNul(path)) {
    DORVDL_LOG(LOG_ERR, "Failed to open file: the path has an embedded NUL");
    return true;
  }
  return false;
}

bool IsRegular(int descriptor) {
  struct stat status {};
  return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

// The file that @p path names, links followed; @p path itself when nothing is there. Empty when
// something else than a regular file is. The kernel follows the links, for it knows which of other
// people's links must not be followed.
std::string RegularTarget(const std::string& path) {
  const int descriptor = open(path.c_str(), O_PATH | O_CLOEXEC);
  if (descriptor < 0) {
    struct stat status {};
    return lstat(path.c_str(), &status) != 0 ? path : "";
  }
  const std::string self = "/proc/self/fd/" + std::to_string(descriptor);
  char target[PATH_MAX] = {};
  const bool known =
      IsRegular(descriptor) && readlink(self.c_str(), target, sizeof(target) - 1) > 0;
  close(descriptor);
  return known ? target : "";
}

// Allows the same people the same as the file in whose place it is put. Only root can give a file
// to its owner; one that stays the caller's has nothing to do with the former one's group.
void Succeed(int descriptor, const struct stat& predecessor) {
  const bool same_owner = fchown(descriptor, predecessor.st_uid, predecessor.st_gid) == 0;
  fchmod(descriptor, predecessor.st_mode & (same_owner ? 0777U : 0707U));
}

}  // namespace

LocalFile LocalFile::OpenRegular(const std::string& path) {
  LocalFile file(path, -1);
  if (RefusedForNul(path)) {
    return file;
  }
  // O_NONBLOCK: the open of a FIFO would wait for a writer before its kind can be asked for.
  file.descriptor_ = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (!file.IsOpen()) {
    file.LogFailure("open");
  } else if (!IsRegular(file.descriptor_)) {
    close(std::exchange(file.descriptor_, -1));
    DORVDL_LOG(LOG_ERR, "Failed to open file [%s]: not a regular file", path.c_str());
  }
  return file;
}

LocalFile::LocalFile(LocalFile&& other) noexcept
    : path_(std::move(other.path_)), descriptor_(std::exchange(other.descriptor_, -1)) {}

LocalFile::~LocalFile() {
  if (IsOpen()) {
    close(descriptor_);
  }
}

ssize_t LocalFile::Read(char* data, std::size_t size) const {
  const ssize_t length = TEMP_FAILURE_RETRY(read(descriptor_, data, size));
  if (length < 0) {
    LogFailure("read");
  }
  return length;
}

bool LocalFile::Write(const char* data, std::size_t size) const {
  while (size > 0) {
    const ssize_t length = TEMP_FAILURE_RETRY(write(descriptor_, data, size));
    if (length < 0) {
      LogFailure("write");
      return false;
    }
    data += length;
    size -= static_cast<std::size_t>(length);
  }
  return true;
}

void LocalFile::LogFailure(const char* what) const {
  DORVDL_LOG(LOG_ERR, "Failed to %s file [%s]: %m", what, path_.c_str());
}

ReplacedFile::ReplacedFile(const std::string& target) : LocalFile(target, -1) {
  if (RefusedForNul(target)) {
    return;
  }
  target_ = RegularTarget(target);
  if (target_.empty()) {
    DORVDL_LOG(LOG_ERR, "Failed to open file [%s]: not a regular file", target.c_str());
    return;
  }
  // The time keeps a file that a killed process has left behind from blocking its successor.
  temporary_ = target_.substr(0, target_.rfind('/') + 1) + ".dorvdl-" + std::to_string(getpid()) +
               "-" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count());
  struct stat predecessor {};
  const bool has_predecessor = stat(target_.c_str(), &predecessor) == 0;
  descriptor_ = open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                     has_predecessor ? 0600 : 0666);
  if (!IsOpen()) {
    LogFailure("create");
    temporary_.clear();
  } else if (has_predecessor) {
    Succeed(descriptor_, predecessor);
  }
}

ReplacedFile::~ReplacedFile() {
  if (!temporary_.empty()) {
    unlink(temporary_.c_str());
  }
}

bool ReplacedFile::Replace() {
  if (fsync(descriptor_) != 0 || std::rename(temporary_.c_str(), target_.c_str()) != 0) {
    LogFailure("complete");
    return false;
  }
  temporary_.clear();
  return true;
}

}  // namespace dorvdbquery
