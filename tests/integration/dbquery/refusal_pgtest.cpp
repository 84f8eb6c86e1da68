// What the library refuses to send fails the scope that it is missing in, and only that one.
#include <gtest/gtest.h>
#include <unistd.h>

#include <memory>

#include "integration/dbquery/query_test.h"

namespace dorvdbquery {
namespace {

using test_support::ConnectionOf;
using test_support::TakeLog;

class RefusalTest : public QueryTest {
 protected:
  // Tries to insert a text that the library does not send.
  void RefuseAStatement() {
    InsertQuery query(session_, "item");
    query.SetInsertAll({"id", "name"});
    query.Values({ToParameter(99), ToParameter(std::string("a\0b", 3))});
    EXPECT_FALSE(query.Execute());
    EXPECT_EQ(TakeLog(), Lines{Failed("a text value has an embedded NUL")});
  }
};

TEST_F(RefusalTest, ACommitAfterARefusedStatementIsFalseAndNothingLasts) {
  DefaultTransaction transaction(session_);
  ASSERT_TRUE(Insert(1));
  RefuseAStatement();
  EXPECT_TRUE(Insert(2)) << "the server knows nothing of it";
  EXPECT_FALSE(transaction.Commit());
  EXPECT_FALSE(transaction.Commit());
  EXPECT_EQ(Stored(), Rows{});
  EXPECT_TRUE(Insert(3));
  EXPECT_EQ(Stored(), Rows{"3"});
}

TEST_F(RefusalTest, ARefusedReadCountsToo) {
  DefaultTransaction transaction(session_);
  ASSERT_TRUE(Insert(1));
  SelectQuery query(session_, "no such table");
  EXPECT_FALSE(query.Execute());
  EXPECT_FALSE(transaction.Commit());
  EXPECT_EQ(Stored(), Rows{});
}

TEST_F(RefusalTest, InsideASavepointItFailsThatOneOnly) {
  for (const bool committed : {true, false}) {
    raw_.Run("DELETE FROM item");
    DefaultTransaction outer(session_);
    ASSERT_TRUE(Insert(1));
    {
      DefaultTransaction inner(session_);
      ASSERT_TRUE(Insert(2));
      RefuseAStatement();
      if (committed) {
        EXPECT_FALSE(inner.Commit());
      }
    }
    EXPECT_TRUE(Insert(3));
    EXPECT_TRUE(outer.Commit());
    EXPECT_EQ(Stored(), (Rows{"1", "3"}));
  }
}

TEST_F(RefusalTest, AfterASavepointHasEndedItFailsTheOneAround) {
  for (const bool committed : {true, false}) {
    DefaultTransaction outer(session_);
    DefaultTransaction inner(session_);
    ASSERT_TRUE(Insert(1));
    if (committed) {
      EXPECT_TRUE(inner.Commit());
    } else {
      RefuseAStatement();
      EXPECT_FALSE(inner.Commit());
    }
    RefuseAStatement();
    EXPECT_FALSE(outer.Commit());
    EXPECT_EQ(Stored(), Rows{});
  }
}

TEST_F(RefusalTest, AfterACommitItFailsNothing) {
  DefaultTransaction first(session_);
  EXPECT_TRUE(first.Commit());
  RefuseAStatement();
  DefaultTransaction second(session_);
  ASSERT_TRUE(Insert(1));
  EXPECT_TRUE(second.Commit());
  EXPECT_EQ(Stored(), Rows{"1"});
}

TEST_F(RefusalTest, AnUpdateWithNothingToSetIsNoneAndLeavesTheScopeGood) {
  DefaultTransaction transaction(session_);
  ASSERT_TRUE(Insert(1));
  EXPECT_FALSE(UpdateQuery(session_, "item").Execute());
  EXPECT_TRUE(transaction.Commit());
  EXPECT_EQ(Stored(), Rows{"1"});
}

TEST_F(RefusalTest, ScopesThatEndInTheWrongOrderTouchNothing) {
  auto outer = std::make_unique<DefaultTransaction>(session_);
  DefaultTransaction inner(session_);
  ASSERT_TRUE(Insert(1));
  outer.reset();
  EXPECT_TRUE(Insert(2));
  RefuseAStatement();
  EXPECT_FALSE(inner.Commit());
  EXPECT_EQ(Stored(), Rows{"2"});
}

TEST_F(RefusalTest, MoreValuesThanAStatementCanCarryAreNotSent) {
  constexpr std::size_t kTooMany = 65536;
  InsertQuery query(session_, "item");
  query.SetInsertAll(std::vector<std::string>(kTooMany, "id"));
  query.Values(std::vector<Parameter>(kTooMany, ToParameter(1)));
  EXPECT_FALSE(query.Execute());
  EXPECT_EQ(TakeLog(), Lines{Failed("the statement is too large")});
  EXPECT_TRUE(session_.Good());
  EXPECT_TRUE(Insert(1));
}

// The server would hang up.
TEST_F(RefusalTest, AValueLongerThanAMessageIsNotSent) {
  constexpr long kNeeded = 4L << 30;  // bytes, for the value and its copies
  if (sysconf(_SC_AVPHYS_PAGES) * sysconf(_SC_PAGESIZE) < kNeeded) {
    GTEST_SKIP() << "not enough memory for such a value";
  }
  UpdateQuery query(session_, "item");
  query.SetFactory<std::string>("name", std::string(1UL << 30, 'x'));
  EXPECT_FALSE(query.Execute());
  EXPECT_EQ(TakeLog(), Lines{Failed("the statement is too large")});
  EXPECT_TRUE(session_.Good());
  EXPECT_TRUE(Insert(1));
}

TEST_F(RefusalTest, OnAConnectionThatTheProgramHasInItsHandsNothingIsSent) {
  ASSERT_EQ(PQsendQuery(ConnectionOf(session_), "SELECT pg_sleep(0.05)"), 1);
  EXPECT_FALSE(Insert(1));
  EXPECT_EQ(TakeLog(), Lines{Failed("the connection is in the middle of something else")});
  while (PGresult* const result = PQgetResult(ConnectionOf(session_))) {
    PQclear(result);
  }
  EXPECT_TRUE(session_.Good());
  EXPECT_TRUE(Insert(2));
  EXPECT_EQ(Stored(), Rows{"2"});
}

}  // namespace
}  // namespace dorvdbquery
