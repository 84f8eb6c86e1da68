// Opening the connection as root, under real ids. Every case runs in a child whose ids are not
// root's, unless it says otherwise.
#include <dorvdl/db/session.h>
#include <gtest/gtest.h>
#include <soci/soci.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <vector>

#include "support/child.h"
#include "support/database.h"
#include "support/identity.h"
#include "support/recording_platform.h"
#include "support/switch_report.h"
#include "support/syslog_capture.h"

namespace dorvdl::db {
namespace {

using test_support::BecomeIds;
using test_support::CurrentIds;
using test_support::RefuseIdCall;
using test_support::Report;
using test_support::ReportSwitch;
using test_support::RunInChild;
using test_support::Switch;
using Calls = std::vector<std::string>;

const test_support::SwitchSteps kStep("db/session", {0, 1000, 2000}, {0, 1000, 2000});
const Switch kThereAndBack = kStep.to_root + kStep.back;
const Switch kGroupRefused = kStep.Refused("setresgid(-1, 0, -1)") + kStep.not_entered + kStep.left;
constexpr char kIds[] = "uids 0 1000 2000, gids 0 1000 2000";

class DBSessionTest : public test_support::DatabaseTest {
 protected:
  DBSessionTest() {
    platform_.on_call = [this](const std::string&) { ids_at_call_ = CurrentIds(); };
    test_support::TakeLog();
  }

  // Opens a session that must fail as the query builder says it.
  static void ExpectRefusal() {
    try {
      const DBSession session;
      ADD_FAILURE() << "the session was opened";
    } catch (const soci::soci_error& error) {
      EXPECT_NE(std::string(error.what()).find("connection to server"), std::string::npos)
          << error.what();
    }
  }

  void ExpectOneCredentialsCall() {
    EXPECT_EQ(platform_.TakeCalls(), Calls{"InitCredentialsByName(\"Tarnwick\", 1)"});
  }

  test_support::RecordingPlatform platform_;
  std::string ids_at_call_;
};

TEST_F(DBSessionTest, ItOpensAsRootAndGivesTheIdsBack) {
  const std::string report = RunInChild([this] {
    BecomeIds({0, 1000, 2000}, {0, 1000, 2000});
    DBSession session;
    std::string switched = ReportSwitch(errno);
    ExpectOneCredentialsCall();
    EXPECT_EQ(ids_at_call_, "uids 0 0 2000, gids 0 0 2000");
    EXPECT_TRUE(session.session().Good());
    std::string who;
    *session.session().handle() << "SELECT current_user || ' ' || current_database()",
        soci::into(who);
    EXPECT_EQ(who, "Tarnwick download");
    return switched;
  });
  EXPECT_EQ(report, Report(kThereAndBack, 0, kIds));
}

TEST_F(DBSessionTest, RootSwitchesNothing) {
  const std::string report = RunInChild([this] {
    const DBSession session;
    ExpectOneCredentialsCall();
    return ReportSwitch(errno);
  });
  EXPECT_EQ(report, Report(kStep.entered + kStep.left, 0, "uids 0 0 0, gids 0 0 0"));
}

TEST_F(DBSessionTest, TheResultOfTheCredentialsCallDoesNotMatter) {
  platform_.init_credentials = -1;
  DBSession session;
  EXPECT_TRUE(session.session().Good());
}

TEST_F(DBSessionTest, AProcessThatCannotBecomeRootIsRefusedByTheServer) {
  const std::string report = RunInChild([this] {
    BecomeIds({1000, 1000, 1000}, {1000, 1000, 1000});
    ExpectRefusal();
    ExpectOneCredentialsCall();
    EXPECT_EQ(ids_at_call_, "uids 1000 1000 1000, gids 1000 1000 1000");
    return ReportSwitch(0);
  });
  EXPECT_EQ(report, Report(kStep.Refused("setresgid(-1, 0, -1)", "Operation not permitted") +
                               kStep.not_entered + kStep.left,
                           0, "uids 1000 1000 1000, gids 1000 1000 1000"));
}

TEST_F(DBSessionTest, ARefusedSwitchIsLoggedAndTheConnectionTriedAsItIs) {
  const std::string report = RunInChild([this] {
    BecomeIds({0, 1000, 2000}, {0, 1000, 2000});
    RefuseIdCall(1, EAGAIN);
    ExpectRefusal();
    ExpectOneCredentialsCall();
    return ReportSwitch(0);
  });
  EXPECT_EQ(report, Report(kGroupRefused, 0, kIds));
}

TEST_F(DBSessionTest, ARefusedGroupDoesNotKeepAUserThatIsRootFromConnecting) {
  const std::string report = RunInChild([this] {
    BecomeIds({0, 0, 0}, {0, 1000, 2000});
    RefuseIdCall(1, EAGAIN);
    DBSession session;
    EXPECT_TRUE(session.session().Good());
    ExpectOneCredentialsCall();
    return ReportSwitch(errno);
  });
  EXPECT_EQ(report, Report(kGroupRefused, 0, "uids 0 0 0, gids 0 1000 2000"));
}

TEST_F(DBSessionTest, WhenTheConnectionFailsTheIdsAreBackBeforeTheException) {
  const std::string report = RunInChild([] {
    setenv("PGHOST", "/nowhere", 1);
    BecomeIds({0, 1000, 2000}, {0, 1000, 2000});
    std::string switched;
    try {
      const DBSession session;
    } catch (const soci::soci_error&) {
      switched = ReportSwitch(0);
    }
    return switched;
  });
  EXPECT_EQ(report, Report(kThereAndBack, 0, kIds));
}

TEST_F(DBSessionTest, AFailedRestoreIsLoggedAndTheSessionIsUsable) {
  const std::string report = RunInChild([] {
    BecomeIds({0, 1000, 2000}, {0, 0, 0});
    RefuseIdCall(2, EAGAIN);
    DBSession session;
    const int error = errno;
    EXPECT_TRUE(session.session().Good());
    return ReportSwitch(error);
  });
  EXPECT_EQ(report, Report(kStep.user_to_root + kStep.entered +
                               kStep.Refused("setresuid(-1, 0, -1)") + kStep.not_left,
                           EPERM, "uids 0 0 2000, gids 0 0 0"));
}

TEST_F(DBSessionTest, TheLinesNameTheSourceLines) {
  RunInChild([] {
    BecomeIds({0, 1000, 2000}, {0, 0, 0});
    { const DBSession session; }
    test_support::TakeLog();
    const std::vector<int> numbers = test_support::TakenLineNumbers();
    EXPECT_EQ(numbers.size(), 7U);
    EXPECT_EQ(std::vector<int>(numbers.begin(), numbers.begin() + 3),
              std::vector<int>(3, numbers.front()));
    EXPECT_EQ(std::vector<int>(numbers.begin() + 3, numbers.end()),
              std::vector<int>(4, numbers.back()));
    EXPECT_LT(numbers.front(), numbers.back());
    return std::string();
  });
}

}  // namespace
}  // namespace dorvdl::db
