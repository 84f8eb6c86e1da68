#include "observe.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

int allocations = 0;

}  // namespace

// The program's own allocation functions take the place of the C library's, for every library that
// it loads, and pass on to them.
extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier)
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
// NOLINTEND(bugprone-reserved-identifier)

void* malloc(std::size_t size) noexcept {
  ++allocations;
  return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) noexcept {
  ++allocations;
  return __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) noexcept {
  ++allocations;
  return __libc_realloc(memory, size);
}

}  // extern "C"

namespace bench {

int CountAllocations(const Operation& operation) {
  const int before = allocations;
  operation();
  return allocations - before;
}

int CountRoundTrips(PGconn* connection, const Operation& operation) {
  char* text = nullptr;
  std::size_t size = 0;
  std::FILE* const trace = open_memstream(&text, &size);
  PQtrace(connection, trace);
  operation();
  PQuntrace(connection);
  std::fclose(trace);

  constexpr std::string_view kReady = "\tReadyForQuery\t";
  const std::string_view messages(text, size);
  int count = 0;
  for (std::size_t at = messages.find(kReady); at != std::string_view::npos;
       at = messages.find(kReady, at + 1)) {
    ++count;
  }
  std::free(text);
  return count;
}

}  // namespace bench
