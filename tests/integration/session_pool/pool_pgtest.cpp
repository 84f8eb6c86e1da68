// The pool: never more connections than it may have, each clean when it is handed out.
#include <dorvdl/control/task_control.h>
#include <dorvdl/control/unit.h>
#include <dorvdl/db/download_queue.h>
#include <dorvdl/db/session_pool.h>
#include <dorvdl/dbquery/select_query.h>
#include <dorvdl/dbquery/transaction.h>
#include <gtest/gtest.h>
#include <soci/soci.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include "support/connection.h"
#include "support/database.h"
#include "support/environment.h"
#include "support/make_records.h"
#include "support/syslog_capture.h"

namespace dorvdl::db {
namespace {

using namespace std::chrono_literals;
using test_support::ConnectionOf;
using test_support::Renaming;
using test_support::TakeLog;
using test_support::TaskOf;

class SessionPoolTest : public test_support::DatabaseTest {
 protected:
  SessionPoolTest() {
    raw_.Run("INSERT INTO download_queue (filename) VALUES ('a')");
    TakeLog();
  }

  // How many connections of the library the server has.
  std::string Connections() {
    return raw_.Value(
        "SELECT count(*) FROM pg_stat_activity WHERE application_name = 'libdorvdlcore'");
  }

  void AwaitConnections(const std::string& expected) {
    for (int tries = 0; tries < 500 && Connections() != expected; ++tries) {
      usleep(10000);
    }
    EXPECT_EQ(Connections(), expected);
  }

  static int ProcessOf(const std::shared_ptr<DBSession>& session) {
    return PQbackendPID(ConnectionOf(session->session()));
  }

  static void Do(const std::shared_ptr<DBSession>& session, const std::string& statement) {
    *session->session().handle() << statement;
  }

  static int Count(const std::shared_ptr<DBSession>& session) {
    return DownloadQueue(*session, "").Count({});
  }

  std::string Filename() { return raw_.Value("SELECT filename FROM download_queue"); }
};

TEST_F(SessionPoolTest, OpensNothingBeforeItIsAsked) {
  SessionPool pool(2);
  EXPECT_EQ(Connections(), "0");
  const auto session = pool.Take(0ms);
  ASSERT_NE(session, nullptr);
  EXPECT_EQ(Connections(), "1");
  EXPECT_EQ(Count(session), 1);
}

TEST_F(SessionPoolTest, OpenOpensAllAndTellsHowMany) {
  SessionPool pool(3);
  const auto taken = pool.Take(0ms);
  EXPECT_EQ(pool.Open(), 3U);
  EXPECT_EQ(Connections(), "3");
  EXPECT_EQ(pool.Open(), 3U);
  TakeLog();
  const auto second = pool.Take(0ms);
  const auto third = pool.Take(0ms);
  EXPECT_TRUE(TakeLog().empty()) << "nothing was opened";
  EXPECT_EQ(Count(second), 1);
  EXPECT_EQ(Count(third), 1);
}

TEST_F(SessionPoolTest, OpenReplacesWhatWasLostMeanwhile) {
  SessionPool pool(3);
  const auto taken = pool.Take(0ms);
  EXPECT_EQ(pool.Open(), 3U);
  test_support::TerminateOtherSessions(raw_);
  EXPECT_EQ(Connections(), "0");
  EXPECT_EQ(pool.Open(), 3U);
  EXPECT_EQ(Connections(), "2") << "all but the one that is taken";
  TakeLog();
  EXPECT_EQ(Count(pool.Take(0ms)), 1);
  EXPECT_TRUE(TakeLog().empty()) << "nothing was opened";
}

TEST_F(SessionPoolTest, HandsOutNoMoreThanItMayAndTheSameOnesAgain) {
  SessionPool pool(2);
  auto first = pool.Take(0ms);
  const auto second = pool.Take(0ms);
  ASSERT_TRUE(first && second);
  EXPECT_NE(ProcessOf(first), ProcessOf(second));
  EXPECT_EQ(pool.Take(0ms), nullptr);
  EXPECT_EQ(pool.Take(-1ms), nullptr);
  EXPECT_EQ(pool.Take(20ms), nullptr);
  const int process = ProcessOf(first);
  first.reset();
  const auto again = pool.Take(0ms);
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(ProcessOf(again), process);
  EXPECT_EQ(Connections(), "2");
}

TEST_F(SessionPoolTest, AtLeastOneConnectionFitsIn) {
  SessionPool pool(0);
  EXPECT_EQ(pool.Open(), 1U);
  EXPECT_NE(pool.Take(0ms), nullptr);
}

TEST_F(SessionPoolTest, WaitsForOneToComeFree) {
  SessionPool pool(1);
  auto session = pool.Take(0ms);
  for (const auto wait : {std::chrono::milliseconds(60s), std::chrono::milliseconds::max()}) {
    auto waiting = std::async(std::launch::async, [&] { return pool.Take(wait); });
    EXPECT_EQ(waiting.wait_for(20ms), std::future_status::timeout);
    session.reset();
    session = waiting.get();
    ASSERT_NE(session, nullptr);
  }
}

TEST_F(SessionPoolTest, AControllerGivesItsSessionBackWhenItEnds) {
  SessionPool pool(1);
  {
    control::Controller controller(pool.Take(0ms));
    EXPECT_EQ(pool.Take(0ms), nullptr);
    EXPECT_EQ(control::TaskControl(controller).Count({}), 1);
  }
  EXPECT_NE(pool.Take(0ms), nullptr);
}

TEST_F(SessionPoolTest, WhatWasNotCommittedIsRolledBackAtOnce) {
  SessionPool pool(1);
  auto session = pool.Take(0ms);
  Do(session, "BEGIN");
  EXPECT_TRUE(DownloadQueue(*session, "").Update(Renaming(1, "b")));
  session.reset();
  raw_.Run("SET lock_timeout = '10s'");
  raw_.Run("UPDATE download_queue SET filename = filename || '!'");  // its lock is gone
  EXPECT_EQ(Filename(), "a!");
  session = pool.Take(0ms);
  EXPECT_FALSE(session->session().InTransaction());
}

TEST_F(SessionPoolTest, AFailedTransactionAndItsFailureStayBehind) {
  SessionPool pool(1);
  auto session = pool.Take(0ms);
  const int process = ProcessOf(session);
  Do(session, "BEGIN");
  control::option::task::ListOption option;
  option.common.sort_by = "no_such_column";
  EXPECT_TRUE(DownloadQueue(*session, "").List(option).empty());
  EXPECT_TRUE(session->session().failure());
  session.reset();
  session = pool.Take(0ms);
  EXPECT_EQ(ProcessOf(session), process);
  EXPECT_FALSE(session->session().failure());
  EXPECT_EQ(Count(session), 1);
}

TEST_F(SessionPoolTest, NothingIsListenedToAnyMore) {
  SessionPool pool(1);
  auto session = pool.Take(0ms);
  Do(session, "LISTEN news");
  raw_.Run("NOTIFY news");
  session.reset();
  session = pool.Take(0ms);
  raw_.Run("NOTIFY news");
  EXPECT_EQ(Count(session), 1);
  EXPECT_EQ(PQnotifies(ConnectionOf(session->session())), nullptr);
}

// On purpose: to clear it would make each change of holders dearer, and programs rely on it.
TEST_F(SessionPoolTest, WhatOwnStatementsHaveSetOnTheConnectionStays) {
  SessionPool pool(1);
  auto session = pool.Take(0ms);
  Do(session, "SET search_path = elsewhere, public");
  Do(session, "CREATE TEMPORARY TABLE notes AS SELECT 7 AS number");
  Do(session, "SELECT pg_advisory_lock(1)");
  session.reset();
  session = pool.Take(0ms);
  std::string path;
  int number = 0;
  session->session().handle()->once << "SHOW search_path", soci::into(path);
  session->session().handle()->once << "SELECT number FROM notes", soci::into(number);
  EXPECT_EQ(path, "elsewhere, public");
  EXPECT_EQ(number, 7);
  EXPECT_EQ(raw_.Value("SELECT pg_try_advisory_lock(1)"), "f");
}

TEST_F(SessionPoolTest, ABrokenSessionIsReplaced) {
  SessionPool pool(1);
  auto session = pool.Take(0ms);
  const int process = ProcessOf(session);
  test_support::TerminateOtherSessions(raw_);
  EXPECT_EQ(Count(session), -1);
  session.reset();
  session = pool.Take(0ms);
  EXPECT_NE(ProcessOf(session), process);
  EXPECT_EQ(Count(session), 1);
}

TEST_F(SessionPoolTest, ASessionThatIsLostWhileNobodyHasItIsReplaced) {
  SessionPool pool(2);
  EXPECT_EQ(pool.Open(), 2U);
  test_support::TerminateOtherSessions(raw_);
  const auto first = pool.Take(0ms);
  const auto second = pool.Take(0ms);
  EXPECT_EQ(Count(first), 1);
  EXPECT_EQ(Count(second), 1);
  EXPECT_EQ(pool.Take(0ms), nullptr);
}

TEST_F(SessionPoolTest, ASessionInTheMiddleOfSomethingIsReplaced) {
  SessionPool pool(1);
  auto session = pool.Take(0ms);
  const int process = ProcessOf(session);
  PQclear(PQexec(ConnectionOf(session->session()), "COPY download_queue TO STDOUT"));
  session.reset();
  session = pool.Take(0ms);
  EXPECT_NE(ProcessOf(session), process);
  EXPECT_EQ(Count(session), 1);
}

TEST_F(SessionPoolTest, WhatIsKeptOfASessionThatWentBackFailsAndReachesNobodyElses) {
  SessionPool pool(1);
  auto session = pool.Take(0ms);
  DownloadQueue queue(*session, "");
  dorvdbquery::SelectQuery query(session->session(), "download_queue");
  auto transaction = std::make_unique<dorvdbquery::DefaultTransaction>(session->session());
  EXPECT_TRUE(queue.Update(Renaming(1, "lost")));
  session.reset();

  session = pool.Take(0ms);
  dorvdbquery::DefaultTransaction of_the_next(session->session());
  EXPECT_TRUE(DownloadQueue(*session, "").Update(Renaming(1, "b")));
  EXPECT_FALSE(queue.Update(Renaming(1, "c")));
  EXPECT_EQ(queue.Count({}), -1);
  EXPECT_FALSE(queue.LoImport(1, "/etc/hostname"));
  record::Task task = TaskOf("alice", "u");
  EXPECT_FALSE(queue.Create(task, ""));
  EXPECT_EQ(queue.GetSession().failure().kind, dorvdbquery::Failure::Kind::kConnection);
  EXPECT_FALSE(query.Execute());
  EXPECT_FALSE(transaction->Commit());
  transaction.reset();
  EXPECT_TRUE(of_the_next.Commit());
  EXPECT_EQ(Filename(), "b");
}

TEST_F(SessionPoolTest, AQueryWithRowsLeftIsHarmlessToTheNextHolder) {
  SessionPool pool(1);
  auto session = pool.Take(0ms);
  auto query = std::make_unique<dorvdbquery::SelectQuery>(session->session(), "download_queue");
  int id = 0;
  query->SelectField<int>("task_id", id);
  ASSERT_TRUE(query->ExecuteWithoutPreFetch());
  session.reset();
  session = pool.Take(0ms);
  EXPECT_FALSE(query->Fetch());
  query.reset();
  EXPECT_EQ(Count(session), 1);
}

TEST_F(SessionPoolTest, SessionsMayOutliveThePool) {
  auto pool = std::make_unique<SessionPool>(2);
  EXPECT_EQ(pool->Open(), 2U);
  auto session = pool->Take(0ms);
  pool.reset();
  AwaitConnections("1");
  EXPECT_EQ(Count(session), 1);
  session.reset();
  AwaitConnections("0");
}

TEST_F(SessionPoolTest, ALostSessionOfAControllerIsReplacedByOneThatDoesNotCount) {
  SessionPool pool(1);
  control::Controller controller(pool.Take(0ms));
  test_support::TerminateOtherSessions(raw_);
  EXPECT_EQ(control::TaskControl(controller).Count({}), 1);
  const auto session = pool.Take(0ms);
  ASSERT_NE(session, nullptr);
  EXPECT_EQ(Count(session), 1);
  EXPECT_EQ(Connections(), "2");
}

TEST_F(SessionPoolTest, AUnitKeepsTheSessionUntilItEnds) {
  SessionPool pool(1);
  {
    control::Controller controller(pool.Take(0ms));
    control::Unit unit(controller);
    EXPECT_TRUE(control::TaskControl(controller).Update(Renaming(1, "b")));
    EXPECT_EQ(pool.Take(0ms), nullptr);
  }
  EXPECT_EQ(Filename(), "a");
  EXPECT_NE(pool.Take(0ms), nullptr);
}

TEST_F(SessionPoolTest, OneThatCannotBeOpenedIsThrownAndLeavesItsPlace) {
  SessionPool pool(1);
  {
    const test_support::Environment nowhere("PGPORT", "1");
    EXPECT_THROW(static_cast<void>(pool.Take(0ms)), soci::soci_error);
    EXPECT_THROW(static_cast<void>(pool.Open()), soci::soci_error);
  }
  const auto session = pool.Take(0ms);
  ASSERT_NE(session, nullptr);
  EXPECT_EQ(Count(session), 1);
}

TEST_F(SessionPoolTest, GivingBackWaitsForNoAnswer) {
  SessionPool pool(1);
  auto session = pool.Take(0ms);
  std::string messages;
  {
    test_support::MessageTrace trace(session->session());
    session.reset();
    messages = trace.Messages();
  }
  EXPECT_NE(messages.find("UNLISTEN"), std::string::npos) << messages;
  EXPECT_EQ(messages.find("CommandComplete"), std::string::npos) << messages;
}

TEST_F(SessionPoolTest, SixteenThreadsShareFourConnections) {
  constexpr int kThreads = 16;
  constexpr int kRounds = 25;
  SessionPool pool(4);
  ASSERT_EQ(pool.Open(), 4U);
  std::vector<std::future<void>> threads;
  threads.reserve(kThreads);
  for (int number = 0; number < kThreads; ++number) {
    threads.push_back(std::async(std::launch::async, [&pool, number] {
      const std::string user = "user" + std::to_string(number);
      for (int round = 0; round < kRounds; ++round) {
        auto session = pool.Take(30s);
        ASSERT_NE(session, nullptr);
        auto controller = control::Controller::ForUser(user, std::move(session));
        control::TaskControl tasks(controller);
        control::Unit unit(controller);
        record::Task task;
        ASSERT_TRUE(tasks.Create(task, ""));
        EXPECT_EQ(tasks.Count({}), round / 5 * 4 + round % 5 + 1);
        if (round % 5 != 4) {  // every fifth is left uncommitted
          EXPECT_EQ(unit.Commit(), control::Unit::Outcome::kCommitted);
        }
      }
    }));
  }
  int most = 0;
  for (std::future<void>& thread : threads) {
    while (thread.wait_for(1ms) != std::future_status::ready) {
      most = std::max(most, std::stoi(Connections()));
    }
    thread.get();
  }
  EXPECT_LE(most, 4);
  EXPECT_EQ(raw_.Value("SELECT count(*) FROM download_queue WHERE username LIKE 'user%'"),
            std::to_string(kThreads * kRounds / 5 * 4));
}

TEST_F(SessionPoolTest, ThreadsOutliveTheConnectionsThatTheServerEnds) {
  SessionPool pool(2);
  std::vector<std::future<void>> threads;
  for (int number = 0; number < 4; ++number) {
    threads.push_back(std::async(std::launch::async, [&pool] {
      for (int round = 0; round < 20; ++round) {
        const auto session = pool.Take(30s);
        ASSERT_NE(session, nullptr);
        const int count = Count(session);  // -1 when its connection has just been ended
        EXPECT_TRUE(count == 1 || count == -1) << count;
      }
    }));
  }
  for (int round = 0; round < 10; ++round) {
    // Not one that is being opened, which would be thrown.
    raw_.Run(
        "SELECT pg_terminate_backend(pid) FROM pg_stat_activity "
        "WHERE application_name = 'libdorvdlcore' AND query ~ 'download_queue|UNLISTEN'");
    usleep(5000);
  }
  for (std::future<void>& thread : threads) {
    thread.get();
  }
  const auto session = pool.Take(0ms);
  EXPECT_EQ(Count(session), 1);
}

}  // namespace
}  // namespace dorvdl::db
