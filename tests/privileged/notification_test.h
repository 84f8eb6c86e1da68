// What the tests of sent and kept notifications have in common: templates, users and a spool folder
// of the test's own.
#ifndef TESTS_PRIVILEGED_NOTIFICATION_TEST_H_
#define TESTS_PRIVILEGED_NOTIFICATION_TEST_H_

#include <dorv/notification.h>
#include <dorv/notification_spool.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "support/mount_namespace.h"
#include "support/syslog_capture.h"

namespace dorvdl::common {

constexpr char kApplications[] = "/usr/dorv/dorvman/webman/3rdparty/";
constexpr char kSpoolParent[] = "/var/spool/tarnwick";
constexpr char kSpool[] = "/var/spool/tarnwick/notifications";
constexpr char kTemplates[] =
    "[Done]\ntitle=%FILENAME% is done\nmessage=%FILENAME% (%DLTYPE%) went to %SHARE%, 100% of it\n"
    "[NoTitle]\nmessage=x\n"
    "[NoMessage]\ntitle=x\n";

using Hash = std::unique_ptr<VLIBSZHASH, decltype(&VLIBCSzHashFree)>;

inline Hash MakeHash(const std::map<std::string, std::string>& pairs) {
  VLIBSZHASH* hash = VLIBCSzHashAlloc(0);
  for (const auto& [key, value] : pairs) {
    EXPECT_NE(VLIBCSzHashSetValue(&hash, key.c_str(), value.c_str()), -1);
  }
  return {hash, &VLIBCSzHashFree};
}

inline int Send(const std::string& event, const std::string& user = "alice",
                const std::string& application = "App",
                const std::map<std::string, std::string>& placeholders = {}) {
  return DORVSendPersonalNotifiction(event.c_str(), user.c_str(), application.c_str(),
                                     MakeHash(placeholders).get());
}

class NotificationTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    test_support::EnterPlatformNamespace();
    umask(022);
  }

  NotificationTest() {
    std::filesystem::create_directories(kSpoolParent);
    std::filesystem::create_directories("/var/lib/tarnwick/users");
    WriteTemplates("en", kTemplates);
    test_support::TakeLog();
  }
  ~NotificationTest() override {
    for (const char* const folder : {kApplications, kSpoolParent, "/var/lib/tarnwick"}) {
      std::filesystem::remove_all(folder);
    }
  }

  static void WriteTemplates(const std::string& language, const std::string& templates) {
    const std::string folder = kApplications + ("App/texts/" + language);
    std::filesystem::create_directories(folder);
    std::ofstream(folder + "/notifications") << templates;
  }

  static std::vector<KeptNotification> Kept() {
    const auto kept = ListKeptNotifications();
    EXPECT_TRUE(kept) << errno;
    return kept.value_or(std::vector<KeptNotification>());
  }

  // Everything that lies in the spool folder, hidden files included.
  static std::vector<std::filesystem::path> Files() {
    return {std::filesystem::directory_iterator(kSpool), std::filesystem::directory_iterator()};
  }

  // The one line that a failure logs; the call left nothing behind.
  static std::string Failure() {
    if (std::filesystem::exists(kSpool)) {
      EXPECT_THAT(Files(), testing::IsEmpty());
    }
    const auto log = test_support::TakeLog();
    EXPECT_THAT(log, testing::SizeIs(1));
    if (log.empty()) {
      return "";
    }
    EXPECT_EQ(log[0].priority, test_support::kError);
    EXPECT_EQ(log[0].source, "platform/notification");
    const std::string before = "Failed to send a notification: ";
    EXPECT_EQ(log[0].text.substr(0, before.size()), before);
    return log[0].text.substr(before.size());
  }
};

}  // namespace dorvdl::common

#endif  // TESTS_PRIVILEGED_NOTIFICATION_TEST_H_
