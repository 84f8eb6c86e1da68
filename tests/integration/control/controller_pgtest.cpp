// The controller's connection: opened when needed, kept while good, replaced when not.
#include <dorvdl/control/controller.h>
#include <gtest/gtest.h>
#include <soci/soci.h>

#include "support/child.h"
#include "support/connection.h"
#include "support/database.h"
#include "support/identity.h"
#include "support/syslog_capture.h"

namespace dorvdl::control {
namespace {

using db::DBSession;
using test_support::CurrentIds;
using test_support::LogLine;
using test_support::RunInChild;
using test_support::TakeIdCalls;
using test_support::TakeLog;
using Lines = std::vector<LogLine>;

// What opening a connection logs for a process that is root.
const Lines kOpened{{38, "db/session", "ENTERCriticalSection"},
                    {38, "db/session", "LEAVECriticalSection"}};

// Tables of a program's own, which tell what they were made of.
struct PlainTable {
  explicit PlainTable(DBSession& from) : session(from) {}
  DBSession& session;
};
struct NamedTable {
  NamedTable(DBSession& from, const std::string& name) : session(from), user(name) {}
  DBSession& session;
  std::string user;
};

class ControllerTest : public test_support::DatabaseTest {
 protected:
  ControllerTest() { TakeLog(); }

  // The server's process behind a connection.
  static int ProcessOf(DBSession& session) {
    return PQbackendPID(test_support::ConnectionOf(session.session()));
  }

  void TerminateSessions() { test_support::TerminateOtherSessions(raw_); }
};

TEST_F(ControllerTest, ItOpensNothingBeforeItIsAsked) {
  Controller controller;
  controller.set_username("alice");
  EXPECT_EQ(controller.username(), "alice");
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(ControllerTest, ItOpensItsConnectionOnceAndKeepsItWhileItIsGood) {
  Controller controller;
  DBSession& first = controller.db_session();
  EXPECT_EQ(TakeLog(), kOpened);
  EXPECT_TRUE(first.session().Good());
  EXPECT_EQ(&controller.db_session(), &first);
  EXPECT_EQ(&controller.Use<PlainTable>().session, &first);
  EXPECT_EQ(&controller.UseWithName<NamedTable>().session, &first);
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(ControllerTest, AnAccessorOpensTheConnectionToo) {
  Controller controller;
  EXPECT_TRUE(controller.Use<PlainTable>().session.session().Good());
  EXPECT_EQ(TakeLog(), kOpened);
}

TEST_F(ControllerTest, KeepingAConnectionAsksTheServerNothing) {
  Controller controller;
  test_support::MessageTrace trace(controller.db_session().session());
  controller.db_session();
  controller.Use<PlainTable>();
  EXPECT_EQ(trace.Messages(), "");
}

TEST_F(ControllerTest, AFailedStatementIsNoReasonForANewConnection) {
  Controller controller;
  DBSession& session = controller.db_session();
  EXPECT_THROW(*session.session().handle() << "SELECT nonsense", soci::soci_error);
  EXPECT_EQ(&controller.db_session(), &session);
}

TEST_F(ControllerTest, AccessorsGetTheUserNameOfTheMoment) {
  Controller controller;
  EXPECT_EQ(controller.UseWithName<NamedTable>().user, "");
  controller.set_username("alice");
  const NamedTable alices = controller.UseWithName<NamedTable>();
  controller.set_username("");
  EXPECT_EQ(alices.user, "alice");
  EXPECT_EQ(controller.UseWithName<NamedTable>().user, "");
}

TEST_F(ControllerTest, AConnectionThatTheServerEndedIsReplaced) {
  Controller controller;
  const int process = ProcessOf(controller.db_session());
  TerminateSessions();
  TakeLog();
  DBSession& second = controller.db_session();
  EXPECT_EQ(TakeLog(), kOpened);
  EXPECT_TRUE(second.session().Good());
  EXPECT_NE(ProcessOf(second), process);
  EXPECT_EQ(&controller.db_session(), &second);
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(ControllerTest, AGivenConnectionIsUsedAndShared) {
  const auto session = std::make_shared<DBSession>();
  TakeLog();
  {
    Controller first(session);
    Controller second(session);
    EXPECT_EQ(session.use_count(), 3);
    EXPECT_EQ(&first.db_session(), session.get());
    EXPECT_EQ(&second.db_session(), session.get());
    EXPECT_EQ(first.username(), "");
  }
  EXPECT_EQ(session.use_count(), 1);
  EXPECT_TRUE(session->session().Good());
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(ControllerTest, GivenNoConnectionItOpensItsOwn) {
  Controller controller{std::shared_ptr<DBSession>()};
  EXPECT_TRUE(controller.db_session().session().Good());
}

TEST_F(ControllerTest, OtherHoldersKeepAConnectionThatIsReplaced) {
  const auto session = std::make_shared<DBSession>();
  const int process = ProcessOf(*session);
  Controller controller(session);
  Controller other(session);
  TerminateSessions();
  EXPECT_NE(&controller.db_session(), session.get());
  EXPECT_TRUE(controller.db_session().session().Good());
  EXPECT_EQ(session.use_count(), 2) << "the controller has let it go";
  EXPECT_EQ(ProcessOf(*session), process);
  EXPECT_FALSE(session->session().Good());
  EXPECT_NE(&other.db_session(), &controller.db_session()) << "each replaces its own";
}

TEST_F(ControllerTest, AGivenConnectionThatIsNoLongerGoodIsReplaced) {
  const auto session = std::make_shared<DBSession>();
  TerminateSessions();
  EXPECT_FALSE(session->session().Good());
  Controller controller(session);
  EXPECT_TRUE(controller.db_session().session().Good());
  EXPECT_EQ(session.use_count(), 1);
}

TEST_F(ControllerTest, ACopySharesTheConnectionAndTheName) {
  Controller controller;
  controller.set_username("alice");
  controller.db_session();
  Controller copy = controller;
  EXPECT_EQ(&copy.db_session(), &controller.db_session());
  EXPECT_EQ(copy.username(), "alice");
}

TEST_F(ControllerTest, WhileTheServerIsDownAnExceptionLeavesAndTheIdsAreBack) {
  RunInChild([] {
    test_support::BecomeIds({0, 1000, 0}, {0, 1000, 0});
    Controller controller;
    const int process = ProcessOf(controller.db_session());
    test_support::BecomeIds({0, 0, 0}, {0, 0, 0});
    test_support::HaltServer();
    test_support::BecomeIds({0, 1000, 0}, {0, 1000, 0});
    TakeLog();
    TakeIdCalls();
    for (int time = 0; time < 2; ++time) {
      EXPECT_THROW(controller.db_session(), soci::soci_error);
      EXPECT_EQ(CurrentIds(), "uids 0 1000 0, gids 0 1000 0");
      EXPECT_EQ(TakeIdCalls().size(), 5U);
      EXPECT_EQ(TakeLog().back(), kOpened.back());
      EXPECT_THROW(controller.Use<PlainTable>(), soci::soci_error);
      TakeLog();
      TakeIdCalls();
    }
    test_support::BecomeIds({0, 0, 0}, {0, 0, 0});
    test_support::ResumeServer();
    test_support::BecomeIds({0, 1000, 0}, {0, 1000, 0});
    EXPECT_TRUE(controller.db_session().session().Good());
    EXPECT_NE(ProcessOf(controller.db_session()), process);
    return std::string();
  });
}

}  // namespace
}  // namespace dorvdl::control
