#include <dorvdl/dbquery/query.h>

#include <cstdint>
#include <cstdlib>
#include <utility>

#include "dbquery/execution.h"
#include "dbquery/failure_log.h"
#include "dbquery/failures.h"
#include "dbquery/session_state.h"

namespace dorvdbquery {

namespace {

// The longest message that the server reads, with some room for what frames the values. It hangs up
// on a longer one.
constexpr std::size_t kLongestMessage = 0x3fff0000;  // bytes

// Not what an exception says, which may quote the value.
constexpr char kUnreadableRow[] = "a row could not be read";

// Whether the protocol cannot carry the statement.
bool IsTooLarge(const SqlText& sql) {
  std::size_t size = sql.text().size();
  for (const Parameter& parameter : sql.parameters()) {
    size += sizeof(std::int32_t) + (parameter ? parameter->size() : 0);
  }
  return size > kLongestMessage || sql.parameters().size() > PQ_QUERY_PARAM_MAX_LIMIT;
}

// Why the statement must not be sent; null when it may be.
const char* Refusal(const SqlText& sql, const SessionState* state) {
  if (!sql.refusal().empty()) {
    return sql.refusal().c_str();
  }
  if (IsTooLarge(sql)) {
    return "the statement is too large";
  }
  return state == nullptr ? kNoConnection : state->Refusal();
}

// Has a statement fail that the library does not send, or does not take for done.
void Refuse(SessionState* state, const char* reason) {
  LogUnsentStatement(reason);
  if (state != nullptr) {
    state->Note(OwnFailure(Failure::Kind::kRefused, reason));
  }
}

}  // namespace

Query::Query(const Session& session, std::string table)
    : session_(session.state_), table_(std::move(table)) {}

Query::~Query() = default;

bool Query::Execute() { return Run() && (FetchNext(), true); }

bool Query::Run() {
  execution_.reset();
  SqlText sql = Statement();
  const auto state = session();
  if (sql.text().empty() && sql.refusal().empty()) {
    if (state != nullptr) {
      state->failure = {};  // nothing to do is an answer
    }
    return false;
  }
  if (const char* const reason = Refusal(sql, state.get())) {
    Refuse(state.get(), reason);
    return false;
  }
  auto execution = std::make_unique<Execution>(*state, std::move(sql), targets_);
  try {
    if (!execution->Run(*state)) {
      LogFailedStatement(execution->result(), execution->text().c_str());
      return false;
    }
  } catch (const soci::soci_error& error) {
    state->Note(OwnFailure(Failure::Kind::kLocal, kUnreadableRow));
    // The context that SOCI adds holds its statement.
    throw soci::soci_error(error.get_error_message());
  }
  execution_ = std::move(execution);
  if (!demand_.IsNull() && RowCount() == 0) {
    execution_.reset();
    Refuse(state.get(), demand_refusal_);
    return false;
  }
  return true;
}

void Query::OnlyWhen(const Condition& demand, const char* refusal) {
  demand_ = demand;
  demand_refusal_ = refusal;
}

bool Query::FetchNext() {
  if (execution_ == nullptr) {
    return false;
  }
  const auto state = session();  // reading notes in it whether there was a row
  if (state == nullptr) {
    LogUnsentStatement(kNoConnection);
    return false;
  }
  try {
    return execution_->Fetch();
  } catch (const soci::soci_error& error) {
    state->Note(OwnFailure(Failure::Kind::kLocal, kUnreadableRow));
    throw soci::soci_error(error.get_error_message());
  } catch (...) {
    state->Note(OwnFailure(Failure::Kind::kLocal, kUnreadableRow));
    throw;
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

void ConditionalQuery::AppendWhere(SqlText& statement, const Condition& further) const {
  (condition_ && further).AppendWhereTo(statement);
}

}  // namespace dorvdbquery
