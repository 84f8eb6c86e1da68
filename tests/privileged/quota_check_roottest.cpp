// The switch of ids around the question about the quota.
#include <dorvdl/file.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "support/child.h"
#include "support/identity.h"
#include "support/recording_platform.h"
#include "support/syslog_capture.h"

namespace test_support {
namespace {

using Lines = std::vector<LogLine>;

LogLine Line(int priority, const std::string& text) { return {priority, "file", text}; }

const LogLine kEntered = Line(kAuthInfo, "ENTERCriticalSection");
const LogLine kLeft = Line(kAuthInfo, "LEAVECriticalSection");

// What the switch does from the effective ids 1001 and 2001.
const Lines kSwitch = {
    Line(kAuthInfo, "WARNING: setresgid(-1, 0, -1)"),
    Line(kAuthDebug, "setresgid: (0, 2001, 2002) -> (0, 0, 2002)"),
    Line(kAuthInfo, "WARNING: setresuid(-1, 0, -1)"),
    Line(kAuthDebug, "setresuid: (0, 1001, 1002) -> (0, 0, 1002)"),
    kEntered,
    Line(kAuthInfo, "WARNING: setresuid(-1, 0, -1)"),
    Line(kAuthDebug, "setresuid: (0, 0, 1002) -> (0, 0, 1002)"),
    Line(kAuthDebug, "setresgid: (0, 0, 2002) -> (0, 2001, 2002)"),
    Line(kAuthDebug, "setresuid: (0, 0, 1002) -> (0, 1001, 1002)"),
    kLeft,
};

// Runs the check as someone who is not root but may become it. Returns the result, errno, and the
// ids while the service was asked and afterwards, if it was asked.
std::string Check(int refused_call, int is_admin, int is_enough, Lines expected) {
  return RunInChild([=] {
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
    EXPECT_EQ(TakeLog(), expected);
    for (const int line : TakenLineNumbers()) {
      EXPECT_EQ(line, TakenLineNumbers().front()) << "both steps log one line number";
    }
    return std::to_string(result) + ", errno " + std::to_string(error) + ", asked as " + asked_as +
           ", then " + CurrentIds();
  });
}

TEST(QuotaCheckTest, TheServiceIsAskedAsRootAndTheIdsAreBackAfterwards) {
  EXPECT_EQ(Check(0, 0, 1, kSwitch),
            "0, errno 0, asked as uids 0 0 1002, gids 0 0 2002, "
            "then uids 0 1001 1002, gids 0 2001 2002");
  EXPECT_EQ(Check(0, 0, 0, kSwitch),
            "-1, errno 0, asked as uids 0 0 1002, gids 0 0 2002, "
            "then uids 0 1001 1002, gids 0 2001 2002");
}

TEST(QuotaCheckTest, AnAdministratorsAnswerComesBeforeAnySwitch) {
  EXPECT_EQ(Check(0, 1, 0, {}),
            "0, errno 0, asked as nobody, then uids 0 1001 1002, gids 0 2001 2002");
}

TEST(QuotaCheckTest, TheServiceIsAskedAlsoWhenTheSwitchIsRefused) {
  const Lines refused = {
      Line(kAuthError, "ERROR: setresgid(-1, 0, -1) [Resource temporarily unavailable]"),
      Line(kAuthError, "ERROR: ENTERCriticalSection"),
      kLeft,
  };
  EXPECT_EQ(Check(1, 0, 1, refused),
            "0, errno 0, asked as uids 0 1001 1002, gids 0 2001 2002, "
            "then uids 0 1001 1002, gids 0 2001 2002");
}

TEST(QuotaCheckTest, ARefusedWayBackDoesNotChangeTheAnswer) {
  Lines lines(kSwitch.begin(), kSwitch.begin() + 7);
  lines.push_back(Line(kAuthError,
                       "ERROR: setresgid(-1, 2001, -1) "
                       "[Resource temporarily unavailable]"));
  lines.push_back(Line(kAuthError, "ERROR: LEAVECriticalSection"));
  EXPECT_EQ(Check(4, 0, 1, lines),
            "0, errno 1, asked as uids 0 0 1002, gids 0 0 2002, "
            "then uids 0 0 1002, gids 0 0 2002");
}

TEST(QuotaCheckTest, RootIsNotSwitched) {
  EXPECT_EQ(RunInChild([] {
              RecordingPlatform platform;
              BecomeIds({0, 0, 0}, {0, 0, 0});
              const int result = DORVDLQuotaCheck(1026, "/volume1", 5);
              EXPECT_EQ(TakeIdCalls(), std::vector<std::string>{});
              EXPECT_EQ(TakeLog(), (Lines{kEntered, kLeft}));
              return std::to_string(result);
            }),
            "0");
}

}  // namespace
}  // namespace test_support
