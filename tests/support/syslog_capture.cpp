// Stands in for the C library's syslog(). Does not include <syslog.h>: with fortification its
// inline definitions would get in the way.
#include "support/syslog_capture.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <new>
#include <utility>

namespace test_support {
namespace {

struct Captured {
  std::mutex mutex;
  std::vector<LogLine> lines;
  std::vector<int> numbers;
  std::vector<int> taken_numbers;
};

Captured& Store() {
  static Captured* const store = new Captured;  // outlives whatever logs while the process ends
  return *store;
}

void Keep(int priority, const std::string& text) {
  const std::size_t space = text.find(' ');
  const std::size_t colon = text.rfind(':', space);
  LogLine line{priority, {}, text};
  int number = 0;
  if (space != std::string::npos && colon != std::string::npos) {
    line.source = text.substr(0, colon);
    number = std::atoi(text.c_str() + colon + 1);
    line.text = text.substr(space + 1);
  }
  Captured& store = Store();
  const std::lock_guard<std::mutex> lock(store.mutex);
  store.lines.push_back(std::move(line));
  store.numbers.push_back(number);
}

void Capture(int priority, const char* format, va_list arguments) {
  char* formatted = nullptr;
  if (vasprintf(&formatted, format, arguments) < 0) {
    std::abort();
  }
  try {
    Keep(priority, formatted);
  } catch (const std::bad_alloc&) {  // the real one throws nothing; the line is lost
  }
  std::free(formatted);
  errno = ENOTCONN;  // as the real one does without a log daemon
}

}  // namespace

std::vector<LogLine> TakeLog() {
  Captured& store = Store();
  const std::lock_guard<std::mutex> lock(store.mutex);
  store.taken_numbers = std::move(store.numbers);
  store.numbers.clear();
  return std::exchange(store.lines, {});
}

std::vector<int> TakenLineNumbers() {
  Captured& store = Store();
  const std::lock_guard<std::mutex> lock(store.mutex);
  return store.taken_numbers;
}

}  // namespace test_support

// NOLINTBEGIN(bugprone-reserved-identifier): the names are the C library's.
extern "C" {
#define EXPORTED __attribute__((visibility("default")))

EXPORTED void vsyslog(int priority, const char* format, va_list arguments) {
  test_support::Capture(priority, format, arguments);
}
EXPORTED void __vsyslog_chk(int priority, int, const char* format, va_list arguments) {
  test_support::Capture(priority, format, arguments);
}
EXPORTED void syslog(int priority, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  test_support::Capture(priority, format, arguments);
  va_end(arguments);
}
EXPORTED void __syslog_chk(int priority, int, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  test_support::Capture(priority, format, arguments);
  va_end(arguments);
}
}
// NOLINTEND(bugprone-reserved-identifier)
