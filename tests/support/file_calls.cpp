// Does not include <unistd.h>: with fortification its inline definition of readlink() would get in
// the way.
#include "support/file_calls.h"

#include <dlfcn.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace test_support {
namespace {

FileCalls* current = nullptr;

// The function that this program's own definition hides.
template <typename Function>
Function* Real(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int Answer(int error) {
  if (error == 0) {
    return 0;
  }
  errno = error;
  return -1;
}

ssize_t ReadLink(const char* path, char* to, std::size_t size) {
  if (current == nullptr || current->link != path) {
    return Real<ssize_t(const char*, char*, std::size_t)>("readlink")(path, to, size);
  }
  current->readlink_size = size;
  if (Answer(size == 0 ? EINVAL : current->readlink_error) != 0) {
    return -1;
  }
  return static_cast<ssize_t>(current->target.copy(to, size));
}

int Format(char* to, std::size_t size, const char* format, va_list arguments) {
  if (current != nullptr && current->formatting_fails && std::strcmp(format, "%s") == 0) {
    return -1;
  }
  return std::vsnprintf(to, size, format, arguments);
}

}  // namespace

FileCalls::FileCalls() {
  if (current != nullptr) {
    std::abort();
  }
  current = this;
}

FileCalls::~FileCalls() { current = nullptr; }

}  // namespace test_support

// NOLINTBEGIN(bugprone-reserved-identifier): the names are the C library's.
extern "C" {
#define EXPORTED __attribute__((visibility("default")))

EXPORTED ssize_t readlink(const char* path, char* to, std::size_t size) {
  return test_support::ReadLink(path, to, size);
}
EXPORTED ssize_t __readlink_chk(const char* path, char* to, std::size_t size, std::size_t) {
  return test_support::ReadLink(path, to, size);
}

EXPORTED int stat64(const char* path, struct stat64* info) noexcept {
  auto* const calls = test_support::current;
  if (calls == nullptr || calls->target != path) {
    return test_support::Real<int(const char*, struct stat64*)>("stat64")(path, info);
  }
  ++calls->stats;
  info->st_mode = calls->mode;
  return test_support::Answer(calls->stat_error);
}

EXPORTED int statfs64(const char* path, struct statfs64* info) noexcept {
  auto* const calls = test_support::current;
  if (calls == nullptr || calls->target != path) {
    return test_support::Real<int(const char*, struct statfs64*)>("statfs64")(path, info);
  }
  ++calls->statfses;
  *info = calls->file_system;
  return test_support::Answer(calls->statfs_error);
}

EXPORTED int snprintf(char* to, std::size_t size, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = test_support::Format(to, size, format, arguments);
  va_end(arguments);
  return length;
}
EXPORTED int __snprintf_chk(char* to, std::size_t size, int, std::size_t, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = test_support::Format(to, size, format, arguments);
  va_end(arguments);
  return length;
}
}
// NOLINTEND(bugprone-reserved-identifier)
