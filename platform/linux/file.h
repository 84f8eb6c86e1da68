// Reading and holding files, for the library's own use.
#ifndef DORV_LINUX_FILE_H_
#define DORV_LINUX_FILE_H_

#include <fcntl.h>

#include <cstddef>
#include <string>
#include <utility>

namespace dorv {

// An open file or folder, closed at the end. Negative when it could not be opened.
class File {
 public:
  explicit File(int descriptor) : descriptor_(descriptor) {}
  ~File();
  File(File&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  explicit operator bool() const { return descriptor_ >= 0; }
  int get() const { return descriptor_; }

 private:
  int descriptor_;
};

// What the regular file @p path holds. Throws std::system_error, whose text names the path, when it
// is no such file or cannot be read; what is no regular file cannot make it wait.
std::string ReadFile(const std::string& path);

// The same for the file @p name of an open folder. A link counts as no such file, and one of more
// than @p most bytes is not read (EFBIG).
std::string ReadFileOf(const File& folder, const std::string& name, std::size_t most);

}  // namespace dorv

#endif  // DORV_LINUX_FILE_H_
