#include "support/environment_calls.h"

#include <dlfcn.h>

#include <cerrno>
#include <cstdlib>
#include <ctime>

namespace test_support {
namespace {

EnvironmentCalls* current = nullptr;

}  // namespace

EnvironmentCalls::EnvironmentCalls() {
  if (current != nullptr) {
    std::abort();
  }
  current = this;
}

EnvironmentCalls::~EnvironmentCalls() { current = nullptr; }

}  // namespace test_support

extern "C" {
#define EXPORTED __attribute__((visibility("default")))

EXPORTED int setenv(const char* name, const char* value, int overwrite) noexcept {
  const auto* const calls = test_support::current;
  if (calls != nullptr && calls->setenv_error != 0) {
    errno = calls->setenv_error;
    return -1;
  }
  using Setenv = int(const char*, const char*, int);
  return reinterpret_cast<Setenv*>(dlsym(RTLD_NEXT, "setenv"))(name, value, overwrite);
}

EXPORTED char* asctime(const std::tm* time) noexcept {
  const auto* const calls = test_support::current;
  if (calls != nullptr && calls->asctime_fails) {
    return nullptr;
  }
  using Asctime = char*(const std::tm*);
  return reinterpret_cast<Asctime*>(dlsym(RTLD_NEXT, "asctime"))(time);
}
}
