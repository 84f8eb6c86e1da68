// What the tests of the table accessors have in common.
#ifndef TESTS_INTEGRATION_DB_TABLE_TEST_H_
#define TESTS_INTEGRATION_DB_TABLE_TEST_H_

#include <dorvdl/control/controller.h>

#include <string>
#include <vector>

#include "support/connection.h"
#include "support/database.h"
#include "support/keys_of.h"
#include "support/syslog_capture.h"

namespace dorvdl::db {

using test_support::KeysOf;
using Ids = std::vector<int>;
using Lines = std::vector<test_support::LogLine>;
using Rows = std::vector<std::string>;

// Starts with an open connection and no log lines.
class TableTest : public test_support::DatabaseTest {
 protected:
  TableTest() {
    controller_.db_session();
    test_support::TakeLog();
  }

  // The controller's session; a new one when the server has ended the last.
  DBSession& Session() { return controller_.db_session(); }

  // A session whose connection the server has ended: what is sent over it fails, and the log tells
  // which statement it was.
  DBSession& LostSession() {
    DBSession& session = Session();
    test_support::TerminateOtherSessions(raw_);
    return session;
  }

  // The query builder's line for a statement over LostSession().
  static test_support::LogLine Lost(const std::string& statement) {
    return {
        test_support::kError, "dbquery/query",
        "Failed to execute statement: [08006] the connection to the server is lost: " + statement};
  }

  control::Controller controller_;
};

}  // namespace dorvdl::db

#endif  // TESTS_INTEGRATION_DB_TABLE_TEST_H_
