// Opening, testing, moving and losing sessions.
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <cstdlib>

#include "integration/dbquery/query_test.h"
#include "support/child.h"
#include "support/environment.h"
#include "support/temporary_folder.h"

namespace dorvdbquery {
namespace {

using test_support::ConnectionOf;
using test_support::Environment;
using test_support::TakeLog;

class SessionTest : public QueryTest {
 protected:
  // A setting of the session under test as the server sees it.
  static std::string Setting(const Session& session, const std::string& name) {
    std::string value;
    *session.handle() << "SHOW " + name, soci::into(value);
    return value;
  }

  int OpenSessions() {
    return std::stoi(
        raw_.Value("SELECT count(*) FROM pg_stat_activity WHERE application_name = "
                   "'libdorvdlcore' AND pid <> pg_backend_pid()"));
  }

  // Waits until the server's side of closed sessions is gone.
  void AwaitOpenSessions(int expected) {
    for (int tries = 0; tries < 500 && OpenSessions() != expected; ++tries) {
      usleep(10000);
    }
    EXPECT_EQ(OpenSessions(), expected);
  }

  // Waits until the server has sent something that was not asked for.
  void AwaitMessage() {
    pollfd socket{PQsocket(ConnectionOf(session_)), POLLIN, 0};
    ASSERT_EQ(poll(&socket, 1, 5000), 1);
  }
};

TEST_F(SessionTest, ItNamesTheLibraryAndTalksUtf8) {
  const Environment name("PGAPPNAME", "other");
  const Environment encoding("PGCLIENTENCODING", "LATIN1");
  const Session session = Connect();
  EXPECT_EQ(Setting(session, "application_name"), "libdorvdlcore");
  EXPECT_EQ(Setting(session, "client_encoding"), "UTF8");
}

TEST_F(SessionTest, RoleAndDatabaseAreTheGivenOnes) {
  const Environment user("PGUSER", "postgres");
  const Environment database("PGDATABASE", "postgres");
  std::string who;
  *Connect().handle() << "SELECT current_user || ' ' || current_database()", soci::into(who);
  EXPECT_EQ(who, "Tarnwick download");
}

TEST_F(SessionTest, HostAndPortComeFromTheEnvironment) {
  {
    const Environment host("PGHOST", "/nowhere");
    EXPECT_THROW(Connect(), soci::soci_error);
  }
  const Environment port("PGPORT", "1");
  EXPECT_THROW(Connect(), soci::soci_error);
}

TEST_F(SessionTest, AFailOverListComesFromTheEnvironment) {
  const Environment hosts("PGHOST", std::string("/nowhere,") + std::getenv("PGHOST"));
  EXPECT_TRUE(Connect().Good());
}

TEST_F(SessionTest, AServiceComesFromTheEnvironment) {
  const test_support::TemporaryFolder folder;
  const Environment file(
      "PGSERVICEFILE",
      folder.Write("services", std::string("[nas]\nhost=") + std::getenv("PGHOST") + "\n"));
  const Environment service("PGSERVICE", "nas");
  const Environment host("PGHOST", "/nowhere");
  EXPECT_TRUE(Connect().Good());
}

TEST_F(SessionTest, SettingsOfTheEnvironmentReachTheServer) {
  const Environment options("PGOPTIONS", "-c work_mem=7MB");
  EXPECT_EQ(Setting(Connect(), "work_mem"), "7MB");
}

TEST_F(SessionTest, RefusedNamesReachTheServerAsTheyAre) {
  for (const std::string& name :
       {std::string("o'n\\eil \"x\""), std::string("a' dbname='download"), std::string("' '"),
        std::string("\\"), std::string("nötig"), std::string("a=b postgresql://x/")}) {
    for (const bool as_user : {true, false}) {
      try {
        as_user ? Session::PGSQL(name, "download") : Session::PGSQL("Tarnwick", name);
        ADD_FAILURE() << name;
      } catch (const soci::soci_error& error) {
        const std::string expected =
            as_user ? "user \"" + name + "\"" : "database \"" + name + "\" does not exist";
        EXPECT_NE(std::string(error.what()).find(expected), std::string::npos) << error.what();
      }
    }
  }
}

TEST_F(SessionTest, ANameWithAnEmbeddedNulIsRefused) {
  EXPECT_THROW(Session::PGSQL(std::string("Tarnwick\0x", 10), "download"), soci::soci_error);
  EXPECT_THROW(Session::PGSQL("Tarnwick", std::string("download\0", 9)), soci::soci_error);
}

TEST_F(SessionTest, OneWithoutAConnectionFailsAtEverything) {
  Session none;
  EXPECT_FALSE(none.Good());
  EXPECT_EQ(none.handle(), nullptr);
  EXPECT_FALSE(DeleteQuery(none, "item").Execute());
  EXPECT_EQ(TakeLog(), Lines{Failed("the session has no connection")});
  const test_support::TemporaryFolder folder;
  EXPECT_EQ(none.ClientSideLOImport(folder.Write("f", "x")), 0U);
  EXPECT_FALSE(none.ClientSideLOExport(1, folder.Path("out")));
  EXPECT_FALSE(folder.Exists("out"));
  EXPECT_EQ(TakeLog().size(), 2U);
}

TEST_F(SessionTest, NoticesDoNotReachTheStandardError) {
  testing::internal::CaptureStderr();
  Direct("DO $$ BEGIN RAISE NOTICE 'a notice'; RAISE WARNING 'a warning'; END $$");
  Direct("ROLLBACK");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(SessionTest, AMovedSessionGoesOn) {
  Session moved(std::move(session_));
  EXPECT_TRUE(moved.Good());
  EXPECT_FALSE(session_.Good());  // NOLINT(bugprone-use-after-move): moved-from means unconnected
  EXPECT_EQ(session_.handle(), nullptr);
  EXPECT_FALSE(Insert(1));
  session_ = std::move(moved);
  EXPECT_TRUE(session_.Good());
  EXPECT_TRUE(Insert(1));
}

TEST_F(SessionTest, ATransactionSurvivesTheMoveOfItsSession) {
  DefaultTransaction transaction(session_);
  ASSERT_TRUE(Insert(1));
  Session moved(std::move(session_));
  EXPECT_TRUE(transaction.Commit());
  EXPECT_EQ(Stored(), Rows{"1"});
}

TEST_F(SessionTest, AssigningAndDestroyingCloseTheConnection) {
  AwaitOpenSessions(1);
  session_ = Connect();
  AwaitOpenSessions(1);
  session_ = Session();
  AwaitOpenSessions(0);
}

TEST_F(SessionTest, ItIsGoodAfterStatementsOfAnyOutcome) {
  EXPECT_TRUE(session_.Good());
  EXPECT_TRUE(Insert(1));
  EXPECT_TRUE(session_.Good());
  EXPECT_FALSE(Insert(1));
  EXPECT_TRUE(session_.Good());
  std::string name;
  SelectQuery query(session_, "item");
  query.SelectField<std::string>("name", name);
  EXPECT_THROW(query.Execute(), soci::soci_error);
  EXPECT_TRUE(session_.Good());
}

TEST_F(SessionTest, ItIsGoodInsideATransactionAlsoAFailedOne) {
  const DefaultTransaction transaction(session_);
  EXPECT_TRUE(session_.Good());
  ASSERT_TRUE(Insert(1));
  EXPECT_FALSE(Insert(1));
  EXPECT_TRUE(session_.Good());
}

TEST_F(SessionTest, ItIsGoodWithRowsLeftToFetch) {
  raw_.Run("INSERT INTO item (id) SELECT generate_series(1, 1000)");
  int id = 0;
  SelectQuery query(session_, "item");
  query.SelectField<int>("id", id);
  ASSERT_TRUE(query.Execute());
  EXPECT_TRUE(session_.Good());
  EXPECT_TRUE(query.Fetch());
}

TEST_F(SessionTest, ItIsGoodWhileNotificationsWait) {
  Direct("LISTEN channel");
  raw_.Run("NOTIFY channel, 'news'");
  AwaitMessage();
  EXPECT_TRUE(session_.Good());
  EXPECT_TRUE(Insert(1));
  EXPECT_TRUE(session_.Good());
}

TEST_F(SessionTest, ItIsGoodWhileANoticeWaits) {
  PQsendQuery(ConnectionOf(session_), "DO $$ BEGIN RAISE NOTICE 'news'; END $$");
  AwaitMessage();
  EXPECT_TRUE(session_.Good());
  while (PGresult* const result = PQgetResult(ConnectionOf(session_))) {
    PQclear(result);
  }
  EXPECT_TRUE(session_.Good());
}

TEST_F(SessionTest, ItIsNotGoodOnceTheServerHasEndedIt) {
  test_support::TerminateOtherSessions(raw_);
  test_support::MessageTrace trace(session_);
  EXPECT_FALSE(session_.Good());
  EXPECT_FALSE(session_.Good());
  EXPECT_EQ(trace.Messages(), "");
}

TEST_F(SessionTest, ItIsNotGoodOnceTheServerHasEndedItWithNotificationsWaiting) {
  Direct("LISTEN channel");
  raw_.Run("NOTIFY channel, 'news'");
  AwaitMessage();
  test_support::TerminateOtherSessions(raw_);
  EXPECT_FALSE(session_.Good());
}

TEST_F(SessionTest, ItIsNotGoodAfterAStatementThatFoundItLost) {
  test_support::TerminateOtherSessions(raw_);
  EXPECT_FALSE(Insert(1));
  EXPECT_FALSE(session_.Good());
}

TEST_F(SessionTest, ItIsNotGoodWhileTheServerIsHaltedNorAfterwards) {
  test_support::HaltServer();
  EXPECT_FALSE(session_.Good());
  EXPECT_THROW(Connect(), soci::soci_error);
  test_support::ResumeServer();
  EXPECT_FALSE(session_.Good());
  session_ = Connect();
  EXPECT_TRUE(session_.Good());
  EXPECT_TRUE(Insert(1));
}

}  // namespace
}  // namespace dorvdbquery
