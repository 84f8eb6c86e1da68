#include "dbquery/session_state.h"

#include <dorvdl/dbquery/transaction.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "dbquery/failure_keeper.h"
#include "dbquery/failures.h"

namespace dorvdbquery {

bool SessionState::IsGood() const {
  if (is_broken || PQstatus(connection()) != CONNECTION_OK) {
    return false;
  }
  // An idle connection has nothing to say, so the other end's hang-up shows at once, while data
  // that waits in front of it (the server's farewell) would hide it from a read.
  pollfd socket{PQsocket(connection()), POLLRDHUP, 0};
  return TEMP_FAILURE_RETRY(poll(&socket, 1, 0)) == 0;
}

bool SessionState::IsInTheMiddle() const {
  return PQpipelineStatus(connection()) != PQ_PIPELINE_OFF ||
         PQtransactionStatus(connection()) == PQTRANS_ACTIVE;
}

const char* SessionState::Refusal() const {
  if (failed_begins > 0) {
    // Outside the transaction that it was meant for, a statement would last.
    return "its transaction could not begin";
  }
  // libpq would refuse as well, but in the way in which it reports a connection that has lost its
  // place.
  if (IsInTheMiddle()) {
    return "the connection is in the middle of something else";
  }
  return nullptr;
}

void SessionState::Note(const Failure& noted) noexcept {
  Remember(noted, failure);
  if (innermost != nullptr) {
    innermost->Note(noted);
  }
  if (keeper != nullptr) {
    keeper->Keep(noted);
  }
}

void SessionState::Break() {
  is_broken = true;
  shutdown(PQsocket(connection()), SHUT_RDWR);
}

}  // namespace dorvdbquery
