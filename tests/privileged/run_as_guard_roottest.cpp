// RunAsGuard and IF_RUN_AS under real ids. As for the critical section, the real ids are 0 and the
// saved ones others, unless a case says otherwise.
#include <dorvdl/util/privilege.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "support/child.h"
#include "support/identity.h"
#include "support/switch_report.h"
#include "support/syslog_capture.h"

namespace dorvdl::util {
namespace {

using test_support::BecomeIds;
using test_support::CurrentIds;
using test_support::kAuthCritical;
using test_support::kAuthError;
using test_support::LogLine;
using test_support::RefuseIdCall;
using test_support::Report;
using test_support::ReportSwitch;
using test_support::RunInChild;
using Calls = std::vector<std::string>;
using Lines = std::vector<LogLine>;

constexpr char kHere[] = "run_as_guard_roottest";
constexpr auto kAllOnes = static_cast<uid_t>(-1);

static_assert(std::is_standard_layout_v<RunAsGuard>);
static_assert(offsetof(RunAsGuard, saved_uid) < offsetof(RunAsGuard, saved_gid) &&
              offsetof(RunAsGuard, saved_gid) < offsetof(RunAsGuard, file) &&
              offsetof(RunAsGuard, file) < offsetof(RunAsGuard, line) &&
              offsetof(RunAsGuard, line) < offsetof(RunAsGuard, name) &&
              offsetof(RunAsGuard, name) < offsetof(RunAsGuard, success));
static_assert(!std::is_copy_constructible_v<RunAsGuard> && !std::is_copy_assignable_v<RunAsGuard>);
static_assert(std::is_constructible_v<bool, const RunAsGuard&> &&
              !std::is_convertible_v<const RunAsGuard&, bool>);

const LogLine kNotRoot{kAuthError, kHere, "ERROR: IF_RUN_AS(0, 0)"};

// A line of a guard that could not restore these ids.
LogLine NotRestored(const std::string& ids) {
  return {kAuthCritical, kHere, "ERROR: ~IF_RUN_AS(" + ids + ")"};
}

// The calls of a guard for root, from the ids 1001 and 2001 and back.
constexpr char kUser[] = "setresuid(-1, 0, -1)";
constexpr char kGroup[] = "setresgid(-1, 0, -1)";
constexpr char kUserBack[] = "setresuid(-1, 1001, -1)";
constexpr char kGroupBack[] = "setresgid(-1, 2001, -1)";

struct Case {
  const char* name;
  uid_t uid;  // effective ids at first
  gid_t gid;
  int refused;  // which call of the step under test is refused; 0: none
  Calls calls;
  uid_t uid_after;
  gid_t gid_after;

  // The report of the step under test, which logs a refusal only.
  std::string Expected(const LogLine& refusal) const {
    return Report({calls, refused == 0 ? Lines{} : Lines{refusal}}, 0,
                  "uids 0 " + std::to_string(uid_after) + " 1002, gids 0 " +
                      std::to_string(gid_after) + " 2002");
  }
};

std::string CaseName(const testing::TestParamInfo<Case>& info) { return info.param.name; }

class RunAsRootTest : public testing::TestWithParam<Case> {};

TEST_P(RunAsRootTest, MakesTheCallsAndLogsARefusalOnly) {
  const Case& test = GetParam();
  const std::string report = RunInChild([&test] {
    BecomeIds({0, test.uid, 1002}, {0, test.gid, 2002});
    RefuseIdCall(test.refused, EAGAIN);
    const RunAsGuard guard(0, 0, kHere, 7);
    EXPECT_EQ(guard.saved_uid, test.uid);
    EXPECT_EQ(guard.saved_gid, test.gid);
    EXPECT_STREQ(guard.file, kHere);
    EXPECT_EQ(guard.line, 7);
    EXPECT_STREQ(guard.name, "IF_RUN_AS");
    EXPECT_EQ(guard.success, test.refused == 0);
    EXPECT_EQ(static_cast<bool>(guard), guard.success);
    return ReportSwitch(0);
  });
  EXPECT_EQ(report, test.Expected(kNotRoot));
}

const Case kRunAsRootCases[] = {
    {"AlreadyRoot", 0, 0, 0, {}, 0, 0},

    {"ForeignGroup", 0, 2001, 0, {kGroup}, 0, 0},
    {"ForeignGroup_GroupRefused", 0, 2001, 1, {kGroup}, 0, 2001},

    {"ForeignUser", 1001, 0, 0, {kUser, kUser}, 0, 0},
    {"ForeignUser_RegainingRefused", 1001, 0, 1, {kUser}, 1001, 0},
    {"ForeignUser_UserRefused", 1001, 0, 2, {kUser, kUser}, 0, 0},

    {"ForeignUserAndGroup", 1001, 2001, 0, {kUser, kGroup, kUser}, 0, 0},
    {"ForeignUserAndGroup_RegainingRefused", 1001, 2001, 1, {kUser}, 1001, 2001},
    {"ForeignUserAndGroup_GroupRefused", 1001, 2001, 2, {kUser, kGroup}, 0, 2001},
    {"ForeignUserAndGroup_UserRefused", 1001, 2001, 3, {kUser, kGroup, kUser}, 0, 0},
};

INSTANTIATE_TEST_SUITE_P(Elevation, RunAsRootTest, testing::ValuesIn(kRunAsRootCases), CaseName);

class EndRunAsRootTest : public testing::TestWithParam<Case> {};

TEST_P(EndRunAsRootTest, RestoresWhatChangedAndLogsARefusalOnly) {
  const Case& test = GetParam();
  const std::string report = RunInChild([&test] {
    BecomeIds({0, test.uid, 1002}, {0, test.gid, 2002});
    {
      const RunAsGuard guard(0, 0, kHere, 7);
      EXPECT_TRUE(guard);
      ReportSwitch(0);
      RefuseIdCall(test.refused, EAGAIN);
    }
    return ReportSwitch(0);
  });
  EXPECT_EQ(report,
            test.Expected(NotRestored(std::to_string(test.uid) + ", " + std::to_string(test.gid))));
}

const Case kEndRunAsRootCases[] = {
    {"AlreadyRoot", 0, 0, 0, {}, 0, 0},

    {"ForeignGroup", 0, 2001, 0, {kGroupBack}, 0, 2001},
    {"ForeignGroup_GroupRefused", 0, 2001, 1, {kGroupBack}, 0, 0},

    {"ForeignUser", 1001, 0, 0, {kUserBack}, 1001, 0},
    {"ForeignUser_UserRefused", 1001, 0, 1, {kUserBack}, 0, 0},

    {"ForeignUserAndGroup", 1001, 2001, 0, {kGroupBack, kUserBack}, 1001, 2001},
    {"ForeignUserAndGroup_GroupRefused", 1001, 2001, 1, {kGroupBack}, 0, 0},
    {"ForeignUserAndGroup_UserRefused", 1001, 2001, 2, {kGroupBack, kUserBack}, 0, 2001},
};

INSTANTIATE_TEST_SUITE_P(Elevation, EndRunAsRootTest, testing::ValuesIn(kEndRunAsRootCases),
                         CaseName);

// Goes to 1003 and 2003 and back: on both ways the process has to regain root in between.
std::string EndRunAsAnotherUser(int refused) {
  return RunInChild([refused] {
    BecomeIds({0, 1001, 1002}, {0, 2001, 2002});
    {
      const RunAsGuard guard(1003, 2003, kHere, 7);
      EXPECT_EQ(CurrentIds(), "uids 0 1003 1002, gids 0 2003 2002");
      ReportSwitch(0);
      RefuseIdCall(refused, EAGAIN);
    }
    return ReportSwitch(0);
  });
}

TEST(RunAsGuardTest, MakesNoCallForTheIdsThatAreInEffect) {
  const std::string report = RunInChild([] {
    BecomeIds({0, 1001, 1002}, {0, 2001, 2002});
    {
      const RunAsGuard guard(1001, 2001, kHere, 7);
      EXPECT_TRUE(guard);
    }
    return ReportSwitch(0);
  });
  EXPECT_EQ(report, Report({{}, {}}, 0, "uids 0 1001 1002, gids 0 2001 2002"));
}

TEST(RunAsGuardTest, RegainsRootToRestoreAnotherUser) {
  EXPECT_EQ(EndRunAsAnotherUser(0),
            Report({{kUser, kGroupBack, kUserBack}, {}}, 0, "uids 0 1001 1002, gids 0 2001 2002"));
  EXPECT_EQ(EndRunAsAnotherUser(1), Report({{kUser}, {NotRestored("1001, 2001")}}, 0,
                                           "uids 0 1003 1002, gids 0 2003 2002"));
}

TEST(RunAsGuardTest, AnotherGroupUnderTheSameUserRunsAsRootUntilTheGuardEnds) {
  const std::string report = RunInChild([] {
    BecomeIds({0, 1001, 1002}, {0, 2001, 2002});
    std::string ids;
    {
      const RunAsGuard guard(1001, 2003, kHere, 7);
      EXPECT_TRUE(guard);
      ids = CurrentIds();
    }
    return ids + "; " + CurrentIds();
  });
  EXPECT_EQ(report, "uids 0 0 1002, gids 0 2003 2002; uids 0 1001 1002, gids 0 2001 2002");
}

TEST(RunAsGuardTest, ASavedIdOfAllOnesIsNotRestored) {
  const auto end_with = [](std::optional<uid_t> uid, std::optional<gid_t> gid) {
    return RunInChild([uid, gid] {
      BecomeIds({0, 1001, 1002}, {0, 2001, 2002});
      {
        RunAsGuard guard(0, 0, kHere, 7);
        guard.saved_uid = uid.value_or(guard.saved_uid);
        guard.saved_gid = gid.value_or(guard.saved_gid);
        ReportSwitch(0);
      }
      return ReportSwitch(0);
    });
  };
  EXPECT_EQ(end_with(kAllOnes, {}),
            Report({{kGroupBack}, {}}, 0, "uids 0 0 1002, gids 0 2001 2002"));
  EXPECT_EQ(end_with({}, kAllOnes),
            Report({{kUserBack}, {}}, 0, "uids 0 1001 1002, gids 0 0 2002"));
  EXPECT_EQ(end_with(kAllOnes, kAllOnes), Report({{}, {}}, 0, "uids 0 0 1002, gids 0 0 2002"));
}

TEST(RunAsGuardTest, WithoutPrivilegesTheKernelRefuses) {
  const std::string report = RunInChild([] {
    BecomeIds({1001, 1001, 1001}, {2001, 2001, 2001});
    {
      const RunAsGuard guard(0, 0, kHere, 7);
      EXPECT_FALSE(guard);
    }
    return ReportSwitch(0);
  });
  EXPECT_EQ(report, Report({{kUser}, {kNotRoot}}, 0, "uids 1001 1001 1001, gids 2001 2001 2001"));
}

TEST(RunAsGuardTest, WhenPrivilegesAreGivenUpInsideTheKernelRefusesToRestore) {
  const std::string report = RunInChild([] {
    {
      const RunAsGuard guard(1001, 2001, kHere, 7);
      BecomeIds({1001, 1001, 1001}, {2001, 2001, 2001});
      ReportSwitch(0);
    }
    return ReportSwitch(0);
  });
  EXPECT_EQ(report, Report({{kUser}, {NotRestored("0, 0")}}, 0,
                           "uids 1001 1001 1001, gids 2001 2001 2001"));
}

TEST(IfRunAsTest, RunsTheBranchAsRequestedAndTheIdsAreBackAfterwards) {
  const std::string report = RunInChild([] {
    BecomeIds({0, 1001, 1002}, {0, 2001, 2002});
    std::string ids;
    IF_RUN_AS(0, 0) { ids = CurrentIds(); }
    else {
      ADD_FAILURE();
    }
    return ids + "; " + CurrentIds();
  });
  EXPECT_EQ(report, "uids 0 0 1002, gids 0 0 2002; uids 0 1001 1002, gids 0 2001 2002");
}

TEST(IfRunAsTest, ARefusedSwitchRunsTheElseBranchBeforeTheIdsAreRestored) {
  const std::string report = RunInChild([] {
    BecomeIds({0, 1001, 1002}, {0, 2001, 2002});
    RefuseIdCall(2, EAGAIN);
    std::string ids;
    IF_RUN_AS(0, 0) { ADD_FAILURE(); }
    else {
      ids = CurrentIds();
    }
    return ids + "; " + CurrentIds();
  });
  EXPECT_EQ(report, "uids 0 0 1002, gids 0 2001 2002; uids 0 1001 1002, gids 0 2001 2002");
}

TEST(IfRunAsTest, Nests) {
  const std::string report = RunInChild([] {
    BecomeIds({0, 1001, 1002}, {0, 2001, 2002});
    std::string ids;
    IF_RUN_AS(0, 0) {
      IF_RUN_AS(1003, 2003) { ids += CurrentIds() + "; "; }
      ids += CurrentIds() + "; ";
    }
    return ids + CurrentIds();
  });
  EXPECT_EQ(report,
            "uids 0 1003 1002, gids 0 2003 2002; uids 0 0 1002, gids 0 0 2002; "
            "uids 0 1001 1002, gids 0 2001 2002");
}

TEST(IfRunAsTest, AReturnOrAnExceptionRestoresTheIds) {
  const std::string report = RunInChild([] {
    BecomeIds({0, 1001, 1002}, {0, 2001, 2002});
    const std::string returned = [] {
      IF_RUN_AS(0, 0) { return CurrentIds(); }
      return std::string();
    }();
    EXPECT_EQ(returned, "uids 0 0 1002, gids 0 0 2002");
    const std::string after_return = CurrentIds();
    try {
      IF_RUN_AS(0, 0) { throw CurrentIds(); }
    } catch (const std::string& inside) {
      EXPECT_EQ(inside, "uids 0 0 1002, gids 0 0 2002");
    }
    return after_return + "; " + CurrentIds();
  });
  EXPECT_EQ(report, "uids 0 1001 1002, gids 0 2001 2002; uids 0 1001 1002, gids 0 2001 2002");
}

TEST(IfRunAsTest, LogLinesCarryTheLineOfTheStatement) {
  RunInChild([] {
    BecomeIds({1001, 1001, 1001}, {2001, 2001, 2001});
    const int line = __LINE__;
    IF_RUN_AS(0, 0) { ADD_FAILURE(); }
    EXPECT_EQ(test_support::TakeLog(), (Lines{kNotRoot}));
    EXPECT_EQ(test_support::TakenLineNumbers(), (std::vector<int>{line + 1}));
    return std::string();
  });
}

}  // namespace
}  // namespace dorvdl::util
