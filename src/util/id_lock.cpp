#include "util/id_lock.h"

#include <pthread.h>

namespace dorvdl::util {
namespace {

constexpr pthread_mutex_t kFree = PTHREAD_RECURSIVE_MUTEX_INITIALIZER_NP;

// Not std::recursive_mutex: a child may have to do without what its parent's other threads held,
// and unlocking what is not held must be harmless.
pthread_mutex_t id_mutex = kFree;

// The thread that held the lock does not exist in the child.
[[maybe_unused]] const int child_handler =
    pthread_atfork(nullptr, nullptr, [] { id_mutex = kFree; });

}  // namespace

void LockIds() noexcept { pthread_mutex_lock(&id_mutex); }

void UnlockIds() noexcept { pthread_mutex_unlock(&id_mutex); }

}  // namespace dorvdl::util
