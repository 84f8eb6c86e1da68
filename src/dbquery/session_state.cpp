#include "dbquery/session_state.h"

#include <dorvdl/dbquery/transaction.h>
#include <sys/socket.h>

namespace dorvdbquery {

const char* SessionState::Refusal() const {
  if (failed_begins > 0) {
    // Outside the transaction that it was meant for, a statement would last.
    return "its transaction could not begin";
  }
  // Only a program that uses libpq's connection itself gets there. libpq would refuse as well, but
  // in the way in which it reports a connection that has lost its place.
  if (PQpipelineStatus(connection()) != PQ_PIPELINE_OFF ||
      PQtransactionStatus(connection()) == PQTRANS_ACTIVE) {
    return "the connection is in the middle of something else";
  }
  return nullptr;
}

void SessionState::FailScope() const {
  if (innermost != nullptr) {
    innermost->has_failed_ = true;
  }
}

void SessionState::Break() {
  is_broken = true;
  shutdown(PQsocket(connection()), SHUT_RDWR);
}

}  // namespace dorvdbquery
