#include "observe.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace {

long long allocations = 0;

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
namespace {

// Counts the messages in a trace as it is written, for that of a large answer is long.
struct TraceReader {
  static ssize_t Write(void* reader, const char* text, std::size_t size) {
    static_cast<TraceReader*>(reader)->Read(text, size);
    return static_cast<ssize_t>(size);
  }

  void Read(const char* text, std::size_t size) {
    constexpr char kReady[] = "\tReadyForQuery\t";
    unread.append(text, size);
    std::size_t at = 0;
    for (std::size_t next; (next = unread.find(kReady, at)) != std::string::npos;) {
      ++count;
      at = next + sizeof(kReady) - 1;
    }
    // The end may be the beginning of one more.
    unread.erase(0, std::max(at, unread.size() - std::min(unread.size(), sizeof(kReady) - 2)));
  }

  std::string unread;
  int count = 0;
};

}  // namespace

long long CountAllocations(const std::function<void()>& operation) {
  const long long before = allocations;
  operation();
  return allocations - before;
}

int CountRoundTrips(Peer& peer, const std::function<void()>& operation) {
  TraceReader reader;
  std::FILE* const trace =
      fopencookie(&reader, "w", {nullptr, &TraceReader::Write, nullptr, nullptr});
  peer.Trace(trace);
  operation();
  peer.Trace(nullptr);
  std::fclose(trace);
  return reader.count;
}

}  // namespace bench
