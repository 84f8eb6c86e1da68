// What the tests of the query builder share: a session and a small table.
#ifndef TESTS_INTEGRATION_DBQUERY_QUERY_TEST_H_
#define TESTS_INTEGRATION_DBQUERY_QUERY_TEST_H_

#include <dorvdl/dbquery/delete_query.h>
#include <dorvdl/dbquery/insert_query.h>
#include <dorvdl/dbquery/select_query.h>
#include <dorvdl/dbquery/session.h>
#include <dorvdl/dbquery/transaction.h>
#include <dorvdl/dbquery/update_query.h>

#include <string>
#include <vector>

#include "support/connection.h"
#include "support/database.h"
#include "support/syslog_capture.h"

namespace dorvdbquery {

using Rows = std::vector<std::string>;
using Lines = std::vector<test_support::LogLine>;

// A session of its own and the table "item", empty.
class QueryTest : public test_support::DatabaseTest {
 protected:
  QueryTest() {
    raw_.Run(
        "DROP TABLE IF EXISTS item;"
        "CREATE TABLE item (id integer PRIMARY KEY, name text, pid integer DEFAULT 0, size "
        "bigint)");
    test_support::TakeLog();
  }

  static Session Connect() { return Session::PGSQL("Tarnwick", "download"); }

  // Runs a statement on the session under test, past the query builder.
  void Direct(const std::string& sql) { *session_.handle() << sql; }

  bool Insert(int id) {
    InsertQuery query(session_, "item");
    query.SetInsertAll({"id"});
    query.Values({ToParameter(id)});
    return query.Execute();
  }

  // The ids in the table as another session sees them.
  Rows Stored() { return raw_.Run("SELECT id FROM item ORDER BY id"); }

  // The ids in the table that meet a condition.
  std::vector<int> IdsWhere(const Condition& condition) {
    std::vector<int> ids;
    int id = 0;
    SelectQuery query(session_, "item");
    query.SelectField<int>("id", id);
    query.OrderBy("id", SelectBase::kAscending);
    query.Where(condition);
    EXPECT_TRUE(query.ExecuteWithoutPreFetch());
    while (query.Fetch()) {
      ids.push_back(id);
    }
    return ids;
  }

  // The line about a statement that was not sent or that the server refused.
  static test_support::LogLine Failed(const std::string& why) {
    return {test_support::kError, "dbquery/query", "Failed to execute statement: " + why};
  }

  Session session_ = Connect();
};

}  // namespace dorvdbquery

#endif  // TESTS_INTEGRATION_DBQUERY_QUERY_TEST_H_
