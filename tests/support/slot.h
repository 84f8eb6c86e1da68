// Where an operation stands in its class's table of virtual operations.
#ifndef TESTS_SUPPORT_SLOT_H_
#define TESTS_SUPPORT_SLOT_H_

#include <cstddef>
#include <cstring>

namespace test_support {

// The place as the compiler's C++ ABI lays it out, counted from 0; -1 for an operation that is not
// virtual. A virtual destructor takes two places.
template <typename Operation>
int Slot(Operation operation) {
  std::ptrdiff_t words[2];
  static_assert(sizeof(operation) == sizeof(words));
  std::memcpy(words, &operation, sizeof(words));
#if defined(__arm__) || defined(__aarch64__)
  const bool is_virtual = (words[1] & 1) != 0;
  const std::ptrdiff_t offset = words[0];
#else
  const bool is_virtual = (words[0] & 1) != 0;
  const std::ptrdiff_t offset = words[0] - 1;
#endif
  return is_virtual ? static_cast<int>(offset / static_cast<std::ptrdiff_t>(sizeof(void*))) : -1;
}

}  // namespace test_support

#endif  // TESTS_SUPPORT_SLOT_H_
