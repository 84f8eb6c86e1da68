// A stand-in for operator new, to make memory short. Only for programs that ask for it, see
// tests/CMakeLists.txt.
#ifndef TESTS_SUPPORT_SHORT_MEMORY_H_
#define TESTS_SUPPORT_SHORT_MEMORY_H_

namespace test_support {

// While an object lives, operator new has no memory for the thread that made it.
class ShortMemory {
 public:
  ShortMemory();
  ~ShortMemory();
  ShortMemory(const ShortMemory&) = delete;
  ShortMemory& operator=(const ShortMemory&) = delete;

  // How often the thread has asked for memory meanwhile.
  int Refusals() const;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_SHORT_MEMORY_H_
