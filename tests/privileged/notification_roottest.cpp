// Notifications that are sent and kept, with templates, users and a spool folder of the test's own.
#include <dlfcn.h>
#include <dorv/notification.h>
#include <dorv/notification_spool.h>
#include <gmock/gmock.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "support/child.h"
#include "support/identity.h"
#include "support/mount_namespace.h"
#include "support/syslog_capture.h"

namespace {
int syncs_until_trouble = 0;              // 0: there is none
void (*trouble)() = [] { errno = EIO; };  // then the call fails
}  // namespace

extern "C" __attribute__((visibility("default"))) int fsync(int file) {
  if (syncs_until_trouble > 0 && --syncs_until_trouble == 0) {
    trouble();
    return -1;
  }
  return reinterpret_cast<int (*)(int)>(dlsym(RTLD_NEXT, "fsync"))(file);
}

namespace dorvdl::common {
namespace {

namespace fs = std::filesystem;
using test_support::TakeLog;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr char kApplications[] = "/usr/dorv/dorvman/webman/3rdparty/";
constexpr char kSpoolParent[] = "/var/spool/tarnwick";
constexpr char kSpool[] = "/var/spool/tarnwick/notifications";
constexpr char kTemplates[] =
    "[Done]\ntitle=%FILENAME% is done\nmessage=%FILENAME% (%DLTYPE%) went to %SHARE%, 100% of it\n"
    "[NoTitle]\nmessage=x\n"
    "[NoMessage]\ntitle=x\n";

using Hash = std::unique_ptr<VLIBSZHASH, decltype(&VLIBCSzHashFree)>;

Hash MakeHash(const std::map<std::string, std::string>& pairs) {
  VLIBSZHASH* hash = VLIBCSzHashAlloc(0);
  for (const auto& [key, value] : pairs) {
    EXPECT_NE(VLIBCSzHashSetValue(&hash, key.c_str(), value.c_str()), -1);
  }
  return {hash, &VLIBCSzHashFree};
}

int Send(const std::string& event, const std::string& user = "alice",
         const std::string& application = "App",
         const std::map<std::string, std::string>& placeholders = {}) {
  return DORVSendPersonalNotifiction(event.c_str(), user.c_str(), application.c_str(),
                                     MakeHash(placeholders).get());
}

class NotificationTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    test_support::EnterMountNamespace();
    for (const char* const folder : {"/usr", "/var/lib", "/var/spool"}) {
      test_support::MakeExtendable(folder);
    }
    test_support::ReplaceFile("/etc/passwd",
                              "root:x:0:0::/root:/bin/sh\n"
                              "alice:x:2001:2001::/:/bin/sh\n"
                              "bob:x:2002:2002::/:/bin/sh\n");
    setenv("LC_ALL", "C", 1);
    umask(022);
  }

  NotificationTest() {
    fs::create_directories(kSpoolParent);
    fs::create_directories("/var/lib/tarnwick/users");
    WriteTemplates("en", kTemplates);
    TakeLog();
  }
  ~NotificationTest() override {
    syncs_until_trouble = 0;
    for (const char* const folder : {kApplications, kSpoolParent, "/var/lib/tarnwick"}) {
      fs::remove_all(folder);
    }
  }

  static void WriteTemplates(const std::string& language, const std::string& templates) {
    const std::string folder = kApplications + ("App/texts/" + language);
    fs::create_directories(folder);
    std::ofstream(folder + "/notifications") << templates;
  }

  static std::vector<KeptNotification> Kept() {
    const auto kept = ListKeptNotifications();
    EXPECT_TRUE(kept) << errno;
    return kept.value_or(std::vector<KeptNotification>());
  }

  // Everything that lies in the spool folder, hidden files included.
  static std::vector<fs::path> Files() {
    return {fs::directory_iterator(kSpool), fs::directory_iterator()};
  }

  static mode_t ModeOf(const fs::path& path) {
    struct stat info {};
    EXPECT_EQ(stat(path.c_str(), &info), 0);
    return info.st_mode & 07777U;
  }

  static void MakeSpool(mode_t mode, uid_t owner, gid_t group = 0) {
    fs::create_directory(kSpool);
    ASSERT_EQ(chown(kSpool, owner, group), 0);
    ASSERT_EQ(chmod(kSpool, mode), 0);
  }

  // The one line that a failure logs; the call left nothing behind.
  static std::string Failure() {
    if (fs::exists(kSpool)) {
      EXPECT_THAT(Files(), IsEmpty());
    }
    const auto log = TakeLog();
    EXPECT_THAT(log, SizeIs(1));
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

TEST_F(NotificationTest, NobodyElseCanReadIt) {
  umask(0);
  ASSERT_EQ(Send("Done"), 0);
  umask(022);
  EXPECT_EQ(ModeOf(kSpool), 0700U);
  ASSERT_THAT(Files(), SizeIs(1));
  EXPECT_EQ(ModeOf(Files()[0]), 0600U);
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

TEST_F(NotificationTest, AreListedInTheOrderOfTheirTimes) {
  for (int number = 0; number < 12; ++number) {
    ASSERT_EQ(Send("Done", "alice", "App", {{"%FILENAME%", std::to_string(number)}}), 0);
  }
  const auto kept = Kept();
  ASSERT_THAT(kept, SizeIs(12));
  for (std::size_t number = 0; number < kept.size(); ++number) {
    EXPECT_EQ(kept[number].placeholders.at("%FILENAME%"), std::to_string(number));
  }
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

TEST_F(NotificationTest, AFullDiskKeepsNothingOfIt) {
  MakeSpool(0700, 0);
  test_support::MountTmpfs(kSpool, 16384);
  ASSERT_EQ(chmod(kSpool, 0700), 0);
  EXPECT_EQ(Send("Done", "alice", "App", {{"%FILENAME%", std::string(20000, 'f')}}), ENOSPC);
  EXPECT_THAT(Failure(), HasSubstr("No space left on device"));
  EXPECT_EQ(Send("Done"), 0);
  EXPECT_THAT(Kept(), SizeIs(1));
  ASSERT_EQ(umount(kSpool), 0);
}

TEST_F(NotificationTest, OneThatDoesNotReachTheDiskIsTakenBack) {
  for (const int call : {1, 2}) {
    syncs_until_trouble = call;
    EXPECT_EQ(Send("Done"), EIO) << call;
    EXPECT_THAT(Failure(), HasSubstr("Input/output error"));
  }
  EXPECT_EQ(Send("Done"), 0);
}

TEST_F(NotificationTest, ACrashLeavesNoHalfMessage) {
  test_support::RunInChild([] {
    syncs_until_trouble = 1;
    trouble = [] { _exit(0); };
    Send("Done");
    ADD_FAILURE() << "still running";
    return "";
  });
  EXPECT_THAT(Files(), SizeIs(1));
  EXPECT_THAT(Kept(), IsEmpty());
  EXPECT_EQ(Send("Done"), 0);
  EXPECT_THAT(Kept(), SizeIs(1));
  EXPECT_THAT(TakeLog(), IsEmpty());
}

TEST_F(NotificationTest, OnlyTheLastFolderOfTheSpoolIsMade) {
  fs::remove(kSpoolParent);
  EXPECT_EQ(Send("Done"), ENOENT);
  EXPECT_EQ(Failure(), kSpool + std::string(": No such file or directory"));
}

TEST_F(NotificationTest, AFolderThatOthersCanUseIsRefused) {
  for (const mode_t mode : {0701, 0702, 0704, 0777}) {
    MakeSpool(mode, 0);
    EXPECT_EQ(Send("Done"), EPERM) << std::oct << mode;
    EXPECT_EQ(Failure(), kSpool + std::string(": Operation not permitted"));
    EXPECT_FALSE(ListKeptNotifications());
    EXPECT_EQ(errno, EPERM);
  }
}

TEST_F(NotificationTest, AFolderOfSomebodyElseIsRefused) {
  MakeSpool(0700, 2001);
  EXPECT_EQ(Send("Done"), EPERM);
  EXPECT_THAT(Failure(), HasSubstr("Operation not permitted"));
}

TEST_F(NotificationTest, WhatIsNoFolderIsRefused) {
  const std::string elsewhere = kSpoolParent + std::string("/elsewhere");
  fs::create_directory(elsewhere);
  ASSERT_EQ(chmod(elsewhere.c_str(), 0700), 0);
  fs::create_directory_symlink(elsewhere, kSpool);
  EXPECT_EQ(Send("Done"), ENOTDIR);
  EXPECT_TRUE(fs::is_empty(elsewhere));
  fs::remove(kSpool);
  std::ofstream(kSpool) << "x";
  EXPECT_EQ(Send("Done"), ENOTDIR);
  EXPECT_THAT(TakeLog(), SizeIs(2));
}

// Sends as the user 2001 with the group 2001.
int SendAsAlice() {
  const std::string result = test_support::RunInChild([] {
    test_support::BecomeIds({2001, 2001, 2001}, {2001, 2001, 2001});
    return std::to_string(Send("Done"));
  });
  return std::atoi(result.c_str());
}

TEST_F(NotificationTest, AnOrdinaryProcessNeedsAFolderOfItsOwnOrOfItsGroup) {
  MakeSpool(0700, 2001);
  EXPECT_EQ(SendAsAlice(), 0);
  MakeSpool(0770, 0, 2001);
  EXPECT_EQ(SendAsAlice(), 0);
  EXPECT_THAT(Kept(), SizeIs(2));
  MakeSpool(0700, 0);
  EXPECT_EQ(SendAsAlice(), EACCES);
  MakeSpool(0700, 2002);
  EXPECT_EQ(SendAsAlice(), EACCES);
  MakeSpool(0770, 2002, 2001);
  EXPECT_EQ(SendAsAlice(), EPERM);
}

TEST_F(NotificationTest, ASpoolThatDoesNotExistHoldsNothing) {
  EXPECT_THAT(Kept(), IsEmpty());
  EXPECT_FALSE(fs::exists(kSpool));
}

TEST_F(NotificationTest, ASpoolThatCannotBeReadIsNoEmptyOne) {
  ASSERT_EQ(Send("Done"), 0);
  const std::string result = test_support::RunInChild([] {
    test_support::BecomeIds({2001, 2001, 2001}, {2001, 2001, 2001});
    return std::to_string(ListKeptNotifications() ? 0 : errno);
  });
  EXPECT_EQ(result, std::to_string(EACCES));
}

TEST_F(NotificationTest, FilesThatAreNoNotificationsAreLeftOut) {
  ASSERT_EQ(Send("Done"), 0);
  TakeLog();
  for (const std::string name : {".hidden.json", "notes.txt"}) {
    std::ofstream(kSpool + ("/" + name)) << "{}";
  }
  EXPECT_THAT(Kept(), SizeIs(1));
  EXPECT_THAT(TakeLog(), IsEmpty());
  for (const std::string content :
       {"", "{", "null", "[]", "{}", "\"text\"", "{\"event\": 1}", "{\"event\":\"\"}"}) {
    std::ofstream(kSpool + std::string("/0.json")) << content;
    EXPECT_THAT(Kept(), SizeIs(1)) << content;
    const auto log = TakeLog();
    ASSERT_THAT(log, SizeIs(1)) << content;
    EXPECT_EQ(log[0].source, "platform/notification_spool");
    EXPECT_THAT(log[0].text, HasSubstr("Failed to read notification [0.json]: "));
  }
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
