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
using test_support::RefuseIdCall;
using test_support::Report;
using test_support::ReportSwitch;
using test_support::RunInChild;
using test_support::Switch;
using test_support::SwitchSteps;

constexpr char kHere[] = "elevation_roottest";
const SwitchSteps kStep(kHere, {0, 1001, 1002}, {0, 2001, 2002});

// The calls that are refused.
constexpr char kGroupToRoot[] = "setresgid(-1, 0, -1)";
constexpr char kUserToRoot[] = "setresuid(-1, 0, -1)";
constexpr char kGroupBack[] = "setresgid(-1, 2001, -1)";
constexpr char kUserBack[] = "setresuid(-1, 1001, -1)";

struct Case {
  const char* name;
  uid_t uid;  // effective ids at first
  gid_t gid;
  int refused;  // which call of the step under test is refused; 0: none
  Switch made;
  uid_t uid_after;
  gid_t gid_after;

  // The report of the step under test.
  std::string Expected() const {
    return Report(made, refused == 0 ? 0 : EPERM,
                  "uids 0 " + std::to_string(uid_after) + " 1002, gids 0 " +
                      std::to_string(gid_after) + " 2002");
  }
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
    return ReportSwitch(error);
  });
  EXPECT_EQ(report, test.Expected());
}

const Switch kGroupRefused = kStep.Refused(kGroupToRoot) + kStep.not_entered;
const Switch kUserRefused = kStep.Refused(kUserToRoot) + kStep.not_entered;

const Case kEnterCases[] = {
    {"AlreadyRoot", 0, 0, 0, kStep.entered, 0, 0},

    {"ForeignGroup", 0, 2001, 0, kStep.group_to_root + kStep.entered, 0, 0},
    {"ForeignGroup_GroupRefused", 0, 2001, 1, kGroupRefused, 0, 2001},

    {"ForeignUser", 1001, 0, 0, kStep.user_to_root + kStep.entered, 0, 0},
    {"ForeignUser_UserRefused", 1001, 0, 1, kUserRefused, 1001, 0},

    {"ForeignUserAndGroup", 1001, 2001, 0, kStep.to_root, 0, 0},
    {"ForeignUserAndGroup_GroupRefusedLeavesTheUserAlone", 1001, 2001, 1, kGroupRefused, 1001,
     2001},
    {"ForeignUserAndGroup_UserRefused", 1001, 2001, 2, kStep.group_to_root + kUserRefused, 1001, 0},
};

INSTANTIATE_TEST_SUITE_P(Elevation, EnterTest, testing::ValuesIn(kEnterCases), CaseName);

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
  EXPECT_EQ(report, test.Expected());
}

const Switch kRegained = kStep.user_stays_root;
const Switch kRegainingRefused = kStep.Refused(kUserToRoot) + kStep.not_left;
const Switch kGroupBackRefused = kStep.Refused(kGroupBack) + kStep.not_left;
const Switch kUserBackRefused = kStep.Refused(kUserBack) + kStep.not_left;

const Case kLeaveCases[] = {
    {"AlreadyRoot", 0, 0, 0, kStep.left, 0, 0},

    {"ForeignGroup", 0, 2001, 0, kStep.group_back + kStep.left, 0, 2001},
    {"ForeignGroup_GroupRefused", 0, 2001, 1, kGroupBackRefused, 0, 0},

    {"ForeignUser", 1001, 0, 0, kRegained + kStep.user_back + kStep.left, 1001, 0},
    {"ForeignUser_RegainingRefused", 1001, 0, 1, kRegainingRefused, 0, 0},
    {"ForeignUser_UserRefused", 1001, 0, 2, kRegained + kUserBackRefused, 0, 0},

    {"ForeignUserAndGroup", 1001, 2001, 0, kStep.back, 1001, 2001},
    {"ForeignUserAndGroup_RegainingRefused", 1001, 2001, 1, kRegainingRefused, 0, 0},
    {"ForeignUserAndGroup_GroupRefused", 1001, 2001, 2, kRegained + kGroupBackRefused, 0, 0},
    {"ForeignUserAndGroup_UserRefused", 1001, 2001, 3,
     kRegained + kStep.group_back + kUserBackRefused, 0, 2001},
};

INSTANTIATE_TEST_SUITE_P(Elevation, LeaveTest, testing::ValuesIn(kLeaveCases), CaseName);

TEST(LeaveTest, WarnsOfEveryIdThatItSetsToRoot) {
  const std::string report = RunInChild([] {
    ENTERCriticalSection;
    ReportSwitch(0);
    BecomeIds({0, 1001, 1002}, {0, 2001, 2002});
    LEAVECriticalSection;
    return ReportSwitch(errno);
  });
  EXPECT_EQ(report,
            Report(kStep.user_to_root + kStep.group_to_root + kStep.user_stays_root + kStep.left, 0,
                   "uids 0 0 1002, gids 0 0 2002"));
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
  EXPECT_EQ(report, Report(kStep.left, 0, "uids 0 1001 1002, gids 0 2001 2002"));
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
            Report(SwitchSteps(kHere, {0, 1001, 1002}, {0, 2001, 2001}).group_back + kStep.left, 0,
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

TEST(CriticalSectionTest, AProcessThatMayBecomeRootsGroupButNotRootKeepsThatGroup) {
  const std::string ids = RunInChild([] {
    BecomeIds({1001, 1001, 1001}, {0, 2001, 0});
    ENTERCriticalSection;
    LEAVECriticalSection;
    return test_support::CurrentIds();
  });
  EXPECT_EQ(ids, "uids 1001 1001 1001, gids 0 0 0");
}

TEST(CriticalSectionTest, WithoutPrivilegesTheKernelRefusesTheGroup) {
  const std::string report = RunInChild([] {
    BecomeIds({1001, 1001, 1001}, {2001, 2001, 2001});
    ENTERCriticalSection;
    const int error = errno;
    LEAVECriticalSection;
    return ReportSwitch(error);
  });
  EXPECT_EQ(report, Report(kStep.Refused(kGroupToRoot, "Operation not permitted") +
                               kStep.not_entered + kStep.left,
                           EPERM, "uids 1001 1001 1001, gids 2001 2001 2001"));
}

TEST(CriticalSectionTest, WithoutPrivilegesTheKernelRefusesToLeaveForAnotherUser) {
  const std::string report = RunInChild([] {
    BecomeIds({0, 1002, 1002}, {0, 2002, 2002});
    ENTERCriticalSection;
    ReportSwitch(0);
    BecomeIds({1001, 1001, 1001}, {2001, 2001, 2001});
    LEAVECriticalSection;
    return ReportSwitch(errno);
  });
  EXPECT_EQ(report, Report(kStep.Refused(kUserToRoot, "Operation not permitted") + kStep.not_left,
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

    CriticalSection("file", 7).Leave("file", 7);
    for (const auto& logged : test_support::TakeLog()) {
      EXPECT_EQ(logged.source, "file");
    }
    EXPECT_EQ(test_support::TakenLineNumbers(), std::vector<int>(7, 7));
    return std::string();
  });
}

}  // namespace
}  // namespace dorvdl::util
