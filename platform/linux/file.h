// Reading and holding files, for the library's own use.
#ifndef DORV_LINUX_FILE_H_
#define DORV_LINUX_FILE_H_

#include <fcntl.h>

#include <string>

namespace dorv {

// An open file or folder, closed at the end. Negative when it could not be opened.
class File {
 public:
  explicit File(int descriptor) : descriptor_(descriptor) {}
  ~File();
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  explicit operator bool() const { return descriptor_ >= 0; }
  int get() const { return descriptor_; }

 private:
  int descriptor_;
};

// What the regular file @p path holds, which is relative to the open folder @p folder unless it is
// absolute. Throws std::system_error, whose text names the path, when it is no such file or cannot
// be read; what is no regular file cannot make it wait.
std::string ReadFile(const std::string& path, int folder = AT_FDCWD);

}  // namespace dorv

#endif  // DORV_LINUX_FILE_H_
