// The lock around every switch of ids.
#ifndef SRC_UTIL_ID_LOCK_H_
#define SRC_UTIL_ID_LOCK_H_

namespace dorvdl::util {

// Effective ids belong to the whole process: a thread that reads them while another one is root
// would "restore" root. So whoever switches holds this lock from before the first id is read until
// the former ids are back. One thread may hold it several times over. A forked child has it free,
// whoever held it in the parent.
void LockIds() noexcept;

// Does nothing in a thread that does not hold the lock, as in the child of one that forked while it
// did.
void UnlockIds() noexcept;

// Holds the lock while it lives.
class IdLock {
 public:
  IdLock() noexcept { LockIds(); }
  ~IdLock() { UnlockIds(); }
  IdLock(const IdLock&) = delete;
  IdLock& operator=(const IdLock&) = delete;
};

}  // namespace dorvdl::util

#endif  // SRC_UTIL_ID_LOCK_H_
