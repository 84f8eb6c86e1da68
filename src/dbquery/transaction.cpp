#include <dorvdl/dbquery/transaction.h>

#include <cstring>
#include <memory>

#include "dbquery/failure_log.h"
#include "dbquery/session_state.h"

namespace dorvdbquery {
namespace {

using Result = std::unique_ptr<PGresult, decltype(&PQclear)>;

// Runs a transaction command; true when the server confirms it with the tag @p tag. (It answers a
// COMMIT of a failed transaction with the tag ROLLBACK and no error.)
bool Command(PGconn* connection, const std::string& command, const char* tag) {
  const Result result(PQexec(connection, command.c_str()), &PQclear);
  if (PQresultStatus(result.get()) != PGRES_COMMAND_OK) {
    LogFailedStatement(result.get(), command);
    return false;
  }
  return std::strcmp(PQcmdStatus(result.get()), tag) == 0;
}

}  // namespace

Transaction::Transaction(Session& session) : state_(session.state_.get()) {
  if (state_ == nullptr) {
    LogUnsentStatement("the session has no connection");
    return;
  }
  PGconn* const connection = state_->connection();
  const PGTransactionStatusType status = PQtransactionStatus(connection);
  if (state_->failed_begins > 0) {
    // Alone it would last, whatever becomes of the one around it.
    LogUnsentStatement("its transaction could not begin");
  } else if (status == PQTRANS_INTRANS || status == PQTRANS_INERROR) {
    savepoint_ = "dorvdl_" + std::to_string(++state_->savepoints);
    begun_ = Command(connection, "SAVEPOINT " + savepoint_, "SAVEPOINT");
  } else {
    begun_ = Command(connection, "BEGIN", "BEGIN");
  }
  open_ = begun_;
  if (!begun_) {
    ++state_->failed_begins;
  }
}

Transaction::~Transaction() {
  if (open_) {
    Rollback();
  }
  if (state_ != nullptr && !begun_) {
    --state_->failed_begins;
  }
}

bool Transaction::Commit() {
  if (!open_) {
    return false;
  }
  if (PQtransactionStatus(state_->connection()) != PQTRANS_INTRANS) {
    Rollback();
    return false;
  }
  open_ = false;
  if (savepoint_.empty()) {
    return Command(state_->connection(), "COMMIT", "COMMIT");
  }
  return Command(state_->connection(), "RELEASE SAVEPOINT " + savepoint_, "RELEASE");
}

void Transaction::Rollback() {
  open_ = false;
  if (savepoint_.empty()) {
    Command(state_->connection(), "ROLLBACK", "ROLLBACK");
  } else {
    // Both in one round trip; releasing frees the savepoint, which a rollback to it keeps.
    Command(state_->connection(),
            "ROLLBACK TO SAVEPOINT " + savepoint_ + "; RELEASE SAVEPOINT " + savepoint_, "RELEASE");
  }
}

}  // namespace dorvdbquery
