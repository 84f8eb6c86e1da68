// ENTERCriticalSection and LEAVECriticalSection under real ids. Every case has the real ids 0 and
// other saved ids, unless it says otherwise, so that a switch that touches those shows.
#include <dorvdl/util/privilege.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

#include "support/child.h"
#include "support/identity.h"
#include "support/switch_report.h"
#include "support/syslog_capture.h"

namespace dorvdl::util {
namespace {

using test_support::BecomeIds;
using test_support::kAuthDebug;
using test_support::kAuthError;
using test_support::kAuthInfo;
using test_support::LogLine;
using test_support::RefuseIdCall;
using test_support::Report;
using test_support::ReportSwitch;
using test_support::RunInChild;
using Calls = std::vector<std::string>;
using Lines = std::vector<LogLine>;

constexpr char kHere[] = "elevation_roottest";

// The lines that several cases share.
const LogLine kGroupToRootWarning{kAuthInfo, kHere, "WARNING: setresgid(-1, 0, -1)"};
const LogLine kUserToRootWarning{kAuthInfo, kHere, "WARNING: setresuid(-1, 0, -1)"};
const LogLine kGroupToRoot{kAuthDebug, kHere, "setresgid: (0, 2001, 2002) -> (0, 0, 2002)"};
const LogLine kUserToRoot{kAuthDebug, kHere, "setresuid: (0, 1001, 1002) -> (0, 0, 1002)"};
const LogLine kUserStaysRoot{kAuthDebug, kHere, "setresuid: (0, 0, 1002) -> (0, 0, 1002)"};
const LogLine kGroupBack{kAuthDebug, kHere, "setresgid: (0, 0, 2002) -> (0, 2001, 2002)"};
const LogLine kUserBack{kAuthDebug, kHere, "setresuid: (0, 0, 1002) -> (0, 1001, 1002)"};
const LogLine kEntered{kAuthInfo, kHere, "ENTERCriticalSection"};
const LogLine kNotEntered{kAuthError, kHere, "ERROR: ENTERCriticalSection"};
const LogLine kLeft{kAuthInfo, kHere, "LEAVECriticalSection"};
const LogLine kNotLeft{kAuthError, kHere, "ERROR: LEAVECriticalSection"};

// A line about a call that RefuseIdCall(n, EAGAIN) refused.
LogLine Refused(const std::string& call) {
  return {kAuthError, kHere, "ERROR: " + call + " [Resource temporarily unavailable]"};
}

struct Case {
  const char* name;
  uid_t uid;  // effective ids at first
  gid_t gid;
  int refused;  // which call of the step under test is refused; 0: none
  Calls calls;
  Lines lines;
  int error;
  const char* ids;  // afterwards
};

std::string CaseName(const testing::TestParamInfo<Case>& info) { return info.param.name; }

class EnterTest : public testing::TestWithParam<Case> {};

TEST_P(EnterTest, SwitchesGroupThenUserAndLogsEachStep) {
  const Case& test = GetParam();
  const std::string report = RunInChild([&test] {
    BecomeIds({0, test.uid, 1002}, {0, test.gid, 2002});
    RefuseIdCall(test.refused, EAGAIN);
    ENTERCriticalSection;
    const int error = errno;
    EXPECT_EQ(dorvdl_saved_ids.uid, test.uid);
    EXPECT_EQ(dorvdl_saved_ids.gid, test.gid);
    return ReportSwitch(error);
  });
  EXPECT_EQ(report, Report(test.calls, test.lines, test.error, test.ids));
}

INSTANTIATE_TEST_SUITE_P(
    Elevation, EnterTest,
    testing::Values(
        Case{"AlreadyRoot", 0, 0, 0, {}, {kEntered}, 0, "uids 0 0 1002, gids 0 0 2002"},

        Case{"ForeignGroup",
             0,
             2001,
             0,
             {"setresgid(-1, 0, -1)"},
             {kGroupToRootWarning, kGroupToRoot, kEntered},
             0,
             "uids 0 0 1002, gids 0 0 2002"},
        Case{"ForeignGroup_GroupRefused",
             0,
             2001,
             1,
             {"setresgid(-1, 0, -1)"},
             {Refused("setresgid(-1, 0, -1)"), kNotEntered},
             EPERM,
             "uids 0 0 1002, gids 0 2001 2002"},

        Case{"ForeignUser",
             1001,
             0,
             0,
             {"setresuid(-1, 0, -1)"},
             {kUserToRootWarning, kUserToRoot, kEntered},
             0,
             "uids 0 0 1002, gids 0 0 2002"},
        Case{"ForeignUser_UserRefused",
             1001,
             0,
             1,
             {"setresuid(-1, 0, -1)"},
             {Refused("setresuid(-1, 0, -1)"), kNotEntered},
             EPERM,
             "uids 0 1001 1002, gids 0 0 2002"},

        Case{"ForeignUserAndGroup",
             1001,
             2001,
             0,
             {"setresgid(-1, 0, -1)", "setresuid(-1, 0, -1)"},
             {kGroupToRootWarning, kGroupToRoot, kUserToRootWarning, kUserToRoot, kEntered},
             0,
             "uids 0 0 1002, gids 0 0 2002"},
        Case{"ForeignUserAndGroup_GroupRefusedLeavesTheUserAlone",
             1001,
             2001,
             1,
             {"setresgid(-1, 0, -1)"},
             {Refused("setresgid(-1, 0, -1)"), kNotEntered},
             EPERM,
             "uids 0 1001 1002, gids 0 2001 2002"},
        Case{"ForeignUserAndGroup_UserRefused",
             1001,
             2001,
             2,
             {"setresgid(-1, 0, -1)", "setresuid(-1, 0, -1)"},
             {kGroupToRootWarning, kGroupToRoot, Refused("setresuid(-1, 0, -1)"), kNotEntered},
             EPERM,
             "uids 0 1001 1002, gids 0 0 2002"}),
    CaseName);

class LeaveTest : public testing::TestWithParam<Case> {};

TEST_P(LeaveTest, RegainsRootThenRestoresGroupAndUser) {
  const Case& test = GetParam();
  const std::string report = RunInChild([&test] {
    BecomeIds({0, test.uid, 1002}, {0, test.gid, 2002});
    ENTERCriticalSection;
    EXPECT_EQ(errno, 0);
    ReportSwitch(0);
    RefuseIdCall(test.refused, EAGAIN);
    LEAVECriticalSection;
    return ReportSwitch(errno);
  });
  EXPECT_EQ(report, Report(test.calls, test.lines, test.error, test.ids));
}

INSTANTIATE_TEST_SUITE_P(
    Elevation, LeaveTest,
    testing::Values(
        Case{"AlreadyRoot", 0, 0, 0, {}, {kLeft}, 0, "uids 0 0 1002, gids 0 0 2002"},

        Case{"ForeignGroup",
             0,
             2001,
             0,
             {"setresgid(-1, 2001, -1)"},
             {kGroupBack, kLeft},
             0,
             "uids 0 0 1002, gids 0 2001 2002"},
        Case{"ForeignGroup_GroupRefused",
             0,
             2001,
             1,
             {"setresgid(-1, 2001, -1)"},
             {Refused("setresgid(-1, 2001, -1)"), kNotLeft},
             EPERM,
             "uids 0 0 1002, gids 0 0 2002"},

        Case{"ForeignUser",
             1001,
             0,
             0,
             {"setresuid(-1, 0, -1)", "setresuid(-1, 1001, -1)"},
             {kUserToRootWarning, kUserStaysRoot, kUserBack, kLeft},
             0,
             "uids 0 1001 1002, gids 0 0 2002"},
        Case{"ForeignUser_RegainingRefused",
             1001,
             0,
             1,
             {"setresuid(-1, 0, -1)"},
             {Refused("setresuid(-1, 0, -1)"), kNotLeft},
             EPERM,
             "uids 0 0 1002, gids 0 0 2002"},
        Case{"ForeignUser_UserRefused",
             1001,
             0,
             2,
             {"setresuid(-1, 0, -1)", "setresuid(-1, 1001, -1)"},
             {kUserToRootWarning, kUserStaysRoot, Refused("setresuid(-1, 1001, -1)"), kNotLeft},
             EPERM,
             "uids 0 0 1002, gids 0 0 2002"},

        Case{"ForeignUserAndGroup",
             1001,
             2001,
             0,
             {"setresuid(-1, 0, -1)", "setresgid(-1, 2001, -1)", "setresuid(-1, 1001, -1)"},
             {kUserToRootWarning, kUserStaysRoot, kGroupBack, kUserBack, kLeft},
             0,
             "uids 0 1001 1002, gids 0 2001 2002"},
        Case{"ForeignUserAndGroup_RegainingRefused",
             1001,
             2001,
             1,
             {"setresuid(-1, 0, -1)"},
             {Refused("setresuid(-1, 0, -1)"), kNotLeft},
             EPERM,
             "uids 0 0 1002, gids 0 0 2002"},
        Case{"ForeignUserAndGroup_GroupRefused",
             1001,
             2001,
             2,
             {"setresuid(-1, 0, -1)", "setresgid(-1, 2001, -1)"},
             {kUserToRootWarning, kUserStaysRoot, Refused("setresgid(-1, 2001, -1)"), kNotLeft},
             EPERM,
             "uids 0 0 1002, gids 0 0 2002"},
        Case{"ForeignUserAndGroup_UserRefused",
             1001,
             2001,
             3,
             {"setresuid(-1, 0, -1)", "setresgid(-1, 2001, -1)", "setresuid(-1, 1001, -1)"},
             {kUserToRootWarning, kUserStaysRoot, kGroupBack, Refused("setresuid(-1, 1001, -1)"),
              kNotLeft},
             EPERM,
             "uids 0 0 1002, gids 0 2001 2002"}),
    CaseName);

TEST(LeaveTest, WarnsOfEveryIdThatItSetsToRoot) {
  const std::string report = RunInChild([] {
    BecomeIds({0, 1001, 1002}, {0, 2001, 2002});
    LeaveCriticalSection({0, 0}, DORVDL_SOURCE, __LINE__);
    return ReportSwitch(errno);
  });
  EXPECT_EQ(report, Report({"setresuid(-1, 0, -1)", "setresgid(-1, 0, -1)", "setresuid(-1, 0, -1)"},
                           {kUserToRootWarning, kUserToRoot, kGroupToRootWarning, kGroupToRoot,
                            kUserToRootWarning, kUserStaysRoot, kLeft},
                           0, "uids 0 0 1002, gids 0 0 2002"));
}

TEST(LeaveTest, AfterARefusedGroupThereIsNothingToRestore) {
  const std::string report = RunInChild([] {
    BecomeIds({0, 1001, 1002}, {0, 2001, 2002});
    RefuseIdCall(1, EAGAIN);
    ENTERCriticalSection;
    ReportSwitch(0);
    LEAVECriticalSection;
    return ReportSwitch(errno);
  });
  EXPECT_EQ(report, Report({}, {kLeft}, 0, "uids 0 1001 1002, gids 0 2001 2002"));
}

TEST(LeaveTest, AfterARefusedUserTheGroupIsRestoredWithoutRegainingRoot) {
  const std::string report = RunInChild([] {
    BecomeIds({0, 1001, 1002}, {0, 2001, 2001});
    RefuseIdCall(2, EAGAIN);
    ENTERCriticalSection;
    ReportSwitch(0);
    LEAVECriticalSection;
    return ReportSwitch(errno);
  });
  EXPECT_EQ(report,
            Report({"setresgid(-1, 2001, -1)"},
                   {{kAuthDebug, kHere, "setresgid: (0, 0, 2001) -> (0, 2001, 2001)"}, kLeft}, 0,
                   "uids 0 1001 1002, gids 0 2001 2001"));
}

TEST(CriticalSectionTest, SavedIdsOfZeroAreEnoughToBecomeRoot) {
  const std::string report = RunInChild([] {
    BecomeIds({1001, 1001, 0}, {2001, 2001, 0});
    ENTERCriticalSection;
    const std::string inside = test_support::CurrentIds();
    LEAVECriticalSection;
    return inside + "; " + test_support::CurrentIds();
  });
  EXPECT_EQ(report, "uids 1001 0 0, gids 2001 0 0; uids 1001 1001 0, gids 2001 2001 0");
}

TEST(CriticalSectionTest, WithoutPrivilegesTheKernelRefusesTheGroup) {
  const std::string report = RunInChild([] {
    BecomeIds({1001, 1001, 1001}, {2001, 2001, 2001});
    ENTERCriticalSection;
    const int error = errno;
    LEAVECriticalSection;
    return ReportSwitch(error);
  });
  EXPECT_EQ(report,
            Report({"setresgid(-1, 0, -1)"},
                   {{kAuthError, kHere, "ERROR: setresgid(-1, 0, -1) [Operation not permitted]"},
                    kNotEntered,
                    kLeft},
                   EPERM, "uids 1001 1001 1001, gids 2001 2001 2001"));
}

TEST(CriticalSectionTest, WithoutPrivilegesTheKernelRefusesToLeaveForAnotherUser) {
  const std::string report = RunInChild([] {
    BecomeIds({1001, 1001, 1001}, {2001, 2001, 2001});
    LeaveCriticalSection({1002, 2002}, DORVDL_SOURCE, __LINE__);
    return ReportSwitch(errno);
  });
  EXPECT_EQ(report,
            Report({"setresuid(-1, 0, -1)"},
                   {{kAuthError, kHere, "ERROR: setresuid(-1, 0, -1) [Operation not permitted]"},
                    kNotLeft},
                   EPERM, "uids 1001 1001 1001, gids 2001 2001 2001"));
}

TEST(CriticalSectionTest, LogLinesCarryTheLineOfTheStatementOrTheOneGiven) {
  RunInChild([] {
    BecomeIds({0, 1001, 1002}, {0, 0, 2002});
    const int line = __LINE__;
    ENTERCriticalSection;
    LEAVECriticalSection;
    test_support::TakeLog();
    EXPECT_EQ(
        test_support::TakenLineNumbers(),
        (std::vector<int>{line + 1, line + 1, line + 1, line + 2, line + 2, line + 2, line + 2}));

    LeaveCriticalSection(EnterCriticalSection("file", 7), "file", 7);
    for (const LogLine& logged : test_support::TakeLog()) {
      EXPECT_EQ(logged.source, "file");
    }
    EXPECT_EQ(test_support::TakenLineNumbers(), std::vector<int>(7, 7));
    return std::string();
  });
}

}  // namespace
}  // namespace dorvdl::util
