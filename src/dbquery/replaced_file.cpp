#include "dbquery/replaced_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <optional>
#include <utility>

namespace dorvdbquery {
namespace {

// The time keeps a file that a killed process has left behind from blocking its successor.
std::string TemporaryName() {
  return ".dorvdl-" + std::to_string(getpid()) + "-" +
         std::to_string(std::chrono::steady_clock::now().time_since_epoch().count());
}

// Allows the same people the same as the file in whose place it is put. Only root can give a file
// to its owner; one that stays the caller's has nothing to do with the former one's group.
void Succeed(int descriptor, const struct stat& predecessor) {
  const bool same_owner = fchown(descriptor, predecessor.st_uid, predecessor.st_gid) == 0;
  fchmod(descriptor, predecessor.st_mode & (same_owner ? 0777U : 0707U));
}

}  // namespace

ReplacedFile::ReplacedFile(const std::string& target) : LocalFile(target) {
  if (PathHasNul()) {
    return;
  }
  std::optional<FilePlace> place = FindPlace(target);
  if (!place) {
    LogFailure("create");
    return;
  }
  place_ = std::move(*place);
  if (place_.entry.IsOpen() && !place_.entry.IsRegular()) {
    LogNotRegular();
  } else if (place_.folder.IsOpen()) {
    CreateBeside();
  } else {
    OpenItself();
  }
}

ReplacedFile::~ReplacedFile() {
  if (!temporary_.empty()) {
    unlinkat(place_.folder.number(), temporary_.c_str(), 0);
  }
}

bool ReplacedFile::Replace() {
  if (!Complete()) {
    LogFailure("complete");
    return false;
  }
  return true;
}

void ReplacedFile::OpenItself() {
  const std::string path = "/proc/self/fd/" + std::to_string(place_.entry.number());
  descriptor_ = Descriptor(open(path.c_str(), O_WRONLY | O_CLOEXEC));
  if (!IsOpen()) {
    LogFailure("open");
  }
}

void ReplacedFile::CreateBeside() {
  const bool has_predecessor = place_.entry.IsOpen();
  std::string name;
  do {
    name = TemporaryName();
    descriptor_ = Descriptor(openat(place_.folder.number(), name.c_str(),
                                    O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                    has_predecessor ? 0600 : 0666));
  } while (!IsOpen() && errno == EEXIST);
  if (!IsOpen()) {
    LogFailure("create");
    return;
  }
  temporary_ = std::move(name);
  if (has_predecessor) {
    Succeed(descriptor_.number(), place_.entry.Status());
  }
}

bool ReplacedFile::Complete() {
  const int file = descriptor_.number();
  const int folder = place_.folder.number();
  if (temporary_.empty()) {  // what is left of a longer content goes
    return ftruncate(file, lseek(file, 0, SEEK_CUR)) == 0 && fsync(file) == 0;
  }
  if (fsync(file) != 0) {
    return false;
  }
  const Descriptor current(openat(folder, place_.name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
  if (current.IsOpen() && !current.IsRegular()) {
    errno = EEXIST;
    return false;
  }
  if (renameat(folder, temporary_.c_str(), folder, place_.name.c_str()) != 0) {
    return false;
  }
  temporary_.clear();
  // The name outlives a crash of the machine, too. When it does not, the former file is back,
  // whole; and not every folder that can be written can be read.
  const Descriptor readable(openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (readable.IsOpen()) {
    fsync(readable.number());
  }
  return true;
}

}  // namespace dorvdbquery
