// What the tests of large objects share.
#ifndef TESTS_INTEGRATION_DBQUERY_LARGE_OBJECT_TEST_H_
#define TESTS_INTEGRATION_DBQUERY_LARGE_OBJECT_TEST_H_

#include <linux/sockios.h>
#include <sys/ioctl.h>

#include <csignal>
#include <cstddef>
#include <filesystem>
#include <future>
#include <set>
#include <string>

#include "integration/dbquery/query_test.h"
#include "support/temporary_folder.h"

namespace dorvdbquery {

class LargeObjectTest : public QueryTest {
 protected:
  // Bytes of every value, no two pieces alike.
  static std::string Content(std::size_t size) {
    std::string content(size, '\0');
    unsigned state = 1;
    for (char& byte : content) {
      state = state * 1664525U + 1013904223U;
      byte = static_cast<char>(state >> 24U);
    }
    return content;
  }

  std::string StoredObjects() { return raw_.Value("SELECT count(*) FROM pg_largeobject_metadata"); }

  // A large object that another session has stored.
  unsigned Store(const std::string& text) {
    return static_cast<unsigned>(std::stoul(raw_.Value("SELECT lo_from_bytea(0, '" + text + "')")));
  }

  bool IsIdle() {
    return PQtransactionStatus(test_support::ConnectionOf(session_)) == PQTRANS_IDLE;
  }

  // Starts the transfer, has the event happen between the opening of its file and the server's
  // first answer, and returns the transfer's result.
  template <typename Transfer, typename Event>
  auto Interrupt(const Transfer& transfer, const Event& event) {
    PGconn* const connection = test_support::ConnectionOf(session_);
    kill(PQbackendPID(connection), SIGSTOP);
    auto result = std::async(std::launch::async, transfer);
    for (int unread = 0; unread == 0;) {
      EXPECT_EQ(ioctl(PQsocket(connection), SIOCOUTQ, &unread), 0);
    }
    event();
    kill(PQbackendPID(connection), SIGCONT);
    return result.get();
  }

  // The names of everything in a folder, the test's own unless another one of it is named.
  std::set<std::string> Files(const std::string& folder = "") const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Path(folder))) {
      names.insert(entry.path().filename());
    }
    return names;
  }

  test_support::TemporaryFolder folder_;
};

using Names = std::set<std::string>;

// A line about a file or an object.
inline test_support::LogLine FileFailure(const std::string& text) {
  return {test_support::kError, "dbquery/local_file", text};
}
inline test_support::LogLine ObjectFailure(const std::string& text) {
  return {test_support::kError, "dbquery/large_object", text};
}

}  // namespace dorvdbquery

#endif  // TESTS_INTEGRATION_DBQUERY_LARGE_OBJECT_TEST_H_
