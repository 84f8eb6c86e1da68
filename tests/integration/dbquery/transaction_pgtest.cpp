#include <gtest/gtest.h>

#include <type_traits>

#include "integration/dbquery/query_test.h"

namespace dorvdbquery {
namespace {

using test_support::ConnectionOf;
using test_support::TakeLog;

static_assert(!std::is_copy_constructible_v<DefaultTransaction>);

class TransactionTest : public QueryTest {
 protected:
  // Runs a statement that the server refuses.
  void FailAStatement() {
    EXPECT_FALSE(Insert(2147483647) && Insert(2147483647));
    EXPECT_EQ(TakeLog().size(), 1U);
  }

  // Whether a transaction is open on the session under test.
  bool IsIdle() { return PQtransactionStatus(ConnectionOf(session_)) == PQTRANS_IDLE; }
};

TEST_F(TransactionTest, NothingIsSeenOutsideBeforeTheCommit) {
  DefaultTransaction transaction(session_);
  ASSERT_TRUE(Insert(1));
  EXPECT_EQ(Stored(), Rows{});
  EXPECT_TRUE(transaction.Commit());
  EXPECT_EQ(Stored(), Rows{"1"});
  EXPECT_TRUE(IsIdle());
}

TEST_F(TransactionTest, WithoutACommitItIsRolledBack) {
  {
    const DefaultTransaction transaction(session_);
    ASSERT_TRUE(Insert(1));
  }
  EXPECT_TRUE(IsIdle());
  EXPECT_TRUE(Insert(2)) << "the session goes on";
  EXPECT_EQ(Stored(), Rows{"2"});
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(TransactionTest, ASecondCommitIsFalseAndUndoesNothing) {
  {
    DefaultTransaction transaction(session_);
    ASSERT_TRUE(Insert(1));
    EXPECT_TRUE(transaction.Commit());
    EXPECT_TRUE(Insert(2)) << "on its own by now";
    EXPECT_FALSE(transaction.Commit());
  }
  EXPECT_EQ(Stored(), (Rows{"1", "2"}));
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(TransactionTest, ACommitAfterAFailedStatementIsFalseAndTheSessionGoesOn) {
  DefaultTransaction transaction(session_);
  ASSERT_TRUE(Insert(1));
  FailAStatement();
  EXPECT_FALSE(transaction.Commit());
  EXPECT_TRUE(IsIdle());
  EXPECT_FALSE(transaction.Commit());
  EXPECT_EQ(TakeLog(), Lines{}) << "the failed statement has been logged";
  EXPECT_TRUE(Insert(2));
  EXPECT_EQ(Stored(), Rows{"2"});
}

TEST_F(TransactionTest, AConstraintThatFailsAtTheCommitMakesItFalse) {
  raw_.Run("ALTER TABLE item ADD CONSTRAINT one_pid UNIQUE (pid) DEFERRABLE INITIALLY DEFERRED");
  DefaultTransaction transaction(session_);
  ASSERT_TRUE(Insert(1) && Insert(2));
  EXPECT_FALSE(transaction.Commit());
  EXPECT_EQ(TakeLog(), Lines{Failed("[23505] duplicate key value violates unique constraint "
                                    "\"one_pid\": COMMIT")});
  EXPECT_TRUE(IsIdle());
  EXPECT_EQ(Stored(), Rows{});
}

TEST_F(TransactionTest, OneInsideAnotherLastsOnlyIfBothCommit) {
  {
    const DefaultTransaction outer(session_);
    DefaultTransaction inner(session_);
    ASSERT_TRUE(Insert(1));
    EXPECT_TRUE(inner.Commit());
  }
  EXPECT_EQ(Stored(), Rows{});
  {
    DefaultTransaction outer(session_);
    ASSERT_TRUE(Insert(1));
    {
      const DefaultTransaction inner(session_);
      ASSERT_TRUE(Insert(2));
    }
    {
      DefaultTransaction inner(session_);
      ASSERT_TRUE(Insert(3));
      EXPECT_TRUE(inner.Commit());
    }
    EXPECT_TRUE(outer.Commit());
  }
  EXPECT_EQ(Stored(), (Rows{"1", "3"}));
}

TEST_F(TransactionTest, AFailureInsideIsUndoneAndTheOuterOneGoesOn) {
  for (const bool committed : {true, false}) {
    raw_.Run("DELETE FROM item");
    DefaultTransaction outer(session_);
    ASSERT_TRUE(Insert(1));
    {
      DefaultTransaction inner(session_);
      ASSERT_TRUE(Insert(2));
      FailAStatement();
      if (committed) {
        EXPECT_FALSE(inner.Commit());
      }
    }
    EXPECT_TRUE(Insert(3));
    EXPECT_TRUE(outer.Commit());
    EXPECT_EQ(Stored(), (Rows{"1", "3"}));
  }
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(TransactionTest, ThreeLevelsNest) {
  DefaultTransaction outer(session_);
  {
    DefaultTransaction middle(session_);
    ASSERT_TRUE(Insert(1));
    {
      const DefaultTransaction inner(session_);
      ASSERT_TRUE(Insert(2));
      FailAStatement();
    }
    ASSERT_TRUE(Insert(3));
    EXPECT_TRUE(middle.Commit());
  }
  EXPECT_TRUE(outer.Commit());
  EXPECT_EQ(Stored(), (Rows{"1", "3"}));
}

TEST_F(TransactionTest, OneMadeInsideAFailedOneIsFalseAndLogged) {
  DefaultTransaction outer(session_);
  FailAStatement();
  {
    DefaultTransaction inner(session_);
    EXPECT_EQ(TakeLog(), Lines{Failed("[25P02] current transaction is aborted, commands ignored "
                                      "until end of transaction block: SAVEPOINT dorvdl_1")});
    EXPECT_FALSE(Insert(1));
    EXPECT_EQ(TakeLog(), Lines{Failed("its transaction could not begin")});
    EXPECT_FALSE(inner.Commit());
  }
  EXPECT_FALSE(outer.Commit());
  EXPECT_TRUE(Insert(1)) << "the session goes on";
  EXPECT_EQ(Stored(), Rows{"1"});
}

TEST_F(TransactionTest, AnOuterOneThatAStatementHasEndedCannotCommit) {
  DefaultTransaction transaction(session_);
  ASSERT_TRUE(Insert(1));
  Direct("ROLLBACK");
  EXPECT_FALSE(transaction.Commit());
  EXPECT_EQ(Stored(), Rows{});
}

// A connection that takes no plain command makes BEGIN fail while it is alive.
TEST_F(TransactionTest, WithoutABeginEverythingInItFailsAndNothingLasts) {
  ASSERT_EQ(PQenterPipelineMode(ConnectionOf(session_)), 1);
  {
    DefaultTransaction transaction(session_);
    ASSERT_EQ(PQexitPipelineMode(ConnectionOf(session_)), 1);
    EXPECT_EQ(TakeLog().size(), 1U);
    EXPECT_FALSE(Insert(1));
    EXPECT_EQ(TakeLog(), Lines{Failed("its transaction could not begin")});
    {
      DefaultTransaction inner(session_);
      EXPECT_FALSE(Insert(2));
      EXPECT_FALSE(inner.Commit());
    }
    EXPECT_FALSE(Insert(3));
    EXPECT_FALSE(transaction.Commit());
  }
  EXPECT_TRUE(Insert(4)) << "after its end the session goes on";
  EXPECT_EQ(Stored(), Rows{"4"});
}

class LostTransactionTest : public TransactionTest {
 protected:
  void Lose() { test_support::TerminateOtherSessions(raw_); }

  static test_support::LogLine Lost(const std::string& statement) {
    return Failed("[08006] the connection to the server is lost: " + statement);
  }
};

TEST_F(LostTransactionTest, OneOnALostConnectionIsLoggedAndFails) {
  Lose();
  // libpq knows of the loss the second time only.
  for (int time = 0; time < 2; ++time) {
    DefaultTransaction transaction(session_);
    EXPECT_EQ(TakeLog(), Lines{Lost("BEGIN")});
    EXPECT_FALSE(Insert(1));
    EXPECT_EQ(TakeLog(), Lines{Failed("its transaction could not begin")});
    EXPECT_FALSE(transaction.Commit());
    EXPECT_EQ(TakeLog(), Lines{});
  }
  EXPECT_EQ(Stored(), Rows{});
}

TEST_F(LostTransactionTest, OneWithoutAConnectionIsLoggedAndFails) {
  Session none;
  DefaultTransaction transaction(none);
  EXPECT_EQ(TakeLog(), Lines{Failed("the session has no connection")});
  EXPECT_FALSE(transaction.Commit());
}

TEST_F(LostTransactionTest, ALossInTheMiddleFailsTheRestAndTheCommit) {
  DefaultTransaction transaction(session_);
  ASSERT_TRUE(Insert(1));
  Lose();
  EXPECT_FALSE(Insert(2));
  EXPECT_EQ(TakeLog(), Lines{Lost("INSERT INTO \"item\" (\"id\") VALUES ($1)")});
  EXPECT_FALSE(transaction.Commit());
  EXPECT_FALSE(transaction.Commit());
  EXPECT_EQ(Stored(), Rows{});
}

TEST_F(LostTransactionTest, ALossBeforeTheCommitMakesItFalseAndIsLogged) {
  DefaultTransaction transaction(session_);
  ASSERT_TRUE(Insert(1));
  Lose();
  EXPECT_FALSE(transaction.Commit());
  EXPECT_EQ(TakeLog(), Lines{Lost("COMMIT")});
  EXPECT_EQ(Stored(), Rows{});
}

TEST_F(LostTransactionTest, ALossBeforeTheRollbackIsLogged) {
  {
    const DefaultTransaction outer(session_);
    ASSERT_TRUE(Insert(1));
    Lose();
  }
  EXPECT_EQ(TakeLog(), Lines{Lost("ROLLBACK")});
  EXPECT_EQ(Stored(), Rows{});
}

TEST_F(LostTransactionTest, ALossInsideAnInnerOneFailsBoth) {
  DefaultTransaction outer(session_);
  {
    DefaultTransaction inner(session_);
    ASSERT_TRUE(Insert(1));
    Lose();
    EXPECT_FALSE(inner.Commit());
  }
  EXPECT_FALSE(Insert(2));
  EXPECT_FALSE(outer.Commit());
  EXPECT_EQ(Stored(), Rows{});
}

TEST_F(LostTransactionTest, AHaltOfTheServerLosesWhatIsNotCommitted) {
  {
    DefaultTransaction transaction(session_);
    ASSERT_TRUE(Insert(1));
    test_support::HaltServer();
    EXPECT_FALSE(Insert(2));
    EXPECT_FALSE(transaction.Commit());
  }
  test_support::ResumeServer();
  session_ = Connect();
  EXPECT_EQ(IdsWhere(Condition::Null()), std::vector<int>{});
}

}  // namespace
}  // namespace dorvdbquery
