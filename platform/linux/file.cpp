#include "file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>

#include "fail.h"

namespace dorv {

File::~File() {
  if (descriptor_ >= 0) {
    close(descriptor_);
  }
}

std::string ReadFile(const std::string& path, int folder) {
  const File file(openat(folder, path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat info {};
  if (!file || fstat(file.get(), &info) != 0) {
    Fail(errno, path);
  }
  if (!S_ISREG(info.st_mode)) {
    Fail(EINVAL, path);
  }
  std::string content;
  char part[4096];
  for (ssize_t count = 0; (count = read(file.get(), part, sizeof(part))) != 0;) {
    if (count > 0) {
      content.append(part, static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      Fail(errno, path);
    }
  }
  return content;
}

}  // namespace dorv
