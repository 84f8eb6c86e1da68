// Files on this side of the connection.
#ifndef SRC_DBQUERY_LOCAL_FILE_H_
#define SRC_DBQUERY_LOCAL_FILE_H_

#include <sys/types.h>

#include <cstddef>
#include <string>
#include <utility>

namespace dorvdbquery {

// An open file. Failures are logged at error level with the path and the reason.
class LocalFile {
 public:
  // Opens a regular file for reading; anything else (a folder, a FIFO, a device, a path with an
  // embedded NUL) is refused, without waiting for a FIFO's other end.
  static LocalFile OpenRegular(const std::string& path);

  ~LocalFile();
  LocalFile(LocalFile&& other) noexcept;
  LocalFile& operator=(LocalFile&&) = delete;

  bool IsOpen() const { return descriptor_ >= 0; }

  // Reads up to @p size bytes; 0 at the end of the file, -1 on failure.
  ssize_t Read(char* data, std::size_t size) const;

  // Writes all of @p size bytes; false on failure.
  bool Write(const char* data, std::size_t size) const;

 protected:
  LocalFile(std::string path, int descriptor) : path_(std::move(path)), descriptor_(descriptor) {}

  void LogFailure(const char* what) const;

  std::string path_;
  int descriptor_;
};

// A file that takes another's place, owner and permissions once it is complete: it is written
// beside the target under a name of its own and renamed at the end. Destroyed before that it leaves
// nothing behind.
class ReplacedFile : public LocalFile {
 public:
  // Not open when @p target exists and is no regular file, or when its folder cannot be written.
  explicit ReplacedFile(const std::string& target);
  ~ReplacedFile();
  ReplacedFile(ReplacedFile&&) = delete;
  ReplacedFile& operator=(ReplacedFile&&) = delete;

  // Puts the file in the target's place; false on failure.
  bool Replace();

 private:
  std::string target_;
  std::string temporary_;  // where the file is until it is complete; empty when there is none
};

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_LOCAL_FILE_H_
