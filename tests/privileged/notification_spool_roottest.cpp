// The spool folder of notifications: who may use it, what reaches the disk and what is listed.
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "privileged/notification_test.h"
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
using testing::SizeIs;

class NotificationSpoolTest : public NotificationTest {
 protected:
  ~NotificationSpoolTest() override { syncs_until_trouble = 0; }

  static mode_t ModeOf(const fs::path& path) {
    struct stat info {};
    EXPECT_EQ(stat(path.c_str(), &info), 0);
    return info.st_mode & 07777U;
  }

  static uid_t OwnerOf(const fs::path& path) {
    struct stat info {};
    EXPECT_EQ(stat(path.c_str(), &info), 0);
    return info.st_uid;
  }

  static void MakeSpool(mode_t mode, uid_t owner, gid_t group = 0) {
    fs::create_directory(kSpool);
    ASSERT_EQ(chown(kSpool, owner, group), 0);
    ASSERT_EQ(chmod(kSpool, mode), 0);
  }
};

TEST_F(NotificationSpoolTest, NobodyElseCanReadIt) {
  umask(0);
  ASSERT_EQ(Send("Done"), 0);
  umask(022);
  EXPECT_EQ(ModeOf(kSpool), 0700U);
  ASSERT_THAT(Files(), SizeIs(1));
  EXPECT_EQ(ModeOf(Files()[0]), 0600U);
}

TEST_F(NotificationSpoolTest, AreListedInTheOrderOfTheirTimes) {
  for (int number = 0; number < 12; ++number) {
    ASSERT_EQ(Send("Done", "alice", "App", {{"%FILENAME%", std::to_string(number)}}), 0);
  }
  const auto kept = Kept();
  ASSERT_THAT(kept, SizeIs(12));
  for (std::size_t number = 0; number < kept.size(); ++number) {
    EXPECT_EQ(kept[number].placeholders.at("%FILENAME%"), std::to_string(number));
  }
}

TEST_F(NotificationSpoolTest, AFullDiskKeepsNothingOfIt) {
  MakeSpool(0700, 0);
  test_support::MountTmpfs(kSpool, 16384);
  ASSERT_EQ(chmod(kSpool, 0700), 0);
  EXPECT_EQ(Send("Done", "alice", "App", {{"%FILENAME%", std::string(20000, 'f')}}), ENOSPC);
  EXPECT_THAT(Failure(), HasSubstr("No space left on device"));
  EXPECT_EQ(Send("Done"), 0);
  EXPECT_THAT(Kept(), SizeIs(1));
  ASSERT_EQ(umount(kSpool), 0);
}

TEST_F(NotificationSpoolTest, OneThatDoesNotReachTheDiskIsTakenBack) {
  for (const int call : {1, 2}) {
    syncs_until_trouble = call;
    EXPECT_EQ(Send("Done"), EIO) << call;
    EXPECT_THAT(Failure(), HasSubstr("Input/output error"));
  }
  EXPECT_EQ(Send("Done"), 0);
}

TEST_F(NotificationSpoolTest, ACrashLeavesNoHalfMessage) {
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

TEST_F(NotificationSpoolTest, OnlyTheLastFolderOfTheSpoolIsMade) {
  fs::remove(kSpoolParent);
  EXPECT_EQ(Send("Done"), ENOENT);
  EXPECT_EQ(Failure(), kSpool + std::string(": No such file or directory"));
}

TEST_F(NotificationSpoolTest, AFolderThatOthersCanUseIsRefused) {
  for (const mode_t mode : {0701, 0702, 0704, 0710, 0720, 0740, 0777}) {
    MakeSpool(mode, 0);
    EXPECT_EQ(Send("Done"), EPERM) << std::oct << mode;
    EXPECT_EQ(Failure(), kSpool + std::string(": Operation not permitted"));
    EXPECT_FALSE(ListKeptNotifications());
    EXPECT_EQ(errno, EPERM);
  }
}

TEST_F(NotificationSpoolTest, AFolderOfSomebodyElseIsRefused) {
  MakeSpool(0700, 2001);
  EXPECT_EQ(Send("Done"), EPERM);
  EXPECT_THAT(Failure(), HasSubstr("Operation not permitted"));
}

TEST_F(NotificationSpoolTest, WhatIsNoFolderIsRefused) {
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

TEST_F(NotificationSpoolTest, AnOrdinaryProcessNeedsAFolderOfItsOwn) {
  for (const uid_t owner : {0U, 2002U, 2003U}) {
    MakeSpool(0700, owner);
    EXPECT_EQ(SendAsAlice(), EACCES);
  }
  MakeSpool(0700, 2001);
  EXPECT_EQ(SendAsAlice(), 0);
}

TEST_F(NotificationSpoolTest, RootMakesItForThePackagesUser) {
  ASSERT_EQ(Send("Done"), 0);
  EXPECT_EQ(OwnerOf(kSpool), 2003U);
  ASSERT_THAT(Files(), SizeIs(1));
  EXPECT_EQ(OwnerOf(Files()[0]), 2003U);
  EXPECT_THAT(Kept(), SizeIs(1));
}

TEST_F(NotificationSpoolTest, WhatRootKeepsInAFolderIsItsOwners) {
  MakeSpool(0700, 2003, 2003);
  ASSERT_EQ(Send("Done"), 0);
  EXPECT_EQ(OwnerOf(Files()[0]), 2003U);
  fs::remove_all(kSpool);
  MakeSpool(0700, 0);
  ASSERT_EQ(Send("Done"), 0);
  EXPECT_EQ(OwnerOf(Files()[0]), 0U);
}

TEST_F(NotificationSpoolTest, ASpoolThatDoesNotExistHoldsNothing) {
  EXPECT_THAT(Kept(), IsEmpty());
  EXPECT_FALSE(fs::exists(kSpool));
}

TEST_F(NotificationSpoolTest, ASpoolThatCannotBeReadIsNoEmptyOne) {
  ASSERT_EQ(Send("Done"), 0);
  const std::string result = test_support::RunInChild([] {
    test_support::BecomeIds({2001, 2001, 2001}, {2001, 2001, 2001});
    return std::to_string(ListKeptNotifications() ? 0 : errno);
  });
  EXPECT_EQ(result, std::to_string(EACCES));
}

TEST_F(NotificationSpoolTest, FilesThatAreNoNotificationsAreLeftOut) {
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

}  // namespace
}  // namespace dorvdl::common
