// The switch of ids around the question about the quota.
#include <dorvdl/file.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

#include "support/child.h"
#include "support/identity.h"
#include "support/recording_platform.h"
#include "support/switch_report.h"
#include "support/syslog_capture.h"

namespace test_support {
namespace {

const SwitchSteps kStep("file", {0, 1001, 1002}, {0, 2001, 2002});
const Switch kThereAndBack = kStep.to_root + kStep.back;

// Runs the check as someone who is not root but may become it. Returns the result, errno, and the
// ids while the service was asked and afterwards, if it was asked.
std::string Check(int refused_call, int is_admin, int is_enough, const Switch& expected) {
  return RunInChild([=, &expected] {
    RecordingPlatform platform;
    platform.is_admin = is_admin;
    platform.quota_is_enough = is_enough;
    std::string asked_as = "nobody";
    platform.on_call = [&asked_as](const std::string& name) {
      if (name == "DORVQuotaIsEnough") {
        asked_as = CurrentIds();
        errno = ENOENT;
      }
    };
    BecomeIds({0, 1001, 1002}, {0, 2001, 2002});
    RefuseIdCall(refused_call, EAGAIN);
    errno = 0;
    const int result = DORVDLQuotaCheck(1026, "/volume1", 5);
    const int error = errno;
    EXPECT_EQ(TakeIdCalls(), expected.calls);
    EXPECT_EQ(TakeLog(), expected.lines);
    for (const int line : TakenLineNumbers()) {
      EXPECT_EQ(line, TakenLineNumbers().front()) << "both steps log one line number";
    }
    return std::to_string(result) + ", errno " + std::to_string(error) + ", asked as " + asked_as +
           ", then " + CurrentIds();
  });
}

TEST(QuotaCheckTest, TheServiceIsAskedAsRootAndTheIdsAreBackAfterwards) {
  EXPECT_EQ(Check(0, 0, 1, kThereAndBack),
            "0, errno 0, asked as uids 0 0 1002, gids 0 0 2002, "
            "then uids 0 1001 1002, gids 0 2001 2002");
  EXPECT_EQ(Check(0, 0, 0, kThereAndBack),
            "-1, errno 0, asked as uids 0 0 1002, gids 0 0 2002, "
            "then uids 0 1001 1002, gids 0 2001 2002");
}

TEST(QuotaCheckTest, AnAdministratorsAnswerComesBeforeAnySwitch) {
  EXPECT_EQ(Check(0, 1, 0, {}),
            "0, errno 0, asked as nobody, then uids 0 1001 1002, gids 0 2001 2002");
}

TEST(QuotaCheckTest, TheServiceIsAskedAlsoWhenTheSwitchIsRefused) {
  EXPECT_EQ(Check(1, 0, 1, kStep.Refused("setresgid(-1, 0, -1)") + kStep.not_entered + kStep.left),
            "0, errno 0, asked as uids 0 1001 1002, gids 0 2001 2002, "
            "then uids 0 1001 1002, gids 0 2001 2002");
}

TEST(QuotaCheckTest, ARefusedWayBackDoesNotChangeTheAnswer) {
  const Switch made = kStep.to_root + kStep.user_stays_root +
                      kStep.Refused("setresgid(-1, 2001, -1)") + kStep.not_left;
  EXPECT_EQ(Check(4, 0, 1, made),
            "0, errno 1, asked as uids 0 0 1002, gids 0 0 2002, "
            "then uids 0 0 1002, gids 0 0 2002");
}

TEST(QuotaCheckTest, RootIsNotSwitched) {
  EXPECT_EQ(RunInChild([] {
              RecordingPlatform platform;
              BecomeIds({0, 0, 0}, {0, 0, 0});
              const int result = DORVDLQuotaCheck(1026, "/volume1", 5);
              EXPECT_EQ(TakeIdCalls(), std::vector<std::string>{});
              EXPECT_EQ(TakeLog(), (kStep.entered + kStep.left).lines);
              return std::to_string(result);
            }),
            "0");
}

}  // namespace
}  // namespace test_support
