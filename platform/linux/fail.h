// How the library's own functions report what the system refused.
#ifndef DORV_LINUX_FAIL_H_
#define DORV_LINUX_FAIL_H_

#include <string>
#include <system_error>

namespace dorv {

// Throws std::system_error for an error number such as errno; @p what says what could not be used.
[[noreturn]] inline void Fail(int error, const std::string& what) {
  throw std::system_error(error, std::generic_category(), what);
}

}  // namespace dorv

#endif  // DORV_LINUX_FAIL_H_
