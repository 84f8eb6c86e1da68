// Notifications that are sent: what a user is told, and what is refused.
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <pwd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "privileged/notification_test.h"
#include "support/identity.h"
#include "support/syslog_capture.h"

namespace {
int account_error = 0;  // 0: the account database can be read
}  // namespace

extern "C" __attribute__((visibility("default"))) int getpwnam_r(const char* name, passwd* entry,
                                                                 char* texts, std::size_t size,
                                                                 passwd** found) {
  const auto real = reinterpret_cast<decltype(&getpwnam_r)>(dlsym(RTLD_NEXT, "getpwnam_r"));
  return account_error != 0 ? account_error : real(name, entry, texts, size, found);
}

namespace dorvdl::common {
namespace {

namespace fs = std::filesystem;
using test_support::TakeLog;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

TEST_F(NotificationTest, IsKeptWithItsPlaceholdersFilledIn) {
  const std::map<std::string, std::string> placeholders = {
      {"%FILENAME%", "disk.iso"}, {"%DLTYPE%", "BT"}, {"%SHARE%", "media"}};
  const auto before = std::time(nullptr);
  ASSERT_EQ(Send("Done", "alice", "App", placeholders), 0);
  const auto kept = Kept();
  ASSERT_THAT(kept, SizeIs(1));
  EXPECT_EQ(kept[0].event, "Done");
  EXPECT_EQ(kept[0].application, "App");
  EXPECT_EQ(kept[0].user, "alice");
  EXPECT_EQ(kept[0].title, "disk.iso is done");
  EXPECT_EQ(kept[0].message, "disk.iso (BT) went to media, 100% of it");
  EXPECT_GE(kept[0].created, before);
  EXPECT_LE(kept[0].created, std::time(nullptr));
  EXPECT_EQ(kept[0].placeholders, placeholders);
  EXPECT_THAT(TakeLog(), IsEmpty());
}

TEST_F(NotificationTest, ValuesAreNeverTakenForPlaceholders) {
  ASSERT_EQ(
      Send("Done", "alice", "App",
           {{"%FILENAME%", "%SHARE% %FILENAME%"}, {"%SHARE%", "%"}, {"%DLTYPE%", "FILENAME%"}}),
      0);
  EXPECT_EQ(Kept()[0].title, "%SHARE% %FILENAME% is done");
  EXPECT_EQ(Kept()[0].message, "%SHARE% %FILENAME% (FILENAME%) went to %, 100% of it");
}

TEST_F(NotificationTest, OnlyKeysBetweenPercentSignsAreReplaced) {
  WriteTemplates("en", "[Done]\ntitle=A %A% %%A%% %B% % A%A%\nmessage=%\n");
  ASSERT_EQ(Send("Done", "alice", "App", {{"%A%", "x"}, {"A", "y"}, {"%", "z"}, {"% A%", "w"}}), 0);
  EXPECT_EQ(Kept()[0].title, "A x %x% %B% wA%");
  EXPECT_EQ(Kept()[0].message, "%");
}

TEST_F(NotificationTest, MayHaveNoPlaceholders) {
  EXPECT_EQ(DORVSendPersonalNotifiction("Done", "alice", "App", nullptr), 0);
  EXPECT_EQ(Kept()[0].title, "%FILENAME% is done");
  EXPECT_THAT(Kept()[0].placeholders, IsEmpty());
}

TEST_F(NotificationTest, EveryTextComesBackAsItWas) {
  const std::map<std::string, std::string> placeholders = {
      {"%FILENAME%", "Ä\xff\xc3 \"quoted\" \\ \x01 </script>\n"},
      {"%SHARE%", std::string(20000, 's')},
      {"", ""}};
  ASSERT_EQ(Send("Done", "alice", "App", placeholders), 0);
  EXPECT_EQ(Kept()[0].placeholders, placeholders);
  EXPECT_EQ(Kept()[0].title, placeholders.at("%FILENAME%") + " is done");
}

TEST_F(NotificationTest, SpeaksTheLanguageOfItsUser) {
  WriteTemplates("de", "[Done]\ntitle=%FILENAME% ist fertig\n");
  std::ofstream("/var/lib/tarnwick/users/bob") << "language=de\n";
  setenv("USERNAME", "alice", 1);
  ASSERT_EQ(Send("Done", "bob"), 0);
  ASSERT_EQ(Send("Done", "alice"), 0);
  EXPECT_EQ(Kept()[0].title, "%FILENAME% ist fertig");
  EXPECT_THAT(Kept()[0].message, HasSubstr("went to"));  // the German template lacks it
  EXPECT_EQ(Kept()[1].title, "%FILENAME% is done");
}

TEST_F(NotificationTest, SwitchesNoIds) {
  test_support::TakeIdCalls();
  EXPECT_EQ(Send("Done"), 0);
  EXPECT_EQ(Send("Done", "carol"), ESRCH);
  EXPECT_THAT(test_support::TakeIdCalls(), IsEmpty());
}

TEST_F(NotificationTest, NeedsATemplate) {
  EXPECT_EQ(Send("Undone"), ENOENT);
  EXPECT_EQ(Failure(), "template of event Undone: No such file or directory");
  EXPECT_EQ(Send("Done", "alice", "Other"), ENOENT);
  EXPECT_EQ(Failure(),
            kApplications + std::string("Other/texts/en/notifications: No such file or directory"));
  for (const std::string event : {"NoTitle", "NoMessage", "%s%n", "Done]"}) {
    EXPECT_EQ(Send(event), ENOENT) << event;
    EXPECT_THAT(Failure(), HasSubstr(event));
  }
  EXPECT_EQ(Send(std::string(10000, 'e')), ENOENT);
  EXPECT_THAT(Failure(), HasSubstr("No such file"));
}

TEST_F(NotificationTest, DoesNotGoOutFromHalfWrittenTemplates) {
  WriteTemplates("en", "[Done]\ntitle=x\nmessage=%FILEN");
  EXPECT_EQ(Send("Done"), EBADMSG);
  EXPECT_THAT(Failure(), HasSubstr("cut short"));
}

TEST_F(NotificationTest, NeedsAKnownUser) {
  EXPECT_EQ(Send("Done", "carol"), ESRCH);
  EXPECT_EQ(Failure(), "user carol: No such process");
  for (const std::string& user : {std::string("%s%n"), std::string(10000, 'u')}) {
    EXPECT_EQ(Send("Done", user), ESRCH);
    EXPECT_THAT(Failure(), HasSubstr(user));
  }
}

TEST_F(NotificationTest, GoesToTheAccountThatIsMeant) {
  std::ofstream("/var/lib/tarnwick/users/alice") << "language=de\n";
  WriteTemplates("de", "[Done]\ntitle=fertig\n");
  ASSERT_EQ(Send("Done", "ALICE"), 0);
  EXPECT_EQ(Kept()[0].user, "alice");
  EXPECT_EQ(Kept()[0].title, "fertig");
}

TEST_F(NotificationTest, AnAccountDatabaseThatCannotBeReadIsNoUnknownUser) {
  account_error = EIO;
  EXPECT_EQ(Send("Done"), EIO);
  account_error = 0;
  EXPECT_EQ(Failure(), "account database: Input/output error");
}

TEST_F(NotificationTest, NamesNeverLeadToOtherPaths) {
  for (const std::string name :
       {"", ".", "..", "../App", "a/b", "/App", "App/", ".App", "a\nb", "a\x7f", "\t"}) {
    for (const int result : {Send(name), Send("Done", name), Send("Done", "alice", name)}) {
      EXPECT_EQ(result, EINVAL) << name;
    }
    const auto log = TakeLog();
    ASSERT_THAT(log, SizeIs(3));
    EXPECT_EQ(log[0].text,
              "Failed to send a notification: name of an event, user or application: "
              "Invalid argument");
  }
  EXPECT_FALSE(fs::exists(kSpool));
}

// What the package itself sends, with the texts that it brings.
TEST_F(NotificationTest, ThePackagesTemplatesUseEveryPlaceholder) {
  fs::create_directory_symlink(DORVDL_TEST_SOURCE_DIR "/platform",
                               kApplications + std::string("Tarnwick"));
  const std::map<std::string, std::string> common = {
      {"%FILENAME%", "disk.iso"}, {"%DLTYPE%", "BT"}, {"%CREATEDTIME%", "Fri Nov 20\n"}};
  auto completed = common, failed = common;
  completed["%SHARE%"] = "media";
  failed["%MESSAGE%"] = "The disk is full.";
  for (const char* const language : {"en", "de"}) {
    setenv("LC_ALL", language, 1);
    EXPECT_EQ(Send("DownloadCompleted", "alice", "Tarnwick", completed), 0);
    EXPECT_EQ(Send("DownloadCaptchaNeeded", "alice", "Tarnwick", common), 0);
    EXPECT_EQ(Send("DownloadFailed", "alice", "Tarnwick", failed), 0);
  }
  setenv("LC_ALL", "C", 1);
  const auto kept = Kept();
  ASSERT_THAT(kept, SizeIs(6));
  for (std::size_t number = 0; number < kept.size(); ++number) {
    EXPECT_THAT(kept[number].message, Not(HasSubstr("%")));
    for (const auto& [key, value] : kept[number].placeholders) {
      EXPECT_THAT(kept[number].message, HasSubstr(value)) << kept[number].event;
    }
    const auto& other = kept[(number + 3) % 6];
    EXPECT_EQ(kept[number].event, other.event);
    EXPECT_NE(kept[number].title, other.title);
    EXPECT_NE(kept[number].message, other.message);
  }
}

}  // namespace
}  // namespace dorvdl::common
