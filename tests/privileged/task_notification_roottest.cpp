// A task's notifications on the portable platform, with the shipped texts: what lands in the spool.
#include <dorv/notification_spool.h>
#include <dorvdl/record/task.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/mount_namespace.h"
#include "support/syslog_capture.h"

namespace dorvdl::record {
namespace {

namespace fs = std::filesystem;
using common::KeptNotification;
using test_support::LogLine;
using test_support::TakeLog;
using testing::EndsWith;
using testing::StartsWith;

constexpr char kPackage[] = "/usr/dorv/dorvman/webman/3rdparty/Tarnwick";
constexpr int kTime = 86400;

class TaskNotificationTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    test_support::EnterPlatformNamespace();
    fs::create_directories(kPackage);
    fs::create_directory_symlink(DORVDL_TEST_SOURCE_DIR "/platform/texts",
                                 std::string(kPackage) + "/texts");
    fs::create_directories("/var/lib/tarnwick/users");
    fs::create_directories("/var/spool/tarnwick");
    setenv("TZ", "UTC", 1);
  }

  TaskNotificationTest() {
    fs::remove_all("/var/spool/tarnwick/notifications");
    Choose("en");
    task_.mutable_proto().set_username("alice");
    task_.mutable_proto().set_filename("film.mkv");
    task_.mutable_proto().set_destination("video");
    task_.mutable_proto().set_task_flags(0x4);
    task_.mutable_proto().set_status(105);
    TakeLog();
  }

  static void Choose(const std::string& language) {
    std::ofstream("/var/lib/tarnwick/users/alice") << "language=" << language << '\n';
  }

  // The only notification that is kept.
  static KeptNotification Kept() {
    const auto kept = common::ListKeptNotifications();
    EXPECT_TRUE(kept && kept->size() == 1);
    return kept && !kept->empty() ? kept->front() : KeptNotification();
  }

  Task task_;
};

TEST_F(TaskNotificationTest, ACompletedTaskIsKeptForItsOwner) {
  EXPECT_TRUE(task_.SendNotificationComplete(kTime));
  EXPECT_EQ(TakeLog(), std::vector<LogLine>{});
  const KeptNotification kept = Kept();
  EXPECT_EQ(kept.event, "DownloadCompleted");
  EXPECT_EQ(kept.application, "Tarnwick");
  EXPECT_EQ(kept.user, "alice");
  EXPECT_THAT(kept.message, StartsWith("film.mkv (BT)"));
  EXPECT_THAT(kept.message, EndsWith("Fri Jan  2 00:00:00 1970\n"));
  EXPECT_EQ(kept.placeholders.at("%SHARE%"), "video");
}

TEST_F(TaskNotificationTest, AFailureIsToldInTheOwnersLanguage) {
  Choose("de");
  EXPECT_TRUE(task_.SendNotificationFailed(kTime));
  EXPECT_EQ(TakeLog(), std::vector<LogLine>{});
  const KeptNotification kept = Kept();
  EXPECT_EQ(kept.title, "Download fehlgeschlagen");
  EXPECT_THAT(kept.placeholders.at("%MESSAGE%"),
              StartsWith("Auf dem Volume ist nicht genug Platz"));
  EXPECT_THAT(kept.message, testing::HasSubstr(kept.placeholders.at("%MESSAGE%")));
}

TEST_F(TaskNotificationTest, ACaptchaIsAskedFor) {
  EXPECT_TRUE(task_.SendNotificationCaptcha(kTime));
  EXPECT_EQ(Kept().event, "DownloadCaptchaNeeded");
}

TEST_F(TaskNotificationTest, EveryStatusHasATextInBothLanguages) {
  for (const char* const language : {"en", "de"}) {
    Choose(language);
    for (int status = -1; status <= 131; ++status) {
      fs::remove_all("/var/spool/tarnwick/notifications");
      task_.mutable_proto().set_status(status);
      EXPECT_TRUE(task_.SendNotificationFailed(kTime));
      EXPECT_NE(Kept().placeholders["%MESSAGE%"], "") << language << ' ' << status;
    }
  }
}

TEST_F(TaskNotificationTest, AnUnknownUserAndOddNamesGetNothingButALine) {
  for (const std::string& user : {std::string("nobody-of-that-name"), std::string("../alice"),
                                  std::string("%s%n"), std::string(10000, 'a'), std::string()}) {
    task_.mutable_proto().set_username(user);
    EXPECT_FALSE(task_.SendNotificationFailed(kTime));
    const std::vector<LogLine> log = TakeLog();
    ASSERT_EQ(log.size(), 1U);
    EXPECT_EQ(log[0], (LogLine{test_support::kError, "record/task",
                               "Failed to get real name for " + user}));
    EXPECT_TRUE(common::ListKeptNotifications().value().empty());
  }
}

}  // namespace
}  // namespace dorvdl::record
