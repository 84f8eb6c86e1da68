#include <dorvdl/dbquery/session.h>

#include <utility>

#include "dbquery/failure_log.h"
#include "dbquery/session_state.h"
#include "util/text.h"

namespace dorvdbquery {
namespace {

// A value of a libpq connection string.
std::string Quoted(const std::string& value) {
  if (dorvdl::util::HasNul(value)) {
    throw soci::soci_error("A role or database name has an embedded NUL.");
  }
  std::string quoted = "'";
  for (const char c : value) {
    if (c == '\'' || c == '\\') {
      quoted += '\\';
    }
    quoted += c;
  }
  return quoted + "'";
}

// How long to wait for a server that nobody answers for: without limits a call would hang for ever,
// and one that opens a connection would do so as root.
constexpr struct {
  const char* option;
  const char* value;
} kWaitingLimits[] = {
    {"connect_timeout", "10"},  // seconds, per address
    {"keepalives_idle", "30"},  // seconds
    {"keepalives_interval", "10"}, {"keepalives_count", "3"},
    {"tcp_user_timeout", "60000"},  // milliseconds
};

// Those of the limits that libpq's environment and service file leave open, as a part of a
// connection string.
std::string WaitingLimits() {
  const std::unique_ptr<PQconninfoOption, decltype(&PQconninfoFree)> defaults(PQconndefaults(),
                                                                              &PQconninfoFree);
  const auto is_set = [&defaults](const std::string& name) {
    for (const PQconninfoOption* option = defaults.get();
         option != nullptr && option->keyword != nullptr; ++option) {
      if (name == option->keyword) {
        return option->val != nullptr && *option->val != '\0';
      }
    }
    return false;
  };
  std::string limits;
  for (const auto& [option, value] : kWaitingLimits) {
    if (!is_set(option)) {
      limits.append(" ").append(option).append("=").append(value);
    }
  }
  return limits;
}

void DropNotice(void*, const PGresult*) {}

}  // namespace

Session::Session() noexcept = default;
Session::Session(std::shared_ptr<SessionState> state) noexcept : state_(std::move(state)) {}
Session::~Session() = default;
Session::Session(Session&&) noexcept = default;
Session& Session::operator=(Session&&) noexcept = default;

Session Session::PGSQL(const std::string& user, const std::string& database) {
  auto session = std::make_unique<soci::session>();
  session->open(soci::postgresql, "user=" + Quoted(user) + " dbname=" + Quoted(database) +
                                      " application_name='libdorvdlcore' client_encoding='UTF8'" +
                                      WaitingLimits());
  auto state = std::make_shared<SessionState>(std::move(session));
  // libpq would print the server's notices to the program's stderr. Those of the connecting itself
  // it does print: SOCI connects and gives no way in between.
  PQsetNoticeReceiver(state->connection(), DropNotice, nullptr);
  return Session(std::move(state));
}

bool Session::Good() const { return state_ != nullptr && state_->IsGood(); }

bool Session::InTransaction() const {
  if (state_ == nullptr) {
    return false;
  }
  const PGTransactionStatusType status = PQtransactionStatus(state_->connection());
  return status == PQTRANS_INTRANS || status == PQTRANS_INERROR;
}

const Failure& Session::failure() const {
  // Never destroyed, for static objects may ask in their destructors.
  static const auto& no_connection = *new Failure{Failure::Kind::kConnection, "", kNoConnection};
  return state_ == nullptr ? no_connection : state_->failure;
}

void Session::Fail(const Failure& failure) {
  if (state_ != nullptr) {
    state_->Note(failure);
  }
}

soci::session* Session::handle() const {
  return state_ == nullptr ? nullptr : state_->session.get();
}

}  // namespace dorvdbquery
