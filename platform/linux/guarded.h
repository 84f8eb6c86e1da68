// Keeping exceptions inside calls with C linkage.
#ifndef DORV_LINUX_GUARDED_H_
#define DORV_LINUX_GUARDED_H_

#include <exception>

namespace dorv {

// The result of @p work, or @p failure when it throws: memory is short then, or the account
// database cannot be read.
template <typename Result, typename Work>
Result Guarded(Result failure, Work work) noexcept {
  try {
    return work();
  } catch (const std::exception&) {
    return failure;
  }
}

}  // namespace dorv

#endif  // DORV_LINUX_GUARDED_H_
