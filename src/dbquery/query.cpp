#include <dorvdl/dbquery/query.h>

#include <cstdlib>
#include <utility>

#include "dbquery/execution.h"
#include "dbquery/failure_log.h"
#include "dbquery/session_state.h"

namespace dorvdbquery {

Query::Query(const Session& session, std::string table)
    : session_(session), table_(std::move(table)) {}

Query::~Query() = default;

bool Query::Execute() { return Run(true); }

bool Query::Run(bool read_first_row) {
  execution_.reset();
  SqlText sql = Statement();
  SessionState* const state = session_.state_.get();
  if (!sql.refusal().empty()) {
    LogUnsentStatement(sql.refusal());
    return false;
  }
  if (sql.text().empty()) {
    return false;
  }
  if (state == nullptr) {
    LogUnsentStatement("the session has no connection");
    return false;
  }
  if (state->failed_begins > 0) {
    // Outside the transaction that it was meant for, the statement would last.
    LogUnsentStatement("its transaction could not begin");
    return false;
  }
  execution_ = std::make_unique<Execution>(state->session, std::move(sql), targets_);
  try {
    execution_->Run(read_first_row);
    return true;
  } catch (const soci::postgresql_soci_error&) {
    LogFailedStatement(execution_->result(), execution_->text());
    execution_.reset();
    return false;
  } catch (const soci::soci_error& error) {
    // The context that SOCI adds holds the statement and its values.
    throw soci::soci_error(error.get_error_message());
  }
}

bool Query::FetchNext() {
  if (execution_ == nullptr) {
    return false;
  }
  try {
    return execution_->Fetch();
  } catch (const soci::soci_error& error) {
    throw soci::soci_error(error.get_error_message());
  }
}

int Query::RowCount() const { return execution_ == nullptr ? 0 : PQntuples(execution_->result()); }

long long Query::AffectedRows() const {
  // libpq's interface lacks the const; nothing is written.
  return execution_ == nullptr
             ? 0
             : std::atoll(PQcmdTuples(const_cast<PGresult*>(execution_->result())));
}

ConditionalQuery::~ConditionalQuery() = default;

void ConditionalQuery::AppendWhere(SqlText& statement) const {
  if (!condition_.IsNull()) {
    statement.Append(" WHERE ");
    condition_.AppendTo(statement);
  }
}

}  // namespace dorvdbquery
