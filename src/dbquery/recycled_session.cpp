#include "dbquery/recycled_session.h"

#include <new>
#include <utility>

#include "dbquery/exchange.h"
#include "dbquery/session_state.h"

namespace dorvdbquery {
namespace {

void DropNotifications(PGconn* connection) {
  while (PGnotify* const notification = PQnotifies(connection)) {
    PQfreemem(notification);
  }
}

}  // namespace

RecycledSession::RecycledSession(Session& session) noexcept {
  const std::shared_ptr<SessionState> used = std::move(session.state_);
  if (used == nullptr || !used->IsGood() || used->IsInTheMiddle()) {
    return;
  }
  try {
    // Statements and transactions find their session by its state: the next holder gets another.
    auto next = std::make_shared<SessionState>(std::move(used->session));
    const char* const clean_up = PQtransactionStatus(next->connection()) == PQTRANS_IDLE
                                     ? "UNLISTEN *"
                                     : "ROLLBACK; UNLISTEN *";
    if (Send(*next, clean_up)) {
      state_ = std::move(next);
    }
  } catch (const std::bad_alloc&) {
    // Then this connection is closed, and another one opened when it is needed.
  }
}

RecycledSession::~RecycledSession() = default;

std::optional<Session> RecycledSession::Finish() && {
  const std::shared_ptr<SessionState> state = std::move(state_);
  const bool is_clean = state != nullptr && IsSuccess(Receive(*state).get()) && state->IsGood();
  if (!is_clean) {
    return std::nullopt;
  }
  DropNotifications(state->connection());
  return Session(state);
}

}  // namespace dorvdbquery
