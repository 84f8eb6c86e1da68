// Who asks what an operation of several statements failed with.
#ifndef SRC_DBQUERY_FAILURE_KEEPER_H_
#define SRC_DBQUERY_FAILURE_KEEPER_H_

#include <dorvdl/dbquery/failure.h>
#include <dorvdl/dbquery/session.h>

#include <memory>

namespace dorvdbquery {

// While it lives, the first thing that fails on a session is kept in a place of the owner's.
// Keepers on one session nest; the innermost gets it. That a session has no connection has failed
// already.
class FailureKeeper {
 public:
  // @p first must be none, and outlive this object.
  FailureKeeper(const Session& session, Failure& first);
  ~FailureKeeper();
  FailureKeeper(const FailureKeeper&) = delete;
  FailureKeeper& operator=(const FailureKeeper&) = delete;

  void Keep(const Failure& failure) noexcept;

 private:
  const std::weak_ptr<SessionState> state_;
  Failure& first_;
  FailureKeeper* outer_ = nullptr;
};

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_FAILURE_KEEPER_H_
