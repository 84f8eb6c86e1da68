// A connection on its way from one holder to the next.
#ifndef SRC_DBQUERY_RECYCLED_SESSION_H_
#define SRC_DBQUERY_RECYCLED_SESSION_H_

#include <dorvdl/dbquery/session.h>

#include <memory>
#include <optional>

namespace dorvdbquery {

// Takes the connection out of a session, so that whatever refers to that session fails, and has the
// server roll back and stop listening. The server does so at once; its answer is waited for only
// when the next holder comes, who usually finds it there.
class RecycledSession {
 public:
  // Without a connection when that of @p session is lost, or in the middle of something.
  explicit RecycledSession(Session& session) noexcept;
  RecycledSession(RecycledSession&&) noexcept = default;
  RecycledSession& operator=(RecycledSession&&) noexcept = default;
  ~RecycledSession();

  bool HasConnection() const { return state_ != nullptr; }

  // The session for the next holder; nothing when the connection did not survive.
  std::optional<Session> Finish() &&;

 private:
  std::shared_ptr<SessionState> state_;
};

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_RECYCLED_SESSION_H_
