// What a task's notifications hand to the platform, with a stand-in for it.
#include <dorv/notification.h>
#include <dorvdl/record/task.h>
#include <dorvdl/record/task_status.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <locale>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/environment_calls.h"
#include "support/recording_platform.h"
#include "support/syslog_capture.h"

namespace dorvdl::record {
namespace {

using test_support::kError;
using test_support::LogLine;
using test_support::TakeLog;
using Calls = std::vector<std::string>;
using Lines = std::vector<LogLine>;

constexpr int kTime = 86400;
constexpr char kShownTime[] = "Fri Jan  2 00:00:00 1970\n";

const char kInit[] = "DorvCgiInit(\"/usr/dorv/dorvman/webman/3rdparty/Tarnwick\", {})";
const char kLoad[] = "DorvCgiLoadText({texts}, \"download\", 0)";
const char kFree[] = "DorvCgiFree({texts})";
const char kFreeZeroed[] = "DorvCgiFree({})";
const char kFreeNull[] = "VLIBCSzHashFree(nullptr)";
const char kLookUp[] = "VLIBUserRealNameGet(\"alice\", 493)";

std::string Text(const std::string& text) { return '"' + text + '"'; }

std::string Set(const std::string& key, const std::string& value) {
  return "VLIBCSzHashSetValue(" + Text(key) + ", " + Text(value) + ")";
}

std::string GetText(const std::string& key) {
  return "DorvCgiGetText({texts}, " + Text(key) + ", \"\")";
}

// The last call: which event goes out with which map.
std::string Sent(const std::string& event, const std::string& map) {
  return "DORVSendPersonalNotifiction(" + Text(event) + ", \"alice\", \"Tarnwick\", {" + map + "})";
}

Lines Line(const std::string& text) { return {{kError, "record/task", text}}; }

class TaskNotificationTest : public testing::Test {
 protected:
  TaskNotificationTest() {
    ::setenv("TZ", "UTC", 1);
    ::unsetenv("USERNAME");
    platform_.texts = {{"download_task_error", "general"}, {"download_task_disk_full", "full"}};
    task_.mutable_proto().set_username("alice");
    task_.mutable_proto().set_filename("film.mkv");
    task_.mutable_proto().set_destination("video");
    task_.mutable_proto().set_task_flags(0x4);
    task_.mutable_proto().set_status(105);
    TakeLog();
  }

  // The calls of one notification, which must be sent.
  Calls CallsOf(bool (Task::*send)(int) const) {
    EXPECT_TRUE((task_.*send)(kTime));
    EXPECT_EQ(TakeLog(), Lines{});
    return platform_.TakeCalls();
  }

  // Tells what the last call of a failure notification sent as its message.
  std::string SentMessage() {
    EXPECT_TRUE(task_.SendNotificationFailed(kTime));
    const std::string sent = platform_.TakeCalls().back();
    const std::string key = "\"%MESSAGE%\": \"";
    const std::size_t begin = sent.find(key) + key.size();
    return sent.substr(begin, sent.find('"', begin) - begin);
  }

  Task task_;
  test_support::EnvironmentCalls environment_;
  test_support::RecordingPlatform platform_;
};

TEST_F(TaskNotificationTest, ACompletedTaskIsToldWithItsShareInTheOrderOfTheKeys) {
  EXPECT_EQ(
      CallsOf(&Task::SendNotificationComplete),
      (Calls{"VLIBCSzHashAlloc(" + std::to_string(2 + 8 + 1 + 5 + 25) + ")", Set("%DLTYPE%", "BT"),
             Set("%FILENAME%", "film.mkv"), Set("%SHARE%", "video"),
             Set("%CREATEDTIME%", kShownTime), kLookUp,
             Sent("DownloadCompleted", "\"%CREATEDTIME%\": " + Text(kShownTime) +
                                           ", \"%DLTYPE%\": \"BT\", \"%FILENAME%\": \"film.mkv\", "
                                           "\"%SHARE%\": \"video\"")}));
}

TEST_F(TaskNotificationTest, ACaptchaIsAskedForWithoutTheShare) {
  EXPECT_EQ(
      CallsOf(&Task::SendNotificationCaptcha),
      (Calls{"VLIBCSzHashAlloc(" + std::to_string(2 + 8 + 1 + 25) + ")", Set("%DLTYPE%", "BT"),
             Set("%FILENAME%", "film.mkv"), Set("%CREATEDTIME%", kShownTime), kLookUp,
             Sent("DownloadCaptchaNeeded",
                  "\"%CREATEDTIME%\": " + Text(kShownTime) +
                      ", \"%DLTYPE%\": \"BT\", \"%FILENAME%\": \"film.mkv\"")}));
}

TEST_F(TaskNotificationTest, AFailedTaskIsToldWithTheMessageOfItsStatusAndWithoutTheShare) {
  EXPECT_EQ(
      CallsOf(&Task::SendNotificationFailed),
      (Calls{kInit, kLoad, GetText("download_task_disk_full"), kFree,
             "VLIBCSzHashAlloc(" + std::to_string(2 + 8 + 1 + 4 + 25) + ")", Set("%DLTYPE%", "BT"),
             Set("%FILENAME%", "film.mkv"), Set("%MESSAGE%", "full"),
             Set("%CREATEDTIME%", kShownTime), kLookUp,
             Sent("DownloadFailed", "\"%CREATEDTIME%\": " + Text(kShownTime) +
                                        ", \"%DLTYPE%\": \"BT\", \"%FILENAME%\": \"film.mkv\", "
                                        "\"%MESSAGE%\": \"full\"")}));
}

TEST_F(TaskNotificationTest, TheSizeOfTheMapCountsBytes) {
  task_.mutable_proto().set_filename("ü");
  EXPECT_EQ(CallsOf(&Task::SendNotificationCaptcha).front(),
            "VLIBCSzHashAlloc(" + std::to_string(2 + 2 + 1 + 25) + ")");
}

TEST_F(TaskNotificationTest, AnUnknownTypeGoesOutInCapitals) {
  task_.mutable_proto().set_task_flags(0);
  for (const auto send : {&Task::SendNotificationComplete, &Task::SendNotificationCaptcha,
                          &Task::SendNotificationFailed}) {
    EXPECT_THAT(CallsOf(send), testing::Contains(Set("%DLTYPE%", "UNKNOWN")));
  }
}

TEST_F(TaskNotificationTest, TheTimeIsTheCallersInLocalTime) {
  ::setenv("TZ", "UTC-9", 1);
  task_.mutable_proto().set_created_time(1);
  EXPECT_THAT(CallsOf(&Task::SendNotificationCaptcha),
              testing::Contains(Set("%CREATEDTIME%", "Fri Jan  2 09:00:00 1970\n")));
}

TEST_F(TaskNotificationTest, ATimeThatCannotBeShownIsEmpty) {
  environment_.asctime_fails = true;
  const Calls calls = CallsOf(&Task::SendNotificationCaptcha);
  EXPECT_EQ(calls.front(), "VLIBCSzHashAlloc(" + std::to_string(2 + 8 + 1) + ")");
  EXPECT_EQ(calls[3], Set("%CREATEDTIME%", ""));
}

TEST_F(TaskNotificationTest, TheFailureNamesTheUserInTheEnvironmentAndLeavesItThere) {
  ::setenv("USERNAME", "bob", 1);
  std::vector<std::string> seen;
  platform_.on_call = [&seen](const std::string& name) {
    if (name == "DorvCgiInit") {
      seen.emplace_back(std::getenv("USERNAME"));
    }
  };
  task_.SendNotificationComplete(kTime);
  EXPECT_STREQ(std::getenv("USERNAME"), "bob");
  task_.SendNotificationFailed(kTime);
  EXPECT_EQ(seen, std::vector<std::string>{"alice"});
  EXPECT_STREQ(std::getenv("USERNAME"), "alice");
}

// Fails at the letter "k", after those before it have been converted.
class CannotConvertK : public std::ctype<char> {
 protected:
  char do_toupper(char letter) const override {
    if (letter == 'k') {
      throw std::runtime_error("no capital for it");
    }
    return std::ctype<char>::do_toupper(letter);
  }
};

TEST_F(TaskNotificationTest, AFailedConversionToCapitalsIsLoggedAndTheTypeStandsAsItIs) {
  task_.mutable_proto().set_task_flags(0);
  const std::locale before = std::locale::global(std::locale(std::locale(), new CannotConvertK));
  EXPECT_TRUE(task_.SendNotificationCaptcha(kTime));
  std::locale::global(before);
  EXPECT_THAT(platform_.TakeCalls(), testing::Contains(Set("%DLTYPE%", "UNknown")));
  EXPECT_EQ(TakeLog(), Line("Failed to convert to upper case [no capital for it]"));
}

// Fails at every letter.
class CannotConvert : public std::ctype<char> {
 protected:
  char do_toupper(char) const override { throw std::runtime_error("no"); }
};

TEST_F(TaskNotificationTest, OnlyAnUnconvertedUnknownTypeIsLeftOutAndNotForACaptcha) {
  task_.mutable_proto().set_task_flags(0);
  const std::locale before = std::locale::global(std::locale(std::locale(), new CannotConvert));
  task_.SendNotificationComplete(kTime);
  const Calls complete = platform_.TakeCalls();
  task_.SendNotificationFailed(kTime);
  const Calls failed = platform_.TakeCalls();
  task_.SendNotificationCaptcha(kTime);
  const Calls captcha = platform_.TakeCalls();
  std::locale::global(before);
  EXPECT_THAT(complete, testing::Contains(Set("%DLTYPE%", "")));
  EXPECT_THAT(failed, testing::Contains(Set("%DLTYPE%", "")));
  EXPECT_THAT(captcha, testing::Contains(Set("%DLTYPE%", "unknown")));
}

TEST_F(TaskNotificationTest, AMapThatCannotBeMadeIsReleasedAllTheSame) {
  platform_.alloc_hash = false;
  EXPECT_FALSE(task_.SendNotificationCaptcha(kTime));
  EXPECT_EQ(platform_.TakeCalls(), (Calls{"VLIBCSzHashAlloc(36)", kFreeNull}));
  EXPECT_EQ(TakeLog(), Line("Failed to do VLIBCSzHashAlloc(36)"));
}

TEST_F(TaskNotificationTest, AFailedMapLeavesTheTextsReleased) {
  platform_.alloc_hash = false;
  EXPECT_FALSE(task_.SendNotificationFailed(kTime));
  EXPECT_EQ(platform_.TakeCalls(), (Calls{kInit, kLoad, GetText("download_task_disk_full"), kFree,
                                          "VLIBCSzHashAlloc(40)", kFreeNull}));
  EXPECT_EQ(TakeLog(), Line("Failed to do VLIBCSzHashAlloc(40)"));
}

struct Event {
  bool (Task::*send)(int) const;
  std::vector<std::string> keys;
};

TEST_F(TaskNotificationTest, TheFirstRefusedPairEndsItAndNothingIsSentOrReleased) {
  const std::vector<Event> events = {
      {&Task::SendNotificationComplete, {"%DLTYPE%", "%FILENAME%", "%SHARE%", "%CREATEDTIME%"}},
      {&Task::SendNotificationCaptcha, {"%DLTYPE%", "%FILENAME%", "%CREATEDTIME%"}},
      {&Task::SendNotificationFailed, {"%DLTYPE%", "%FILENAME%", "%MESSAGE%", "%CREATEDTIME%"}},
  };
  for (const Event& event : events) {
    for (const std::string& key : event.keys) {
      platform_.refused_hash_key = key;
      EXPECT_FALSE((task_.*event.send)(kTime));
      const Calls calls = platform_.TakeCalls();
      EXPECT_EQ(calls.back().rfind("VLIBCSzHashSetValue(" + Text(key), 0), 0U) << calls.back();
      EXPECT_EQ(TakeLog(), Line("Failed to set hash value"));
    }
  }
}

TEST_F(TaskNotificationTest, AMapThatIsLostWithAPairIsReleasedAllTheSame) {
  platform_.refused_hash_key = "%FILENAME%";
  platform_.refusal_loses_hash = true;
  EXPECT_FALSE(task_.SendNotificationCaptcha(kTime));
  EXPECT_EQ(platform_.TakeCalls(), (Calls{"VLIBCSzHashAlloc(36)", Set("%DLTYPE%", "BT"),
                                          Set("%FILENAME%", "film.mkv"), kFreeNull}));
  EXPECT_EQ(TakeLog(), Line("Failed to set hash value"));
}

TEST_F(TaskNotificationTest, OnlyMinusOneRefusesAPair) {
  for (const int answer : {0, 1, -2}) {
    platform_.set_hash_value = answer;
    CallsOf(&Task::SendNotificationComplete);
  }
}

TEST_F(TaskNotificationTest, AUserWithoutARealNameGetsNothing) {
  platform_.get_real_name = 1;
  EXPECT_FALSE(task_.SendNotificationCaptcha(kTime));
  EXPECT_EQ(platform_.TakeCalls().back(), kLookUp);
  EXPECT_EQ(TakeLog(), Line("Failed to get real name for alice"));
}

TEST_F(TaskNotificationTest, TheRealNameIsAddressedAndNamedWhenThePlatformRefuses) {
  platform_.real_name = "Alice";
  platform_.send_notification = 28;
  EXPECT_FALSE(SendNotification("E", "alice", nullptr));
  EXPECT_EQ(
      platform_.TakeCalls(),
      (Calls{kLookUp, "DORVSendPersonalNotifiction(\"E\", \"Alice\", \"Tarnwick\", nullptr)"}));
  EXPECT_EQ(TakeLog(), Line("Failed to send notification event for user [Alice], ret=28"));
}

TEST_F(TaskNotificationTest, TheBufferForTheRealNameIsZeroed) {
  platform_.leaves_name_alone = true;
  EXPECT_TRUE(SendNotification("E", "alice", nullptr));
  EXPECT_EQ(platform_.TakeCalls().back(),
            "DORVSendPersonalNotifiction(\"E\", \"\", \"Tarnwick\", nullptr)");
}

TEST_F(TaskNotificationTest, NamesAreNoFormats) {
  platform_.get_real_name = -1;
  EXPECT_FALSE(SendNotification("E", "%s%n", nullptr));
  EXPECT_EQ(TakeLog(), Line("Failed to get real name for %s%n"));
}

TEST_F(TaskNotificationTest, AValueWithANulIsNotCutButRefused) {
  const std::string cut("film\0.mkv", 9);
  task_.mutable_proto().set_filename(cut);
  EXPECT_FALSE(task_.SendNotificationComplete(kTime));
  EXPECT_EQ(TakeLog(), Line("Failed to set hash value"));

  EXPECT_FALSE(SendNotification("E", std::string("alice\0x", 7), nullptr));
  EXPECT_EQ(TakeLog(), Line("Failed to get real name for alice"));
  platform_.TakeCalls();
  EXPECT_FALSE(SendNotification(std::string("E\0x", 3), "alice", nullptr));
  EXPECT_EQ(platform_.TakeCalls(), Calls{kLookUp});
  EXPECT_EQ(TakeLog(), Line("Failed to send notification event for user [alice], ret=22"));
}

TEST_F(TaskNotificationTest, AUserThatCannotBeNamedInTheEnvironmentGetsAnEmptyMessage) {
  environment_.setenv_error = ENOMEM;
  EXPECT_EQ(SentMessage(), "");
  EXPECT_EQ(TakeLog(), Line("Failed to setenv [Cannot allocate memory]"));
  task_.SendNotificationFailed(kTime);
  EXPECT_EQ(platform_.TakeCalls().front(), kFreeZeroed);
  environment_.setenv_error = 0;
  TakeLog();

  task_.mutable_proto().set_username(std::string("a\0b", 3));
  EXPECT_FALSE(task_.SendNotificationFailed(kTime));
  EXPECT_EQ(std::getenv("USERNAME"), nullptr);
  EXPECT_EQ(TakeLog(), (Lines{{kError, "record/task", "Failed to setenv [Invalid argument]"},
                              {kError, "record/task", "Failed to get real name for a"}}));
}

TEST_F(TaskNotificationTest, WithoutTextsTheMessageIsEmpty) {
  platform_.init_texts = 0;
  EXPECT_EQ(SentMessage(), "");
  EXPECT_EQ(TakeLog(), Line("Failed to do init dorvcgi"));
  task_.SendNotificationFailed(kTime);
  const Calls calls = platform_.TakeCalls();
  EXPECT_EQ((Calls{calls[0], calls[1], calls[2]}),
            (Calls{kInit, kFreeZeroed, "VLIBCSzHashAlloc(36)"}));
}

TEST_F(TaskNotificationTest, WithoutTheSectionTheMessageIsEmpty) {
  platform_.load_text = 0;
  EXPECT_EQ(SentMessage(), "");
  EXPECT_EQ(TakeLog(), Line("Failed to load text"));
  task_.SendNotificationFailed(kTime);
  const Calls calls = platform_.TakeCalls();
  EXPECT_EQ((Calls{calls[0], calls[1], calls[2]}), (Calls{kInit, kLoad, kFree}));
}

TEST_F(TaskNotificationTest, WithoutTheTextTheMessageIsEmptyAndNothingIsLogged) {
  platform_.texts.clear();
  EXPECT_EQ(SentMessage(), "");
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(TaskNotificationTest, AStatusWithoutANameIsLoggedAndToldAsTheGeneralError) {
  for (const int status : {-1, 0, 16, 100, 131}) {
    task_.mutable_proto().set_status(status);
    EXPECT_EQ(SentMessage(), "general") << status;
    EXPECT_EQ(TakeLog(), Line("Failed to get section and key [" + std::to_string(status) + "]"));
  }
}

TEST_F(TaskNotificationTest, EveryOtherStatusIsLookedUpUnderItsNameAndNothingIsLogged) {
  struct Codes {
    int first;
    int last;
  };
  for (const auto [first, last] : {Codes{1, 15}, Codes{101, 130}}) {
    for (int status = first; status <= last; ++status) {
      task_.mutable_proto().set_status(status);
      const Calls calls = CallsOf(&Task::SendNotificationFailed);
      const StatusName name = GetStatusName(status);
      EXPECT_EQ(calls[1], std::string("DorvCgiLoadText({texts}, ") + Text(name.section) + ", 0)");
      EXPECT_EQ(calls[2], GetText(name.key));
    }
  }
}

}  // namespace
}  // namespace dorvdl::record
