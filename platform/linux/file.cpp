#include "file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <limits>

#include "fail.h"

namespace dorv {

File::~File() {
  if (descriptor_ >= 0) {
    close(descriptor_);
  }
}

namespace {

constexpr int kFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

// What a file holds that was opened right before.
std::string ReadAll(const File& file, const std::string& path, std::size_t most) {
  struct stat info {};
  if (!file || fstat(file.get(), &info) != 0) {
    Fail(errno, path);
  }
  if (!S_ISREG(info.st_mode)) {
    Fail(EINVAL, path);
  }
  std::string content;
  char part[4096];
  bool fits = static_cast<std::size_t>(info.st_size) <= most;
  for (ssize_t count = 0; fits && (count = read(file.get(), part, sizeof(part))) != 0;) {
    if (count > 0) {
      content.append(part, static_cast<std::size_t>(count));
      fits = content.size() <= most;
    } else if (errno != EINTR) {
      Fail(errno, path);
    }
  }
  if (!fits) {
    Fail(EFBIG, path);
  }
  return content;
}

}  // namespace

std::string ReadFile(const std::string& path) {
  const File file(open(path.c_str(), kFlags));
  return ReadAll(file, path, std::numeric_limits<std::size_t>::max());
}

std::string ReadFileOf(const File& folder, const std::string& name, std::size_t most) {
  const File file(openat(folder.get(), name.c_str(), kFlags | O_NOFOLLOW));
  return ReadAll(file, name, most);
}

}  // namespace dorv
