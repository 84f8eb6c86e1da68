// The private server as tests see it beside the library: a raw connection of its own.
#ifndef TESTS_SUPPORT_DATABASE_H_
#define TESTS_SUPPORT_DATABASE_H_

#include <gtest/gtest.h>
#include <libpq-fe.h>

#include <string>
#include <vector>

namespace test_support {

// A plain libpq connection to the database, as the package's role. Fails the test on any error.
class RawConnection {
 public:
  RawConnection();
  ~RawConnection();
  RawConnection(const RawConnection&) = delete;
  RawConnection& operator=(const RawConnection&) = delete;

  // Runs one or more statements; returns the last one's rows, each as its values joined by "|",
  // with "NULL" for a NULL.
  std::vector<std::string> Run(const std::string& sql);

  // The only value of a statement with one row and one column.
  std::string Value(const std::string& sql);

 private:
  PGconn* connection_;
};

// A test with the private server and empty tables. Refuses to run against any other server.
class DatabaseTest : public testing::Test {
 protected:
  DatabaseTest();

  RawConnection raw_;
};

// Shuts the private server down at once, and brings it back.
void HaltServer();
void ResumeServer();

// Ends every other session of the database and waits until they are gone.
void TerminateOtherSessions(RawConnection& raw);

}  // namespace test_support

#endif  // TESTS_SUPPORT_DATABASE_H_
