#include <dorvdl/record/user_setting.h>
#include <gtest/gtest.h>

#include <csignal>
#include <iostream>

#include "support/syslog_capture.h"

namespace dorvdl::record {
namespace {

UserSetting SettingOf(const std::string& username) {
  proto::UserSetting message;
  message.set_username(username);
  return UserSetting(message);
}

TEST(UserSettingTest, IsValidWithAUserName) {
  EXPECT_TRUE(SettingOf("alice").IsValid());
  EXPECT_TRUE(SettingOf(" ").IsValid());
  EXPECT_FALSE(SettingOf("").IsValid());
  UserSetting without_name;
  without_name.mutable_proto().set_uid(1000);
  EXPECT_FALSE(without_name.IsValid());
}

TEST(UserSettingTest, IsValidThroughItsBaseToo) {
  const UserSetting setting = SettingOf("alice");
  const RecordBase& base = setting;
  EXPECT_TRUE(base.IsValid());
}

// Shows what was logged when the process ends by abort().
void ShowLogOnAbort() {
  test_support::TakeLog();
  std::signal(SIGABRT, [](int) {
    for (const test_support::LogLine& line : test_support::TakeLog()) {
      std::cerr << line << '\n';
    }
  });
}

constexpr const char* kCritical =
    "^2 record/column_table \"A record without an integer key was asked for its key\"\n$";

TEST(UserSettingDeathTest, AskingForItsIntegerKeyEndsTheProcess) {
  EXPECT_EXIT((ShowLogOnAbort(), SettingOf("alice").primary_key()),
              testing::KilledBySignal(SIGABRT), kCritical);
}

TEST(UserSettingDeathTest, SettingItsIntegerKeyEndsTheProcess) {
  EXPECT_EXIT((ShowLogOnAbort(), SettingOf("alice").set_primary_key(1)),
              testing::KilledBySignal(SIGABRT), kCritical);
}

}  // namespace
}  // namespace dorvdl::record
