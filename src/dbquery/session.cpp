#include <dorvdl/dbquery/session.h>
#include <poll.h>

#include <utility>

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

void DropNotice(void*, const PGresult*) {}

}  // namespace

Session::Session() noexcept = default;
Session::Session(std::unique_ptr<SessionState> state) noexcept : state_(std::move(state)) {}
Session::~Session() = default;
Session::Session(Session&&) noexcept = default;
Session& Session::operator=(Session&&) noexcept = default;

Session Session::PGSQL(const std::string& user, const std::string& database) {
  auto state = std::make_unique<SessionState>();
  state->session.open(soci::postgresql,
                      "user=" + Quoted(user) + " dbname=" + Quoted(database) +
                          " application_name='libdorvdlcore' client_encoding='UTF8'");
  // libpq would print the server's notices to the program's stderr. Those of the connecting itself
  // it does print: SOCI connects and gives no way in between.
  PQsetNoticeReceiver(state->connection(), DropNotice, nullptr);
  return Session(std::move(state));
}

bool Session::Good() const {
  if (state_ == nullptr || PQstatus(state_->connection()) != CONNECTION_OK) {
    return false;
  }
  // An idle connection has nothing to say, so the other end's hang-up shows at once, while data
  // that waits in front of it (the server's farewell) would hide it from a read.
  pollfd socket{PQsocket(state_->connection()), POLLRDHUP, 0};
  return poll(&socket, 1, 0) == 0;
}

soci::session* Session::handle() const { return state_ == nullptr ? nullptr : &state_->session; }

}  // namespace dorvdbquery
