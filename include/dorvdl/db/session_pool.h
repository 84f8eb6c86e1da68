/// @file
/// Connections that threads take in turn.
#ifndef DORVDL_DB_SESSION_POOL_H_
#define DORVDL_DB_SESSION_POOL_H_

#include <dorvdl/db/session.h>
#include <dorvdl/util/export.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>

namespace dorvdbquery {
class RecycledSession;
}

namespace dorvdl::db {

/// A fixed number of connections for any number of threads: for web servers, whose requests are
/// many and short, and for daemons with many workers. All its operations may be called by several
/// threads at once; a session that was taken belongs to one thread at a time, as any other does.
///
/// A session comes back by itself when the last pointer to it goes. What was not committed is
/// rolled back, nothing is listened to any more, its failure is none, and a broken connection is
/// replaced. What a program keeps from a session that went back (an accessor, a statement, a
/// transaction) fails as on a lost connection and reaches nobody else's. What its own statements
/// have set on the connection (`SET`, temporary tables, advisory locks of the session) stays there.
///
/// A controller whose session from here is lost opens one of its own, which does not count.
class DORVDL_EXPORT SessionPool {
 public:
  /// @param most  how many connections there may be at once; at least 1. None is opened yet.
  explicit SessionPool(std::size_t most);

  /// Closes what is here. Sessions that are taken stay usable, and close when they are let go.
  ~SessionPool();
  SessionPool(const SessionPool&) = delete;
  SessionPool& operator=(const SessionPool&) = delete;

  /// Opens all connections that are not open yet, or that were lost here, and returns how many are
  /// open, with those that are taken. Opening one changes the ids of the whole process for a moment
  /// (dorvdl/db/session.h), so this is best done before other threads start.
  ///
  /// @throws soci::soci_error when one cannot be opened; those that were opened stay.
  [[nodiscard]] std::size_t Open();

  /// A session, for as long as a pointer to it is kept; null when none came free within @p wait.
  /// Opens one when none is free and fewer than the most are open, which takes its own time.
  ///
  /// @throws soci::soci_error when one cannot be opened; the next call tries again.
  [[nodiscard]] std::shared_ptr<DBSession> Take(std::chrono::milliseconds wait);

 private:
  struct Core;

  // Hands out a connection that came back, or a new one, in a place that was taken for it.
  static std::shared_ptr<DBSession> Lend(const std::shared_ptr<Core>& core,
                                         std::optional<dorvdbquery::RecycledSession> free);

  const std::shared_ptr<Core> core_;
};

}  // namespace dorvdl::db

#endif  // DORVDL_DB_SESSION_POOL_H_
