#include "dbquery/exchange.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

#include "dbquery/failures.h"

namespace dorvdbquery {
namespace {

// How long a server whose connection takes no more data may still say why, in milliseconds. It has
// said so before it hung up.
constexpr int kFarewell = 100;

// libpq does not say that sending has failed. It goes on to read, for a server that has hung up may
// have said why; where only the sending failed it would wait for an answer that nobody was asked
// for. What it leaves behind is the error number, which is 0 after a good send, unless a handler
// that collects children has come in between: those often leave their last error, ECHILD.
void HangUpIfUnsent(PGconn* connection, int send_error) {
  if (send_error == 0 || send_error == ECHILD) {
    return;
  }
  pollfd socket{PQsocket(connection), POLLIN, 0};
  if (TEMP_FAILURE_RETRY(poll(&socket, 1, kFarewell)) <= 0) {
    shutdown(socket.fd, SHUT_RDWR);
  }
}

// Sends by @p send, whose result is libpq's; whether there is an answer to wait for.
template <typename Call>
bool SendBy(SessionState& state, Call send) {
  errno = 0;
  const bool is_sent = !state.is_broken && send(state.connection()) == 1;
  if (is_sent) {
    HangUpIfUnsent(state.connection(), errno);
  }
  return is_sent;
}

// What an answer, or that there is none, means for the session.
Answer Judged(SessionState& state, Purpose purpose, Answer answer) {
  if (IsSuccess(answer.get())) {
    if (purpose == Purpose::kWork && state.failure) {
      state.failure = {};
    }
    return answer;
  }
  state.Note(FailureOf(answer.get()));
  if (!state.is_broken && !IsFromServer(answer.get())) {
    state.Break();
  }
  return answer;
}

Answer WholeAnswer(PGconn* connection) {
  Answer answer;
  while (PGresult* const next = PQgetResult(connection)) {
    answer.reset(next);
  }
  return answer;
}

// Sends by @p send, and receives.
template <typename Call>
Answer Exchange(SessionState& state, Purpose purpose, Call send) {
  return Judged(state, purpose, SendBy(state, send) ? WholeAnswer(state.connection()) : Answer());
}

}  // namespace

bool IsSuccess(const PGresult* answer) {
  const ExecStatusType status = PQresultStatus(answer);
  return status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK;
}

bool IsFromServer(const PGresult* answer) {
  return PQresultErrorField(answer, PG_DIAG_SQLSTATE) != nullptr;
}

Arguments& Arguments::AddText(const char* text) {
  values_.push_back(text);
  if (!formats_.empty()) {
    lengths_.push_back(0);  // of a text libpq finds it itself
    formats_.push_back(0);
  }
  return *this;
}

Arguments& Arguments::AddBytes(std::string_view bytes) {
  lengths_.resize(values_.size());
  formats_.resize(values_.size());
  values_.push_back(bytes.data());
  lengths_.push_back(static_cast<int>(bytes.size()));
  formats_.push_back(1);
  return *this;
}

Answer Ask(SessionState& state, const char* text, Purpose purpose) {
  return Exchange(state, purpose,
                  [text](PGconn* connection) { return PQsendQuery(connection, text); });
}

Answer Ask(SessionState& state, const char* text, const Arguments& arguments, AnswerForm form,
           Purpose purpose) {
  return Exchange(state, purpose, [&](PGconn* connection) {
    return PQsendQueryParams(connection, text, arguments.count(), nullptr, arguments.values(),
                             arguments.lengths(), arguments.formats(), static_cast<int>(form));
  });
}

bool Send(SessionState& state, const char* text) {
  return SendBy(state, [text](PGconn* connection) { return PQsendQuery(connection, text); });
}

Answer Receive(SessionState& state) {
  return Judged(state, Purpose::kWork, WholeAnswer(state.connection()));
}

}  // namespace dorvdbquery
