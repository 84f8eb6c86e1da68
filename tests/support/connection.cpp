#include "support/connection.h"

#include <soci/postgresql/soci-postgresql.h>
#include <soci/soci.h>

#include <cstdlib>

namespace test_support {

PGconn* ConnectionOf(const dorvdbquery::Session& session) {
  return static_cast<soci::postgresql_session_backend*>(session.handle()->get_backend())->conn_;
}

MessageTrace::MessageTrace(const dorvdbquery::Session& session)
    : connection_(ConnectionOf(session)), stream_(open_memstream(&text_, &size_)) {
  PQtrace(connection_, stream_);
  PQsetTraceFlags(connection_, PQTRACE_SUPPRESS_TIMESTAMPS);
}

MessageTrace::~MessageTrace() {
  PQuntrace(connection_);
  std::fclose(stream_);
  std::free(text_);
}

int MessageTrace::RoundTrips() {
  const std::string messages = Messages();
  const std::string ready = "\tReadyForQuery\t";
  int count = 0;
  for (auto at = messages.find(ready); at != std::string::npos; at = messages.find(ready, at + 1)) {
    ++count;
  }
  return count;
}

std::string MessageTrace::Messages() {
  std::fflush(stream_);
  return {text_, size_};
}

}  // namespace test_support
