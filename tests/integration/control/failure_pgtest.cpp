// What the last operation on a controller failed with.
#include <dorvdl/control/captcha_control.h>
#include <dorvdl/control/rss_feed_control.h>
#include <dorvdl/control/rss_filter_control.h>
#include <dorvdl/control/rss_item_control.h>
#include <dorvdl/control/task_control.h>
#include <dorvdl/control/unit.h>
#include <dorvdl/db/download_queue.h>
#include <dorvdl/dbquery/transaction.h>
#include <gtest/gtest.h>
#include <soci/soci.h>

#include <chrono>
#include <functional>
#include <future>
#include <stdexcept>
#include <string>

#include "support/database.h"
#include "support/make_records.h"
#include "support/syslog_capture.h"
#include "support/temporary_folder.h"

namespace dorvdl::control {
namespace {

using dorvdbquery::Failure;
using test_support::Renaming;
using test_support::TakeLog;
using test_support::TaskOf;
using Kind = Failure::Kind;

class ControllerFailureTest : public test_support::DatabaseTest {
 protected:
  ControllerFailureTest() {
    raw_.Run("INSERT INTO download_queue (task_id, username) VALUES (1, 'alice')");
    TakeLog();
  }

  void ExpectFailure(Kind kind, const std::string& sqlstate, const std::string& message) {
    EXPECT_EQ(controller_.failure().kind, kind);
    EXPECT_EQ(controller_.failure().sqlstate, sqlstate);
    EXPECT_EQ(controller_.failure().message, message);
    EXPECT_EQ(static_cast<bool>(controller_.failure()), kind != Kind::kNone);
  }

  void ListBadly() {
    option::task::ListOption option;
    option.common.sort_by = "no_such_column";
    EXPECT_TRUE(tasks_.List(option).empty());
  }

  Controller controller_;
  TaskControl tasks_{controller_};
};

TEST_F(ControllerFailureTest, NoneBeforeTheFirstOperationAndAfterOneThatSucceeded) {
  ExpectFailure(Kind::kNone, "", "");
  EXPECT_EQ(tasks_.List({}).size(), 1U);
  ExpectFailure(Kind::kNone, "", "");
}

TEST_F(ControllerFailureTest, TellsAFailedListFromAnEmptyOne) {
  controller_.set_username("bob");
  EXPECT_TRUE(tasks_.List({}).empty());
  ExpectFailure(Kind::kNone, "", "");
  ListBadly();
  ExpectFailure(Kind::kServer, "42703", "column \"no_such_column\" does not exist");
  EXPECT_TRUE(tasks_.List({}).empty());
  ExpectFailure(Kind::kNone, "", "");
}

TEST_F(ControllerFailureTest, TellsAMissingTaskFromAnUnreachableServer) {
  EXPECT_FALSE(tasks_.Get(7).IsValid());
  ExpectFailure(Kind::kNone, "", "");
  test_support::HaltServer();
  EXPECT_THROW(tasks_.Get(7), soci::soci_error);
  EXPECT_EQ(controller_.failure().kind, Kind::kConnection);
  EXPECT_NE(controller_.failure().message.find("connection to server"), std::string::npos)
      << controller_.failure().message;
  test_support::ResumeServer();
  EXPECT_FALSE(tasks_.Get(7).IsValid());
  ExpectFailure(Kind::kNone, "", "");
}

TEST_F(ControllerFailureTest, AConnectionThatIsEndedDuringAStatementIsAConnectionsFailure) {
  raw_.Run(
      "CREATE FUNCTION hang_up() RETURNS trigger LANGUAGE plpgsql AS "
      "$$BEGIN PERFORM pg_terminate_backend(pg_backend_pid()); RETURN new; END$$;"
      "CREATE TRIGGER hang_up BEFORE UPDATE ON download_queue "
      "FOR EACH ROW EXECUTE FUNCTION hang_up()");
  EXPECT_FALSE(tasks_.Update(Renaming(1, "a")));
  EXPECT_EQ(controller_.failure().kind, Kind::kConnection);
  raw_.Run("DROP TRIGGER hang_up ON download_queue; DROP FUNCTION hang_up");
  EXPECT_TRUE(tasks_.Update(Renaming(1, "a")));
}

TEST_F(ControllerFailureTest, GuardsAreAnswersAndAskForNoConnection) {
  ListBadly();
  TakeLog();
  EXPECT_FALSE(tasks_.Delete({}));
  ExpectFailure(Kind::kNone, "", "");
  ListBadly();
  EXPECT_FALSE(tasks_.LoImport(1, ""));
  ExpectFailure(Kind::kNone, "", "");
  ListBadly();
  EXPECT_FALSE(tasks_.Update(record::Task()));
  ExpectFailure(Kind::kNone, "", "");

  TakeLog();
  Controller fresh;
  EXPECT_FALSE(RssFeedControl(fresh).Delete({}));
  EXPECT_FALSE(RssItemControl(fresh).Delete({}));
  EXPECT_FALSE(fresh.failure());
  EXPECT_TRUE(TakeLog().empty()) << "no connection was opened";
}

TEST_F(ControllerFailureTest, AnswersAreNoFailures) {
  EXPECT_TRUE(tasks_.Update(Renaming(7, "a"))) << "reaches no row";
  EXPECT_FALSE(controller_.failure());
  EXPECT_FALSE(tasks_.LoExport(1, "/tmp/never-written"));
  EXPECT_FALSE(controller_.failure());
  EXPECT_FALSE(tasks_.LoExport(7, "/tmp/never-written"));
  EXPECT_FALSE(controller_.failure());
  EXPECT_FALSE(CaptchaControl(controller_).RestartCaptchaTask(7));
  EXPECT_FALSE(controller_.failure());
  EXPECT_FALSE(RssFilterControl(controller_).TestRegexp("a", "b"));
  EXPECT_FALSE(controller_.failure());
}

TEST_F(ControllerFailureTest, WhatIsRefusedBeforeItIsSentIsRefused) {
  option::task::ListOption option;
  option.filename = std::string("a\0b", 3);
  EXPECT_TRUE(tasks_.List(option).empty());
  ExpectFailure(Kind::kRefused, "", "a text value has an embedded NUL");
}

TEST_F(ControllerFailureTest, AnImportThatReachesNoTaskIsRefused) {
  const test_support::TemporaryFolder folder;
  EXPECT_FALSE(tasks_.LoImport(7, folder.Write("file", "content")));
  ExpectFailure(Kind::kRefused, "", "there is no such task");
  EXPECT_TRUE(tasks_.LoImport(1, folder.Path("file")));
  ExpectFailure(Kind::kNone, "", "");
}

TEST_F(ControllerFailureTest, FilesThatCannotBeReadOrWrittenAreLocal) {
  const test_support::TemporaryFolder folder;
  EXPECT_FALSE(tasks_.LoImport(1, folder.Path("missing")));
  ExpectFailure(Kind::kLocal, "", "Failed to open file: No such file or directory");
  record::Task task = TaskOf("alice", "u");
  EXPECT_FALSE(tasks_.Create(task, folder.Path(".")));
  ExpectFailure(Kind::kLocal, "", "Failed to open file: not a regular file");
  ASSERT_TRUE(tasks_.LoImport(1, folder.Write("file", "content")));
  EXPECT_FALSE(tasks_.LoExport(1, folder.Path("no/such/folder")));
  ExpectFailure(Kind::kLocal, "", "Failed to create file: No such file or directory");
}

TEST_F(ControllerFailureTest, ALargeObjectThatIsGoneIsTheServersFailure) {
  const test_support::TemporaryFolder folder;
  raw_.Run("UPDATE download_queue SET file_oid = 99999999");
  EXPECT_FALSE(tasks_.LoExport(1, folder.Path("file")));
  EXPECT_EQ(controller_.failure().kind, Kind::kServer);
  EXPECT_EQ(controller_.failure().sqlstate, "42704");
}

TEST_F(ControllerFailureTest, MessagesThatQuoteValuesAreLeftOut) {
  EXPECT_FALSE(RssFilterControl(controller_).TestRegexp("a", "secret("));
  ExpectFailure(Kind::kServer, "2201B", "");
  raw_.Run(
      "CREATE FUNCTION tell() RETURNS trigger LANGUAGE plpgsql AS "
      "$$BEGIN RAISE '%', new.filename; END$$;"
      "CREATE TRIGGER tell BEFORE UPDATE ON download_queue FOR EACH ROW EXECUTE FUNCTION tell()");
  EXPECT_FALSE(tasks_.Update(Renaming(1, "secret")));
  ExpectFailure(Kind::kServer, "P0001", "");
  raw_.Run("DROP TRIGGER tell ON download_queue; DROP FUNCTION tell");
}

TEST_F(ControllerFailureTest, ARowThatCannotBeReadIsLocalAndQuotesNothing) {
  raw_.Run("INSERT INTO rss_item (id, feed_id) VALUES (1, NULL)");
  EXPECT_THROW(RssItemControl(controller_).Get(1), soci::soci_error);
  ExpectFailure(Kind::kLocal, "", "a row could not be read");
}

TEST_F(ControllerFailureTest, ALockThatCannotBeHadAndATimeoutAreWorthAnotherTry) {
  raw_.Run("BEGIN; UPDATE download_queue SET filename = 'b' WHERE task_id = 1");
  for (const auto& [setting, sqlstate] :
       {std::pair{"SET lock_timeout = 10", "55P03"}, {"SET statement_timeout = 10", "57014"}}) {
    *controller_.db_session().session().handle() << setting;
    EXPECT_FALSE(tasks_.Update(Renaming(1, "a")));
    EXPECT_EQ(controller_.failure().kind, Kind::kRetry) << sqlstate;
    EXPECT_EQ(controller_.failure().sqlstate, sqlstate);
    *controller_.db_session().session().handle() << "SET lock_timeout = 0";
  }
  raw_.Run("ROLLBACK");
  EXPECT_TRUE(tasks_.Update(Renaming(1, "a")));
  EXPECT_FALSE(controller_.failure());
}

TEST_F(ControllerFailureTest, OperationsCalledByAnOperationArePartsOfIt) {
  raw_.Run("UPDATE download_queue SET status = 15");
  raw_.Run("ALTER TABLE task_plugin RENAME TO elsewhere");
  EXPECT_FALSE(CaptchaControl(controller_).RestartCaptchaTask(1));
  EXPECT_EQ(controller_.failure().sqlstate, "42P01") << "of its last step";
  raw_.Run("UPDATE download_queue SET status = 15");
  EXPECT_TRUE(CaptchaControl(controller_).RestartAllCaptchaTask());
  EXPECT_EQ(controller_.failure().sqlstate, "42P01") << "true all the same";
  raw_.Run("ALTER TABLE elsewhere RENAME TO task_plugin");
  EXPECT_TRUE(CaptchaControl(controller_).RestartAllCaptchaTask());
  EXPECT_FALSE(controller_.failure());
}

// A program's own control.
struct Overridden : CaptchaControl {
  using CaptchaControl::CaptchaControl;
  bool RestartCaptchaTask(int task_id) override { return restart(task_id); }
  std::function<bool(int)> restart;
};

TEST_F(ControllerFailureTest, WhatFailedFirstInAnOperationIsSeenInItAndOutlivesAUnitInIt) {
  raw_.Run("UPDATE download_queue SET status = 15");
  raw_.Run("INSERT INTO download_queue (task_id, username, status) VALUES (2, 'alice', 15)");
  Overridden control(controller_);
  control.restart = [&](int task_id) {
    if (task_id == 1) {
      ListBadly();
    } else {
      Unit unit(controller_);
      EXPECT_FALSE(tasks_.LoImport(task_id, "/no/such/file"));
      EXPECT_EQ(unit.Commit(), Unit::Outcome::kRolledBack);
      EXPECT_EQ(controller_.failure().kind, Kind::kLocal) << "the unit's";
      return false;
    }
    EXPECT_EQ(controller_.failure().sqlstate, "42703") << "while it runs";
    return false;
  };
  EXPECT_TRUE(control.RestartAllCaptchaTask());
  EXPECT_EQ(controller_.failure().sqlstate, "42703") << "the first";
}

TEST_F(ControllerFailureTest, AUnitThatEndsInAnOperationFailsIt) {
  raw_.Run("UPDATE download_queue SET status = 15");
  Overridden control(controller_);
  control.restart = [&](int task_id) {
    {
      Unit unit(controller_);
      option::task::ListOption option;
      option.common.sort_by = "no_such_column";
      EXPECT_TRUE(controller_.UseWithName<db::DownloadQueue>().List(option).empty());
      EXPECT_EQ(unit.Commit(), Unit::Outcome::kRolledBack);
    }
    EXPECT_FALSE(tasks_.LoImport(task_id, "/no/such/file"));
    return false;
  };
  EXPECT_TRUE(control.RestartAllCaptchaTask());
  EXPECT_EQ(controller_.failure().sqlstate, "42703") << "not of the file";
}

TEST_F(ControllerFailureTest, AnExceptionOfAnOverriddenOperationIsKeptWithoutItsWords) {
  struct Careless : CaptchaControl {
    using CaptchaControl::CaptchaControl;
    bool RestartCaptchaTask(int) override { throw std::runtime_error("secret"); }
  };
  raw_.Run("UPDATE download_queue SET status = 15");
  Careless control(controller_);
  EXPECT_THROW(control.RestartAllCaptchaTask(), std::runtime_error);
  ExpectFailure(Kind::kLocal, "", "an exception ended the operation");
}

TEST_F(ControllerFailureTest, WhatOtherHoldersOfTheSessionDoDoesNotChangeIt) {
  const auto session = std::make_shared<db::DBSession>();
  Controller first(session);
  Controller second(session);
  option::task::ListOption option;
  option.common.sort_by = "no_such_column";
  EXPECT_TRUE(TaskControl(first).List(option).empty());
  EXPECT_TRUE(first.failure());
  EXPECT_FALSE(second.failure());
  EXPECT_EQ(TaskControl(second).Count({}), 1);
  EXPECT_TRUE(first.failure());
  EXPECT_EQ(db::DownloadQueue(*session, "").Count({}), 1);
  EXPECT_TRUE(first.failure());
  EXPECT_FALSE(session->session().failure());
  Controller copy = first;
  EXPECT_FALSE(copy.failure());
}

// Of the session itself.
using SessionFailureTest = ControllerFailureTest;

TEST_F(SessionFailureTest, TellsOfTheLastStatementAndACleanUpLeavesIt) {
  db::DBSession session;
  const Failure& failure = session.session().failure();
  db::DownloadQueue queue(session, "");
  EXPECT_FALSE(failure);
  option::task::ListOption option;
  option.common.sort_by = "no_such_column";
  {
    dorvdbquery::DefaultTransaction transaction(session.session());
    EXPECT_TRUE(queue.List(option).empty());
    EXPECT_EQ(failure.sqlstate, "42703");
    EXPECT_FALSE(transaction.Commit());
    EXPECT_EQ(failure.sqlstate, "42703") << "the rollback has succeeded";
  }
  EXPECT_EQ(queue.Count({}), 1);
  EXPECT_FALSE(failure);
  option.common.sort_by = "no column";
  EXPECT_TRUE(queue.List(option).empty());
  EXPECT_EQ(failure.kind, Kind::kRefused);
}

TEST_F(SessionFailureTest, ACommitThatIsRefusedForAnEarlierStatementSaysWhich) {
  db::DBSession session;
  db::DownloadQueue queue(session, "");
  dorvdbquery::DefaultTransaction transaction(session.session());
  option::task::ListOption option;
  option.filename = std::string("a\0b", 3);
  EXPECT_TRUE(queue.List(option).empty());
  EXPECT_EQ(queue.Count({}), 1);
  EXPECT_FALSE(session.session().failure());
  EXPECT_FALSE(transaction.Commit());
  EXPECT_EQ(session.session().failure().kind, Kind::kRefused);
}

TEST_F(SessionFailureTest, OneWithoutAConnectionHasAConnectionsFailure) {
  EXPECT_EQ(dorvdbquery::Session().failure().kind, Kind::kConnection);
}

TEST_F(SessionFailureTest, ALostConnectionHasNoSqlstate) {
  db::DBSession session;
  db::DownloadQueue queue(session, "");
  ASSERT_EQ(queue.Count({}), 1);
  test_support::TerminateOtherSessions(raw_);
  EXPECT_EQ(queue.Count({}), -1);
  EXPECT_EQ(session.session().failure().kind, Kind::kConnection);
  EXPECT_EQ(queue.Count({}), -1);
  EXPECT_EQ(session.session().failure().kind, Kind::kConnection);
  EXPECT_EQ(session.session().failure().sqlstate, "");
}

}  // namespace
}  // namespace dorvdl::control
