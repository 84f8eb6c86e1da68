// The C library's locale of one thread.
#ifndef SRC_UTIL_THREAD_LOCALE_H_
#define SRC_UTIL_THREAD_LOCALE_H_

#include <clocale>

namespace dorvdl::util {

// Makes a locale the calling thread's for the lifetime of the object, for calls that take none.
class ThreadLocale {
 public:
  explicit ThreadLocale(locale_t locale) : previous_(uselocale(locale)) {}
  ~ThreadLocale() { uselocale(previous_); }
  ThreadLocale(const ThreadLocale&) = delete;
  ThreadLocale& operator=(const ThreadLocale&) = delete;

 private:
  locale_t previous_;
};

}  // namespace dorvdl::util

#endif  // SRC_UTIL_THREAD_LOCALE_H_
