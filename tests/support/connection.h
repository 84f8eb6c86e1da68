// Looking below the library's sessions: at libpq's connection and at what passes over it.
#ifndef TESTS_SUPPORT_CONNECTION_H_
#define TESTS_SUPPORT_CONNECTION_H_

#include <dorvdl/dbquery/session.h>
#include <libpq-fe.h>

#include <cstdio>
#include <string>

namespace test_support {

// libpq's connection of a connected session.
PGconn* ConnectionOf(const dorvdbquery::Session& session);

// Watches the messages of a session while it lives. One at a time per session.
class MessageTrace {
 public:
  explicit MessageTrace(const dorvdbquery::Session& session);
  ~MessageTrace();
  MessageTrace(const MessageTrace&) = delete;
  MessageTrace& operator=(const MessageTrace&) = delete;

  // How often the server has reported that it is ready for the next request, so far.
  int RoundTrips();

  // All messages of both sides so far, one per line.
  std::string Messages();

 private:
  PGconn* const connection_;
  char* text_ = nullptr;
  std::size_t size_ = 0;
  FILE* const stream_;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_CONNECTION_H_
