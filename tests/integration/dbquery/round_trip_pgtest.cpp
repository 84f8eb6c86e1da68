// What goes over the wire: one request and one answer per statement.
#include <dorvdl/record/task.h>
#include <gtest/gtest.h>

#include "integration/dbquery/query_test.h"

namespace dorvdbquery {
namespace {

using dorvdl::record::Task;
using test_support::MessageTrace;

class RoundTripTest : public QueryTest {
 protected:
  RoundTripTest() { raw_.Run("INSERT INTO item (id, name) VALUES (1, 'a'), (2, 'b')"); }
};

TEST_F(RoundTripTest, ASelectTakesOneHoweverManyRowsAreRead) {
  int id = 0;
  SelectQuery query(session_, "item");
  query.SelectField<int>("id", id);
  query.Where(Condition::ConditionFactory<int>("id", ">", 0) &&
              Condition::HasSubstring("name", "") && Condition::In<int>("id", {1, 2}));
  query.OrderBy("id", SelectBase::kDescending);
  query.Limit(10);
  query.Offset(0);
  MessageTrace trace(session_);
  ASSERT_TRUE(query.ExecuteWithoutPreFetch());
  while (query.Fetch()) {
  }
  EXPECT_EQ(trace.RoundTrips(), 1);
  ASSERT_TRUE(query.Execute());
  EXPECT_EQ(trace.RoundTrips(), 2);
}

TEST_F(RoundTripTest, ASelectIntoARecordTakesOne) {
  raw_.Run("INSERT INTO download_queue (username) VALUES ('alice')");
  Task task;
  SelectQuery through_soci(session_, "download_queue");
  through_soci.Into(task);
  SelectQuery decoded(session_, "download_queue");
  decoded.IntoRow(task.RowTarget());
  MessageTrace trace(session_);
  ASSERT_TRUE(through_soci.Execute());
  EXPECT_EQ(trace.RoundTrips(), 1);
  ASSERT_TRUE(decoded.Execute());
  EXPECT_EQ(trace.RoundTrips(), 2);
}

TEST_F(RoundTripTest, AnInsertTakesOne) {
  Task task;
  task.mutable_proto().set_username("alice");
  int key = 0;
  InsertQuery query(session_, "download_queue");
  query.SetInsertAll(task.GetInsertFields());
  query.Returning("task_id", key);
  MessageTrace trace(session_);
  query.Use(task);
  EXPECT_EQ(trace.RoundTrips(), 0) << "taking a record's values asks nobody";
  ASSERT_TRUE(query.Execute());
  EXPECT_EQ(trace.RoundTrips(), 1);
  EXPECT_EQ(key, 1);
}

TEST_F(RoundTripTest, AnUpdateAndADeleteTakeOneEach) {
  UpdateQuery update(session_, "item");
  update.SetFactory<std::string>("name", "c");
  DeleteQuery remove(session_, "item");
  MessageTrace trace(session_);
  ASSERT_TRUE(update.Execute());
  EXPECT_EQ(update.AffectedRows(), 2);
  EXPECT_EQ(trace.RoundTrips(), 1);
  ASSERT_TRUE(remove.Execute());
  EXPECT_EQ(trace.RoundTrips(), 2);
}

TEST_F(RoundTripTest, AFailedStatementTakesOneAndLeavesNothingToClearAway) {
  SelectQuery query(session_, "missing");
  MessageTrace trace(session_);
  EXPECT_FALSE(query.Execute());
  EXPECT_EQ(trace.RoundTrips(), 1);
}

TEST_F(RoundTripTest, ARefusedStatementTakesNone) {
  SelectQuery query(session_, "item");
  query.OrderBy("id; --", SelectBase::kAscending);
  UpdateQuery empty(session_, "item");
  MessageTrace trace(session_);
  EXPECT_FALSE(query.Execute());
  EXPECT_FALSE(empty.Execute());
  EXPECT_EQ(trace.Messages(), "");
}

TEST_F(RoundTripTest, ATransactionTakesOneToBeginAndOneToEnd) {
  MessageTrace trace(session_);
  {
    DefaultTransaction outer(session_);
    EXPECT_EQ(trace.RoundTrips(), 1);
    {
      DefaultTransaction inner(session_);
      EXPECT_EQ(trace.RoundTrips(), 2);
    }
    EXPECT_EQ(trace.RoundTrips(), 3);
    EXPECT_TRUE(outer.Commit());
    EXPECT_EQ(trace.RoundTrips(), 4);
  }
  EXPECT_EQ(trace.RoundTrips(), 4);
}

TEST_F(RoundTripTest, TestingASessionTakesNone) {
  MessageTrace trace(session_);
  EXPECT_TRUE(session_.Good());
  EXPECT_EQ(trace.Messages(), "");
}

TEST_F(RoundTripTest, ValuesTravelBesideTheStatement) {
  MessageTrace trace(session_);
  IdsWhere(Condition::ConditionFactory<std::string>("name", "=", "bound value"));
  const std::string messages = trace.Messages();
  const std::string statement =
      R"(Parse	 "" "SELECT id FROM "item" WHERE name = $1 ORDER BY "id" ASC")";
  EXPECT_NE(messages.find(statement), std::string::npos) << messages;
  EXPECT_NE(messages.find("'bound value'"), std::string::npos) << messages;
}

}  // namespace
}  // namespace dorvdbquery
