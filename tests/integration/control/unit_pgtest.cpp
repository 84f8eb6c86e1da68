// Units of work: what is in them happens as a whole or not at all, and they tell how they ended.
// What a lost connection makes of them is in integration/faults.
#include <dorvdl/control/captcha_control.h>
#include <dorvdl/control/rss_filter_control.h>
#include <dorvdl/control/rss_item_control.h>
#include <dorvdl/control/task_control.h>
#include <dorvdl/control/unit.h>
#include <dorvdl/db/download_queue.h>
#include <dorvdl/dbquery/transaction.h>
#include <gtest/gtest.h>
#include <soci/soci.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "support/connection.h"
#include "support/database.h"
#include "support/make_records.h"
#include "support/syslog_capture.h"

namespace dorvdl::control {
namespace {

using dorvdbquery::DefaultTransaction;
using dorvdbquery::Failure;
using test_support::Renaming;
using test_support::TakeLog;
using test_support::TaskOf;
using Outcome = Unit::Outcome;

static_assert(!std::is_copy_constructible_v<Unit> && !std::is_move_constructible_v<Unit>);
static_assert(!std::is_copy_assignable_v<Unit> && !std::is_move_assignable_v<Unit>);
static_assert(!std::is_convertible_v<Controller&, Unit>);

class UnitTest : public test_support::DatabaseTest {
 protected:
  UnitTest() {
    raw_.Run("INSERT INTO download_queue (task_id, username, filename) VALUES (100, 'alice', 'a')");
    TakeLog();
  }

  // Creates a task through a control.
  static bool Create(Controller& controller, const std::string& url = "u") {
    record::Task task = TaskOf("alice", url);
    return TaskControl(controller).Create(task, "");
  }

  bool Create() { return Create(controller_); }

  // Fails by the server: the order names no column.
  static void ListBadly(Controller& controller) {
    option::task::ListOption option;
    option.common.sort_by = "no_such_column";
    EXPECT_TRUE(TaskControl(controller).List(option).empty());
  }

  // Is refused by the library: the title has an embedded NUL.
  static void ListRefused(Controller& controller) {
    option::rss_item::ListOption option;
    option.url = std::string("a\0b", 3);
    EXPECT_TRUE(RssItemControl(controller).List(option).empty());
  }

  // How many tasks were created and have lasted.
  std::string Created() {
    return raw_.Value("SELECT count(*) FROM download_queue WHERE task_id < 100");
  }

  Controller controller_;
};

TEST_F(UnitTest, AllChangesLastOrNone) {
  {
    Unit unit(controller_);
    EXPECT_TRUE(Create());
    EXPECT_TRUE(Create());
    EXPECT_EQ(Created(), "0") << "before the commit";
    EXPECT_FALSE(unit.failed());
    EXPECT_EQ(unit.Commit(), Outcome::kCommitted);
    EXPECT_EQ(Created(), "2");
  }
  {
    Unit unit(controller_);
    EXPECT_TRUE(Create());
  }
  EXPECT_EQ(Created(), "2") << "one that is not committed";
}

TEST_F(UnitTest, AfterItsEndItTellsTheSameAndIsNoPartOfWhatFollows) {
  Unit unit(controller_);
  ASSERT_TRUE(Create());
  EXPECT_EQ(unit.Commit(), Outcome::kCommitted);
  EXPECT_TRUE(Create());
  EXPECT_EQ(Created(), "2");
  ListBadly(controller_);
  EXPECT_FALSE(unit.failed());
  EXPECT_EQ(unit.Commit(), Outcome::kCommitted);

  Unit failed(controller_);
  ListBadly(controller_);
  EXPECT_EQ(failed.Commit(), Outcome::kRolledBack);
  EXPECT_TRUE(Create());
  EXPECT_FALSE(controller_.failure());
  EXPECT_TRUE(failed.failed());
  EXPECT_EQ(failed.Commit(), Outcome::kRolledBack);
  EXPECT_EQ(controller_.failure().sqlstate, "42703") << "why, too";
  EXPECT_EQ(Created(), "3");
}

TEST_F(UnitTest, IsReadCommittedWhateverTheSessionsDefault) {
  *controller_.db_session().session().handle()
      << "SET default_transaction_isolation = 'serializable'";
  Unit unit(controller_);
  std::string level;
  *controller_.db_session().session().handle() << "SHOW transaction_isolation", soci::into(level);
  EXPECT_EQ(level, "read committed");
}

TEST_F(UnitTest, AServersErrorFailsItAndAllThatFollows) {
  Unit unit(controller_);
  ASSERT_TRUE(Create());
  ListBadly(controller_);
  EXPECT_EQ(controller_.failure().sqlstate, "42703");
  EXPECT_TRUE(unit.failed());
  EXPECT_FALSE(Create());
  EXPECT_EQ(controller_.failure().sqlstate, "25P02");
  EXPECT_EQ(unit.Commit(), Outcome::kRolledBack);
  EXPECT_EQ(controller_.failure().sqlstate, "42703") << "what failed first";
  EXPECT_EQ(Created(), "0");
}

TEST_F(UnitTest, WhatTheLibraryRefusesFailsItAndLeavesTheOthersWorking) {
  Unit unit(controller_);
  ListRefused(controller_);
  EXPECT_EQ(controller_.failure().kind, Failure::Kind::kRefused);
  EXPECT_TRUE(unit.failed());
  EXPECT_TRUE(Create());
  EXPECT_FALSE(controller_.failure());
  EXPECT_EQ(unit.Commit(), Outcome::kRolledBack);
  EXPECT_EQ(controller_.failure().kind, Failure::Kind::kRefused);
  EXPECT_EQ(Created(), "0");
}

TEST_F(UnitTest, ARefusedCreateFailsItAndLeavesTheOthersWorking) {
  Unit unit(controller_);
  record::Task task = TaskOf("alice", "u");
  task.set_primary_key(100);
  EXPECT_FALSE(TaskControl(controller_).Create(task, "")) << "the key is there";
  EXPECT_EQ(controller_.failure().sqlstate, "23505");
  EXPECT_TRUE(unit.failed());
  EXPECT_TRUE(Create());
  EXPECT_EQ(unit.Commit(), Outcome::kRolledBack);
  EXPECT_EQ(controller_.failure().sqlstate, "23505");
  EXPECT_EQ(Created(), "0");
}

TEST_F(UnitTest, AFileThatIsNotThereFailsItAndLeavesTheOthersWorking) {
  Unit unit(controller_);
  EXPECT_FALSE(TaskControl(controller_).LoImport(100, "/no/such/file"));
  EXPECT_EQ(controller_.failure().kind, Failure::Kind::kLocal);
  EXPECT_TRUE(unit.failed());
  EXPECT_TRUE(Create());
  EXPECT_EQ(unit.Commit(), Outcome::kRolledBack);
  EXPECT_EQ(Created(), "0");
}

TEST_F(UnitTest, ARowThatCannotBeReadFailsIt) {
  raw_.Run("INSERT INTO rss_item (id, feed_id) VALUES (1, NULL)");
  Unit unit(controller_);
  EXPECT_THROW(RssItemControl(controller_).Get(1), soci::soci_error);
  EXPECT_EQ(controller_.failure().kind, Failure::Kind::kLocal);
  EXPECT_TRUE(unit.failed());
  EXPECT_TRUE(Create());
  EXPECT_EQ(unit.Commit(), Outcome::kRolledBack);
}

TEST_F(UnitTest, AnswersDoNotFailIt) {
  Unit unit(controller_);
  TaskControl tasks(controller_);
  EXPECT_FALSE(tasks.Delete({}));
  EXPECT_FALSE(tasks.LoExport(100, ""));
  EXPECT_FALSE(tasks.LoExport(100, "/tmp/never-written")) << "no stored file";
  EXPECT_FALSE(tasks.Get(7).IsValid());
  record::Task nothing;
  nothing.set_primary_key(100);
  EXPECT_FALSE(tasks.Update(nothing));
  EXPECT_FALSE(CaptchaControl(controller_).RestartCaptchaTask(7));
  EXPECT_FALSE(RssFilterControl(controller_).TestLike("a", "b"));
  EXPECT_FALSE(unit.failed());
  EXPECT_TRUE(Create());
  EXPECT_EQ(unit.Commit(), Outcome::kCommitted);
}

TEST_F(UnitTest, OneInsideAnotherIsASavepoint) {
  Unit outer(controller_);
  ASSERT_TRUE(Create(controller_, "outer"));
  {
    Unit inner(controller_);
    ASSERT_TRUE(Create(controller_, "inner"));
    ListBadly(controller_);
    EXPECT_TRUE(inner.failed());
    EXPECT_FALSE(outer.failed());
    EXPECT_EQ(inner.Commit(), Outcome::kRolledBack);
    EXPECT_EQ(controller_.failure().sqlstate, "42703");
  }
  EXPECT_FALSE(outer.failed());
  {
    Unit inner(controller_);
    ASSERT_TRUE(Create(controller_, "second"));
    EXPECT_EQ(inner.Commit(), Outcome::kCommitted);
  }
  EXPECT_EQ(Created(), "0") << "lasts only with the outer one";
  EXPECT_EQ(outer.Commit(), Outcome::kCommitted);
  EXPECT_EQ(raw_.Run("SELECT url FROM download_queue WHERE task_id < 100 ORDER BY url"),
            (std::vector<std::string>{"outer", "second"}));
}

TEST_F(UnitTest, OneThatIsCommittedInsideAnotherIsGoneWithIt) {
  {
    Unit outer(controller_);
    Unit inner(controller_);
    ASSERT_TRUE(Create());
    EXPECT_EQ(inner.Commit(), Outcome::kCommitted);
  }
  EXPECT_EQ(Created(), "0");
}

TEST_F(UnitTest, ControllersThatShareTheSessionNestInItsUnits) {
  const auto session = std::make_shared<db::DBSession>();
  Controller first(session);
  Controller second(session);
  Unit outer(first);
  ASSERT_TRUE(Create(first));
  {
    Unit inner(second);
    ASSERT_TRUE(Create(second));
    ListBadly(first);
    EXPECT_TRUE(inner.failed()) << "what others do belongs to the innermost";
    EXPECT_FALSE(outer.failed());
    EXPECT_FALSE(second.failure());
  }
  EXPECT_FALSE(outer.failed());
  EXPECT_EQ(outer.Commit(), Outcome::kCommitted);
  EXPECT_EQ(Created(), "1");
}

TEST_F(UnitTest, ACopyOfTheControllerFailsTheUnitOnItsSessionToo) {
  Unit unit(controller_);
  Controller copy = controller_;
  EXPECT_TRUE(Create(copy)) << "on the same session";
  EXPECT_FALSE(TaskControl(copy).LoImport(100, "/no/such/file"));
  EXPECT_FALSE(controller_.failure());
  EXPECT_TRUE(unit.failed());
  EXPECT_EQ(unit.Commit(), Outcome::kRolledBack);
  EXPECT_EQ(controller_.failure().kind, Failure::Kind::kLocal);
  EXPECT_EQ(Created(), "0");
}

TEST_F(UnitTest, InsideAPlainTransactionItIsASavepointAndLeavesThatWhole) {
  DefaultTransaction transaction(controller_.db_session().session());
  {
    Unit unit(controller_);
    ASSERT_TRUE(Create());
    ListBadly(controller_);
    EXPECT_EQ(unit.Commit(), Outcome::kRolledBack);
  }
  EXPECT_TRUE(Create());
  EXPECT_TRUE(transaction.Commit());
  EXPECT_EQ(Created(), "1");
}

TEST_F(UnitTest, WhatFailsInATransactionInsideItIsTheTransactionsUnlessAnOperationFailed) {
  Unit unit(controller_);
  {
    DefaultTransaction transaction(controller_.db_session().session());
    auto queue = controller_.UseWithName<db::DownloadQueue>();
    option::task::ListOption option;
    option.common.sort_by = "no_such_column";
    EXPECT_TRUE(queue.List(option).empty());
    EXPECT_FALSE(transaction.Commit());
  }
  EXPECT_FALSE(unit.failed()) << "the accessor's statement was rolled back";
  {
    DefaultTransaction transaction(controller_.db_session().session());
    ListBadly(controller_);
  }
  EXPECT_TRUE(unit.failed());
  EXPECT_TRUE(Create()) << "the session is whole again";
  EXPECT_EQ(unit.Commit(), Outcome::kRolledBack);
  EXPECT_EQ(controller_.failure().sqlstate, "42703");
  EXPECT_EQ(Created(), "0");
}

TEST_F(UnitTest, AStatementOfSomebodyElseOnTheSessionFailsItToo) {
  Unit unit(controller_);
  ASSERT_TRUE(Create());
  option::task::ListOption option;
  option.common.sort_by = "no_such_column";
  EXPECT_TRUE(controller_.UseWithName<db::DownloadQueue>().List(option).empty());
  EXPECT_FALSE(controller_.failure()) << "no operation of a control";
  EXPECT_TRUE(unit.failed());
  EXPECT_EQ(unit.Commit(), Outcome::kRolledBack);
  EXPECT_EQ(controller_.failure().sqlstate, "42703");
}

TEST_F(UnitTest, ACommitThatTheServerRefusesIsRolledBackAndSaysWhy) {
  raw_.Run(
      "CREATE FUNCTION too_late() RETURNS trigger LANGUAGE plpgsql AS "
      "$$BEGIN RAISE 'too late' USING ERRCODE = '40001'; END$$;"
      "CREATE CONSTRAINT TRIGGER too_late AFTER INSERT ON download_queue "
      "DEFERRABLE INITIALLY DEFERRED FOR EACH ROW EXECUTE FUNCTION too_late()");
  {
    Unit unit(controller_);
    EXPECT_TRUE(Create());
    EXPECT_FALSE(unit.failed());
    EXPECT_EQ(unit.Commit(), Outcome::kRolledBack);
    EXPECT_EQ(controller_.failure().kind, Failure::Kind::kRetry);
    EXPECT_EQ(controller_.failure().message, "too late");
  }
  raw_.Run("DROP TRIGGER too_late ON download_queue; DROP FUNCTION too_late");
  EXPECT_EQ(Created(), "0");
}

TEST_F(UnitTest, WhatAProgramRollsBackBehindItsBackIsToldOf) {
  Unit unit(controller_);
  ASSERT_TRUE(Create());
  *controller_.db_session().session().handle() << "ROLLBACK";
  EXPECT_TRUE(unit.failed());
  EXPECT_EQ(unit.Commit(), Outcome::kRolledBack);
  EXPECT_TRUE(controller_.failure());
  EXPECT_EQ(Created(), "0");
}

TEST_F(UnitTest, OpensTheConnectionAsACallDoesAndThrowsOnlyWhatThatThrows) {
  test_support::HaltServer();
  EXPECT_THROW(Unit{controller_}, soci::soci_error);
  test_support::ResumeServer();
  Unit unit(controller_);
  EXPECT_FALSE(unit.failed());
}

TEST_F(UnitTest, ReplacesALostConnectionBeforeItBeginsAndNeverInside) {
  controller_.db_session();
  test_support::TerminateOtherSessions(raw_);
  {
    Unit unit(controller_);
    EXPECT_FALSE(unit.failed());
    const db::DBSession* const pinned = &controller_.db_session();
    test_support::TerminateOtherSessions(raw_);
    EXPECT_EQ(&controller_.db_session(), pinned);
    EXPECT_FALSE(Create());
    EXPECT_EQ(controller_.failure().kind, Failure::Kind::kConnection);
    EXPECT_FALSE(Create());
    EXPECT_TRUE(unit.failed());
    EXPECT_EQ(unit.Commit(), Outcome::kRolledBack);
    EXPECT_EQ(controller_.failure().kind, Failure::Kind::kConnection);
  }
  EXPECT_TRUE(Create()) << "the next call opens another";
  EXPECT_EQ(Created(), "1");
}

TEST_F(UnitTest, ABeginThatFailsMakesAFailedUnitInWhichEverythingFails) {
  const auto session = std::make_shared<db::DBSession>();
  Controller first(session);
  Controller second(session);
  Unit outer(first);
  ListBadly(first);
  {
    Unit inner(second);  // no savepoint can be made in a failed transaction
    EXPECT_TRUE(inner.failed());
    EXPECT_FALSE(Create(second));
    EXPECT_EQ(second.failure().kind, Failure::Kind::kRefused);
    EXPECT_EQ(inner.Commit(), Outcome::kRolledBack);
    EXPECT_EQ(second.failure().sqlstate, "25P02");
  }
  EXPECT_EQ(outer.Commit(), Outcome::kRolledBack);
  EXPECT_TRUE(Create(first));
}

TEST_F(UnitTest, OneThatEndsBeforeWhatIsInsideItIsRolledBackAsThatIs) {
  Unit outer(controller_);
  ASSERT_TRUE(Create());
  Unit inner(controller_);
  ASSERT_TRUE(Create());
  EXPECT_EQ(outer.Commit(), Outcome::kRolledBack);
  EXPECT_EQ(controller_.failure().kind, Failure::Kind::kRefused);
  EXPECT_EQ(inner.Commit(), Outcome::kRolledBack);
  EXPECT_EQ(Created(), "0") << "both tell so";
  EXPECT_TRUE(Create());
}

TEST_F(UnitTest, OneThatCouldNotBeginIsOverWithItsCommit) {
  Unit outer(controller_);
  ListBadly(controller_);
  Unit inner(controller_);
  EXPECT_EQ(inner.Commit(), Outcome::kRolledBack);
  EXPECT_EQ(outer.Commit(), Outcome::kRolledBack);
  EXPECT_TRUE(Create()) << controller_.failure().message;
  Unit next(controller_);
  EXPECT_TRUE(Create());
  EXPECT_EQ(next.Commit(), Outcome::kCommitted);
  EXPECT_TRUE(inner.failed());
  EXPECT_EQ(inner.Commit(), Outcome::kRolledBack);
  EXPECT_EQ(Created(), "2");
}

TEST_F(UnitTest, WithoutItsConnectionEverythingInItFails) {
  Unit unit(controller_);
  ASSERT_TRUE(Create());
  { const dorvdbquery::Session gone = std::move(controller_.db_session().session()); }
  EXPECT_FALSE(Create());
  EXPECT_EQ(controller_.failure().kind, Failure::Kind::kConnection);
  EXPECT_EQ(TaskControl(controller_).Count({}), -1);
  EXPECT_EQ(controller_.failure().kind, Failure::Kind::kConnection);
  EXPECT_FALSE(TaskControl(controller_).LoImport(100, "/no/such/file"));
  EXPECT_TRUE(controller_.failure());
  EXPECT_FALSE(TaskControl(controller_).Delete({}));
  EXPECT_FALSE(controller_.failure()) << "a guard";
  EXPECT_EQ(unit.Commit(), Outcome::kRolledBack);
  EXPECT_EQ(controller_.failure().kind, Failure::Kind::kConnection);
  EXPECT_TRUE(Create()) << "the next call opens another";
  EXPECT_EQ(Created(), "1");
}

TEST_F(UnitTest, ChangesTakeOneRoundTripEach) {
  test_support::MessageTrace trace(controller_.db_session().session());
  Unit unit(controller_);
  EXPECT_EQ(trace.RoundTrips(), 1);
  EXPECT_TRUE(TaskControl(controller_).Update(Renaming(100, "b")));
  EXPECT_EQ(trace.RoundTrips(), 2);
  EXPECT_EQ(unit.Commit(), Outcome::kCommitted);
  EXPECT_EQ(trace.RoundTrips(), 3);
}

TEST_F(UnitTest, AnotherUsersUnitSeesNothingOfItBeforeItIsCommitted) {
  Controller bob = Controller::ForUser("bob");
  Unit of_bob(bob);
  Unit unit(controller_);
  ASSERT_TRUE(TaskControl(controller_).Update(Renaming(100, "b")));
  EXPECT_EQ(TaskControl(bob).Count({}), 0);
  Controller elsewhere;
  EXPECT_EQ(TaskControl(elsewhere).Get(100).proto().filename(), "a");
  EXPECT_EQ(unit.Commit(), Outcome::kCommitted);
  EXPECT_EQ(TaskControl(elsewhere).Get(100).proto().filename(), "b");
  EXPECT_EQ(of_bob.Commit(), Outcome::kCommitted);
}

}  // namespace
}  // namespace dorvdl::control
