// File descriptors that are closed when they are no longer needed.
#ifndef SRC_DBQUERY_DESCRIPTOR_H_
#define SRC_DBQUERY_DESCRIPTOR_H_

#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace dorvdbquery {

class Descriptor {
 public:
  // Takes over what open() and the like return; not open when that is -1.
  explicit Descriptor(int number = -1) : number_(number) {}
  ~Descriptor() {
    if (IsOpen()) {
      close(number_);
    }
  }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }

  bool IsOpen() const { return number_ >= 0; }
  int number() const { return number_; }

  // All zero when it cannot be had.
  struct stat Status() const;

  bool IsRegular() const { return S_ISREG(Status().st_mode); }

  // Whether the kernel makes up what is open: a file's size, and where a link leads.
  bool IsOnProc() const;

 private:
  int number_;
};

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_DESCRIPTOR_H_
