/// @file
/// Writing to the system log in the one form that the whole library uses:
/// "SOURCE:LINE MESSAGE", where SOURCE is the source file's name from its layer on and without
/// ending, such as "db/operator".
#ifndef DORVDL_UTIL_LOG_H_
#define DORVDL_UTIL_LOG_H_

#include <syslog.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <string_view>

namespace dorvdl::util {

/// The part of a source file's @p path that log lines show: what follows the last "src/" or
/// "include/dorvdl/" folder, or the bare file name where there is none; without the ending.
constexpr std::string_view SourceName(std::string_view path) {
  std::size_t begin = path.rfind('/') == std::string_view::npos ? 0 : path.rfind('/') + 1;
  for (const std::string_view root :
       {std::string_view("src/"), std::string_view("include/dorvdl/")}) {
    const std::size_t found = path.rfind(root);
    const bool whole_folder =
        found == 0 || (found != std::string_view::npos && path[found - 1] == '/');
    if (whole_folder) {
      begin = found + root.size();
    }
  }
  path.remove_prefix(begin);
  return path.substr(0, path.rfind('.'));
}

/// The same as a zero-terminated string that lives in the program's constant data.
template <std::size_t kSize>
constexpr std::array<char, kSize> SourceNameArray(const char (&path)[kSize]) {
  std::array<char, kSize> name{};
  const std::string_view text = SourceName(std::string_view(path, kSize - 1));
  for (std::size_t i = 0; i < text.size(); ++i) {
    name[i] = text[i];
  }
  return name;
}

}  // namespace dorvdl::util

/// The log source name of the file that this stands in, as a `const char*` of static lifetime.
#define DORVDL_SOURCE                                                              \
  ([]() noexcept -> const char* {                                                  \
    static constexpr auto dorvdl_name = ::dorvdl::util::SourceNameArray(__FILE__); \
    return dorvdl_name.data();                                                     \
  }())

/// `DORVDL_LOG(priority, format, ...)` writes one line at @p priority (a `syslog` priority value):
/// source name, line number, then the `printf`-like format (a string literal) with its values, nine
/// at most. Leaves `errno` as it is, so that the report about a failed call does not hide why it
/// failed; "%m" works.
#define DORVDL_LOG(priority, ...) DORVDL_LOG_AS(DORVDL_SOURCE, priority, __VA_ARGS__)

/// DORVDL_LOG() under another source name, for what the log's readers know as one source although
/// it stands in several files.
#define DORVDL_LOG_AS(source, priority, ...)                     \
  do {                                                           \
    const int dorvdl_saved_errno = errno;                        \
    syslog(priority, DORVDL_LOG_ARGUMENTS(source, __VA_ARGS__)); \
    errno = dorvdl_saved_errno;                                  \
  } while (false)

/// @cond internal
// Source and line stand between the format and its values, and standard C++17 has no way to leave
// out the comma before no values: the number of arguments picks the macro that has none.
#define DORVDL_LOG_ARGUMENTS(source, ...)                                                         \
  DORVDL_LOG_ELEVENTH(__VA_ARGS__, DORVDL_LOG_VALUES, DORVDL_LOG_VALUES, DORVDL_LOG_VALUES,       \
                      DORVDL_LOG_VALUES, DORVDL_LOG_VALUES, DORVDL_LOG_VALUES, DORVDL_LOG_VALUES, \
                      DORVDL_LOG_VALUES, DORVDL_LOG_VALUES, DORVDL_LOG_TEXT, )                    \
  (source, __VA_ARGS__)
#define DORVDL_LOG_ELEVENTH(a1, a2, a3, a4, a5, a6, a7, a8, a9, a10, eleventh, ...) eleventh
#define DORVDL_LOG_TEXT(source, format) "%s:%d " format, source, __LINE__
#define DORVDL_LOG_VALUES(source, format, ...) "%s:%d " format, source, __LINE__, __VA_ARGS__
/// @endcond

#endif  // DORVDL_UTIL_LOG_H_
