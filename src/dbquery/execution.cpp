#include "dbquery/execution.h"

#include <soci/postgresql/soci-postgresql.h>

#include <utility>

#include "dbquery/exchange.h"

namespace dorvdbquery {
namespace {

soci::postgresql_statement_backend& Backend(soci::details::statement_backend* backend) {
  return *static_cast<soci::postgresql_statement_backend*>(backend);
}

Answer Send(SessionState& state, const SqlText& sql) {
  if (sql.parameters().empty()) {
    return Ask(state, sql.text().c_str());
  }
  Arguments arguments(sql.parameters().size());
  for (const Parameter& parameter : sql.parameters()) {
    arguments.AddText(parameter ? parameter->c_str() : nullptr);
  }
  return Ask(state, sql.text().c_str(), arguments);
}

}  // namespace

Execution::Execution(SessionState& state, SqlText sql, const std::vector<Target>& targets)
    : sql_(std::move(sql)), statement_(*state.session) {
  statement_.alloc();
  for (const Target& add_target : targets) {
    add_target(statement_);
  }
  // SOCI would look for placeholders of its own in a text.
  statement_.prepare("", soci::details::st_one_time_query);
  statement_.define_and_bind();
}

bool Execution::Run(SessionState& state) {
  Answer answer = Send(state, sql_);
  const bool has_succeeded = IsSuccess(answer.get());
  auto& backend = Backend(statement_.get_backend());
  backend.result_.reset(answer.release());
  if (has_succeeded) {
    // This is how SOCI goes on with an answer that is there already.
    backend.justDescribed_ = true;
    statement_.execute(false);
  }
  return has_succeeded;
}

bool Execution::Fetch() { return statement_.fetch(); }

const PGresult* Execution::result() { return Backend(statement_.get_backend()).result_; }

}  // namespace dorvdbquery
