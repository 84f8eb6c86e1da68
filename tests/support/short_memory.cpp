#include "support/short_memory.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

thread_local bool is_short = false;
thread_local int refusals = 0;

}  // namespace

namespace test_support {

ShortMemory::ShortMemory() {
  refusals = 0;
  is_short = true;
}
ShortMemory::~ShortMemory() { is_short = false; }

int ShortMemory::Refusals() const { return refusals; }

}  // namespace test_support

#define EXPORTED __attribute__((visibility("default")))

EXPORTED void* operator new(std::size_t size) {
  void* const memory = is_short ? nullptr : std::malloc(size > 0 ? size : 1);
  if (memory == nullptr) {
    ++refusals;
    throw std::bad_alloc();
  }
  return memory;
}
EXPORTED void operator delete(void* memory) noexcept { std::free(memory); }
EXPORTED void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
