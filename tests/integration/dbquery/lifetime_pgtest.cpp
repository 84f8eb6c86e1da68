// Statements and transactions that outlive their session: they fail, say so in the log, and touch
// nothing of it.
#include <gtest/gtest.h>

#include <optional>

#include "integration/dbquery/query_test.h"

namespace dorvdbquery {
namespace {

using test_support::TakeLog;

class LifetimeTest : public QueryTest {
 protected:
  const Lines kGone{Failed("the session has no connection")};
};

TEST_F(LifetimeTest, AStatementOfASessionThatIsGoneFails) {
  std::optional<Session> session(Connect());
  int id = 0;
  SelectQuery select(*session, "item");
  select.SelectField<int>("id", id);
  DeleteQuery remove(*session, "item");
  ASSERT_TRUE(Insert(7));
  ASSERT_TRUE(select.ExecuteWithoutPreFetch());
  session.reset();
  EXPECT_FALSE(select.Fetch());
  EXPECT_EQ(TakeLog(), kGone);
  EXPECT_EQ(id, 0);
  EXPECT_FALSE(select.Execute());
  EXPECT_EQ(TakeLog(), kGone);
  EXPECT_FALSE(remove.Execute());
  EXPECT_EQ(TakeLog(), kGone);
  EXPECT_EQ(Stored(), Rows{"7"});
}

TEST_F(LifetimeTest, AStatementFollowsItsSessionWhenThatIsMoved) {
  DeleteQuery remove(session_, "item");
  ASSERT_TRUE(Insert(1));
  const Session moved(std::move(session_));
  EXPECT_TRUE(remove.Execute());
  EXPECT_EQ(Stored(), Rows{});
}

TEST_F(LifetimeTest, ATransactionOfASessionThatIsGoneFailsAndWasRolledBack) {
  DefaultTransaction outer(session_);
  std::optional<DefaultTransaction> inner(std::in_place, session_);
  ASSERT_TRUE(Insert(1));
  session_ = Session();
  EXPECT_FALSE(inner->Commit());
  EXPECT_EQ(TakeLog(), kGone);
  inner.reset();
  EXPECT_FALSE(outer.Commit());
  EXPECT_EQ(TakeLog(), kGone);
  EXPECT_EQ(Stored(), Rows{});
}

TEST_F(LifetimeTest, ATransactionThatEndsAfterItsSessionLogsThatItCouldNotRollBack) {
  {
    const DefaultTransaction transaction(session_);
    session_ = Session();
  }
  EXPECT_EQ(TakeLog(), kGone);
}

TEST_F(LifetimeTest, ATransactionThatCouldNotBeginOutlivesItsSession) {
  test_support::TerminateOtherSessions(raw_);
  DefaultTransaction transaction(session_);
  TakeLog();
  session_ = Connect();
  EXPECT_TRUE(Insert(1)) << "the new session has nothing to do with it";
  EXPECT_FALSE(transaction.Commit());
  EXPECT_EQ(TakeLog(), Lines{});
}

}  // namespace
}  // namespace dorvdbquery
