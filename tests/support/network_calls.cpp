// Does not include the headers that declare the calls: with fortification their inline definitions
// would get in the way.
#include "support/network_calls.h"

#include <dlfcn.h>
#include <sys/types.h>

#include <cerrno>
#include <cstdlib>

namespace test_support {
namespace {

NetworkCalls* current = nullptr;

// Makes the call of that name, which this program's own definition hides, or lets it fail.
template <typename Result, typename... Arguments>
Result Call(const char* name, Arguments... arguments) {
  if (current != nullptr && current->Fails(name)) {
    return -1;
  }
  using Function = Result(Arguments...);
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name))(arguments...);
}

}  // namespace

NetworkCalls::NetworkCalls(const NetworkFault& fault, int nth) : fault_(fault), nth_(nth) {
  if (current != nullptr) {
    std::abort();
  }
  current = this;
}

NetworkCalls::~NetworkCalls() { current = nullptr; }

bool NetworkCalls::Fails(const char* call) {
  if (fault_.call != call || ++made_ != nth_) {
    return false;
  }
  errno = fault_.error;
  return true;
}

}  // namespace test_support

struct pollfd;

extern "C" {
#define EXPORTED __attribute__((visibility("default")))

EXPORTED ssize_t recv(int socket, void* buffer, std::size_t size, int flags) {
  return test_support::Call<ssize_t>("recv", socket, buffer, size, flags);
}
EXPORTED ssize_t send(int socket, const void* buffer, std::size_t size, int flags) {
  return test_support::Call<ssize_t>("send", socket, buffer, size, flags);
}
EXPORTED int poll(pollfd* descriptors, unsigned long count, int timeout) {
  return test_support::Call<int>("poll", descriptors, count, timeout);
}
}
