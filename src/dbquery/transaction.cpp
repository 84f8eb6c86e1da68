#include <dorvdl/dbquery/transaction.h>

#include <cstddef>
#include <cstdio>
#include <cstring>

#include "dbquery/exchange.h"
#include "dbquery/failure_log.h"
#include "dbquery/session_state.h"

namespace dorvdbquery {
namespace {

// Commands about savepoints stand on the stack: a scope has to end also when memory is short.
constexpr std::size_t kCommandSize = 80;

// Runs a command; true when the server confirms it with the tag @p tag. (It answers a COMMIT of a
// failed transaction with the tag ROLLBACK and no error.) Failures are logged. Allocates nothing.
bool Command(SessionState& state, const char* command, const char* tag) {
  const Answer answer = Ask(state, command);
  if (IsSuccess(answer.get())) {
    return std::strcmp(PQcmdStatus(answer.get()), tag) == 0;
  }
  LogFailedStatement(answer.get(), command);
  return false;
}

}  // namespace

Transaction::Transaction(Session& session) : state_(session.state_) {
  const auto state = state_.lock();
  if (state == nullptr) {
    LogUnsentStatement(kNoConnection);
    return;
  }
  const PGTransactionStatusType status = PQtransactionStatus(state->connection());
  if (const char* const reason = state->Refusal()) {
    // Alone it would last, whatever becomes of the one around it.
    LogUnsentStatement(reason);
  } else if (status == PQTRANS_INTRANS || status == PQTRANS_INERROR) {
    savepoint_ = ++state->savepoints;
    char command[kCommandSize];
    std::snprintf(command, sizeof(command), "SAVEPOINT dorvdl_%d", savepoint_);
    has_begun_ = Command(*state, command, "SAVEPOINT");
  } else {
    has_begun_ = Command(*state, "BEGIN", "BEGIN");
  }
  is_open_ = has_begun_;
  if (!has_begun_) {
    ++state->failed_begins;
  }
  outer_ = state->innermost;
  state->innermost = this;
}

Transaction::~Transaction() {
  if (is_open_) {
    Rollback();
  }
  if (const auto state = state_.lock(); state != nullptr && !has_begun_) {
    --state->failed_begins;
    Leave(*state);
  }
}

bool Transaction::Commit() {
  if (!is_open_) {
    return false;
  }
  const auto state = state_.lock();
  if (state == nullptr || has_failed_ ||
      PQtransactionStatus(state->connection()) != PQTRANS_INTRANS) {
    Rollback();
    return false;
  }
  is_open_ = false;
  Leave(*state);
  if (savepoint_ == 0) {
    return Command(*state, "COMMIT", "COMMIT");
  }
  char command[kCommandSize];
  std::snprintf(command, sizeof(command), "RELEASE SAVEPOINT dorvdl_%d", savepoint_);
  return Command(*state, command, "RELEASE");
}

void Transaction::Rollback() {
  is_open_ = false;
  const auto state = state_.lock();
  if (state == nullptr) {
    LogUnsentStatement(kNoConnection);
    return;
  }
  Leave(*state);
  if (savepoint_ == 0) {
    Command(*state, "ROLLBACK", "ROLLBACK");
    return;
  }
  // Both in one round trip; releasing frees the savepoint, which a rollback to it keeps.
  char command[kCommandSize];
  std::snprintf(command, sizeof(command),
                "ROLLBACK TO SAVEPOINT dorvdl_%d; RELEASE SAVEPOINT dorvdl_%d", savepoint_,
                savepoint_);
  Command(*state, command, "RELEASE");
}

void Transaction::Leave(SessionState& state) {
  // Usually the first place: scopes nest. One that outlives the scope around it must not be left
  // pointing to that.
  Transaction** place = &state.innermost;
  while (*place != this) {
    place = &(*place)->outer_;
  }
  *place = outer_;
}

}  // namespace dorvdbquery
