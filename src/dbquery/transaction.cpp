#include <dorvdl/dbquery/transaction.h>

#include <cstddef>
#include <cstdio>
#include <cstring>

#include "dbquery/exchange.h"
#include "dbquery/failure_log.h"
#include "dbquery/failures.h"
#include "dbquery/session_state.h"

namespace dorvdbquery {
namespace {

// Commands about savepoints stand on the stack: a scope has to end also when memory is short.
constexpr std::size_t kCommandSize = 80;

// Runs a command; its failure is logged. Allocates nothing but what Ask() does.
Answer Command(SessionState& state, const char* command, Purpose purpose = Purpose::kWork) {
  Answer answer = Ask(state, command, purpose);
  if (!IsSuccess(answer.get())) {
    LogFailedStatement(answer.get(), command);
  }
  return answer;
}

// Whether the server has confirmed a command with the tag @p tag. (It answers a COMMIT of a failed
// transaction with the tag ROLLBACK and no error.)
bool Confirms(const Answer& answer, const char* tag) {
  return IsSuccess(answer.get()) && std::strcmp(PQcmdStatus(answer.get()), tag) == 0;
}

// Whether the connection is lost, as far as is known: the transaction with it, whoever is in it.
bool IsLost(const SessionState& state) {
  return state.is_broken || PQtransactionStatus(state.connection()) == PQTRANS_UNKNOWN;
}

}  // namespace

Transaction::Transaction(Session& session, Kind kind) : state_(session.state_), kind_(kind) {
  const auto state = state_.lock();
  if (state == nullptr) {
    LogUnsentStatement(kNoConnection);
    Note(OwnFailure(Failure::Kind::kConnection, kNoConnection));
    return;
  }
  const bool is_within = session.InTransaction();
  outer_ = state->innermost;
  state->innermost = this;  // what fails from here on fails in this scope, its begin first
  if (const char* const reason = state->Refusal()) {
    // Alone it would last, whatever becomes of the one around it.
    LogUnsentStatement(reason);
    state->Note(OwnFailure(Failure::Kind::kRefused, reason));
  } else if (is_within) {
    savepoint_ = ++state->savepoints;
    char command[kCommandSize];
    std::snprintf(command, sizeof(command), "SAVEPOINT dorvdl_%d", savepoint_);
    has_begun_ = Confirms(Command(*state, command), "SAVEPOINT");
  } else {
    const bool is_plain = kind == Kind::kOfStatements;
    has_begun_ = Confirms(
        Command(*state, is_plain ? "BEGIN" : "BEGIN ISOLATION LEVEL READ COMMITTED"), "BEGIN");
  }
  is_open_ = has_begun_;
  if (!has_begun_) {
    ++state->failed_begins;
  }
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

Transaction::Outcome Transaction::End() {
  if (!is_open_) {
    return Outcome::kRolledBack;
  }
  const auto state = state_.lock();
  if (state == nullptr) {
    Note(OwnFailure(Failure::Kind::kConnection, kNoConnection));
  } else if (CanCommit(*state)) {
    return SendCommit(*state);
  }
  Rollback();
  if (state != nullptr && !state->failure) {
    Remember(failure_, state->failure);
  }
  return Outcome::kRolledBack;
}

bool Transaction::HasFailed() const {
  const auto state = state_.lock();
  if (state == nullptr || has_failed_ || failure_) {
    return true;
  }
  // An error of the server is that of the innermost scope.
  return is_open_ &&
         (IsLost(*state) || (state->innermost == this &&
                             PQtransactionStatus(state->connection()) != PQTRANS_INTRANS));
}

void Transaction::FailOperations(const Session& session, const Failure& failure) {
  if (session.state_ == nullptr) {
    return;
  }
  Transaction* scope = session.state_->innermost;
  while (scope != nullptr && scope->kind_ != Kind::kOfOperations) {
    scope = scope->outer_;
  }
  if (scope != nullptr) {
    scope->KeepFirst(failure);
  }
}

void Transaction::Note(const Failure& failure) noexcept {
  if (failure.kind == Failure::Kind::kLocal) {
    return;  // no statement's: the transaction is whole
  }
  has_failed_ = has_failed_ || failure.kind == Failure::Kind::kRefused;
  KeepFirst(failure);
}

void Transaction::KeepFirst(const Failure& failure) noexcept {
  if (!failure_) {
    Remember(failure, failure_);
  }
}

bool Transaction::CanCommit(SessionState& state) {
  if (has_failed_ || (kind_ == Kind::kOfOperations && failure_)) {
    return false;
  }
  // A commit that is never sent is one whose outcome is known.
  if (IsLost(state) || (kind_ == Kind::kOfOperations && !state.IsGood())) {
    state.Break();
    Note(OwnFailure(Failure::Kind::kConnection, kLostConnection));
    return false;
  }
  if (PQtransactionStatus(state.connection()) != PQTRANS_INTRANS) {
    Note(OwnFailure(Failure::Kind::kServer, "the transaction had failed"));
    return false;
  }
  if (kind_ == Kind::kOfOperations && state.innermost != this) {
    // What is inside would last, and could only tell that it was rolled back.
    constexpr char kReason[] = "a transaction inside it has not ended";
    LogUnsentStatement(kReason);
    Note(OwnFailure(Failure::Kind::kRefused, kReason));
    return false;
  }
  return true;
}

Transaction::Outcome Transaction::SendCommit(SessionState& state) {
  is_open_ = false;
  Leave(state);
  Outcome outcome = Outcome::kRolledBack;
  if (savepoint_ == 0) {
    const Answer answer = Command(state, "COMMIT");
    if (Confirms(answer, "COMMIT")) {
      outcome = Outcome::kCommitted;
    } else if (IsSuccess(answer.get())) {
      state.Note(OwnFailure(Failure::Kind::kServer, "the server has rolled back"));
    } else if (LeavesOutcomeOpen(answer.get())) {
      outcome = Outcome::kUnknown;
    }
  } else {
    char command[kCommandSize];
    std::snprintf(command, sizeof(command), "RELEASE SAVEPOINT dorvdl_%d", savepoint_);
    if (Confirms(Command(state, command, Purpose::kCleanUp), "RELEASE")) {
      outcome = Outcome::kCommitted;
    }
  }
  if (outcome != Outcome::kCommitted) {
    KeepFirst(state.failure);
  }
  return outcome;
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
    Command(*state, "ROLLBACK", Purpose::kCleanUp);
    return;
  }
  // Both in one round trip; releasing frees the savepoint, which a rollback to it keeps.
  char command[kCommandSize];
  std::snprintf(command, sizeof(command),
                "ROLLBACK TO SAVEPOINT dorvdl_%d; RELEASE SAVEPOINT dorvdl_%d", savepoint_,
                savepoint_);
  Command(*state, command, Purpose::kCleanUp);
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
