// The spool folder of notifications: who may use it, what reaches the disk and what is listed.
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <pwd.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <utility>
#include <vector>

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

namespace {
// Called once, before the next call of that name is made.
std::function<void()> before_fchown;
std::function<void()> before_getpwnam;

// Whether a folder can be renamed so that no other one is replaced.
bool file_system_can_keep = true;

void CallOnce(std::function<void()>& function) {
  if (function) {
    std::exchange(function, nullptr)();
  }
}
}  // namespace

extern "C" __attribute__((visibility("default"))) int fchown(int file, uid_t user,
                                                             gid_t group) noexcept {
  CallOnce(before_fchown);
  return reinterpret_cast<decltype(&fchown)>(dlsym(RTLD_NEXT, "fchown"))(file, user, group);
}

extern "C" __attribute__((visibility("default"))) int renameat2(int from_folder, const char* from,
                                                                int to_folder, const char* to,
                                                                unsigned flags) noexcept {
  if (!file_system_can_keep && flags != 0) {
    errno = EINVAL;
    return -1;
  }
  const auto real = reinterpret_cast<decltype(&renameat2)>(dlsym(RTLD_NEXT, "renameat2"));
  return real(from_folder, from, to_folder, to, flags);
}

extern "C" __attribute__((visibility("default"))) int getpwnam_r(const char* name, passwd* entry,
                                                                 char* texts, std::size_t size,
                                                                 passwd** found) {
  CallOnce(before_getpwnam);
  const auto real = reinterpret_cast<decltype(&getpwnam_r)>(dlsym(RTLD_NEXT, "getpwnam_r"));
  return real(name, entry, texts, size, found);
}

namespace dorvdl::common {
namespace {

namespace fs = std::filesystem;
using test_support::TakeLog;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr uid_t kPackage = 2003;

class NotificationSpoolTest : public NotificationTest {
 protected:
  ~NotificationSpoolTest() override {
    syncs_until_trouble = 0;
    file_system_can_keep = true;
  }

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

// Does it with the user's ids and the group of the same number.
int As(uid_t user, const std::function<int()>& what) {
  const std::string result = test_support::RunInChild([&] {
    test_support::BecomeIds({user, user, user}, {user, user, user});
    return std::to_string(what());
  });
  return std::atoi(result.c_str());
}

int SendAs(uid_t user) {
  return As(user, [] { return Send("Done"); });
}

// How many notifications the package's user is shown; negative when that is refused.
int NumberForThePackage() {
  return As(kPackage, [] {
    const auto kept = ListKeptNotifications();
    return kept ? static_cast<int>(kept->size()) : -errno;
  });
}

TEST_F(NotificationSpoolTest, AnOrdinaryProcessNeedsAFolderOfItsOwn) {
  for (const uid_t owner : {0U, 2002U, 2003U}) {
    MakeSpool(0700, owner);
    EXPECT_EQ(SendAs(2001), EACCES);
  }
  MakeSpool(0700, 2001);
  EXPECT_EQ(SendAs(2001), 0);
}

TEST_F(NotificationSpoolTest, RootMakesItForThePackagesUser) {
  ASSERT_EQ(Send("Done"), 0);
  EXPECT_EQ(OwnerOf(kSpool), 2003U);
  ASSERT_THAT(Files(), SizeIs(1));
  EXPECT_EQ(OwnerOf(Files()[0]), 2003U);
  EXPECT_THAT(Kept(), SizeIs(1));
}

TEST_F(NotificationSpoolTest, WhatRootKeepsInAFolderIsItsOwners) {
  MakeSpool(0700, kPackage, kPackage);
  ASSERT_EQ(Send("Done"), 0);
  EXPECT_EQ(OwnerOf(Files()[0]), kPackage);
}

TEST_F(NotificationSpoolTest, WithoutThePackagesUserItIsRootsUntilThereIsOne) {
  test_support::ReplaceFile("/etc/passwd", "alice:x:2001:2001::/:/bin/sh\n");
  EXPECT_EQ(Send("Done"), 0);
  EXPECT_EQ(OwnerOf(kSpool), 0U);
  EXPECT_EQ(OwnerOf(Files()[0]), 0U);
  fs::create_symlink("/etc/passwd", kSpool + std::string("/link.json"));
  test_support::ReplaceFile("/etc/passwd",
                            "alice:x:2001:2001::/:/bin/sh\n"
                            "Tarnwick:x:2003:2003::/:/usr/sbin/nologin\n");
  EXPECT_EQ(Send("Done"), 0);
  EXPECT_EQ(NumberForThePackage(), 2);
  EXPECT_EQ(OwnerOf("/etc/passwd"), 0U);
  EXPECT_EQ(SendAs(kPackage), 0);
}

TEST_F(NotificationSpoolTest, ItDoesNotMatterWhetherRootOrThePackagesUserIsFirst) {
  for (const uid_t first : {0U, kPackage}) {
    ASSERT_EQ(chown(kSpoolParent, kPackage, kPackage), 0);
    EXPECT_EQ(SendAs(first), 0);
    EXPECT_EQ(SendAs(kPackage - first), 0);
    EXPECT_EQ(NumberForThePackage(), 2);
    EXPECT_THAT(Kept(), SizeIs(2));
    fs::remove_all(kSpool);
  }
}

TEST_F(NotificationSpoolTest, NorWhetherTheyAreAtOnce) {
  ASSERT_EQ(chown(kSpoolParent, kPackage, kPackage), 0);
  before_fchown = [] { EXPECT_EQ(SendAs(kPackage), 0); };
  EXPECT_EQ(Send("Done"), 0);
  EXPECT_FALSE(before_fchown);
  EXPECT_EQ(NumberForThePackage(), 2);
  EXPECT_EQ(std::distance(fs::directory_iterator(kSpoolParent), {}), 1);
}

TEST_F(NotificationSpoolTest, AFolderThatSomebodyHasJustMadeIsNotReplaced) {
  struct stat made {};
  before_fchown = [&made] {
    MakeSpool(0700, kPackage, kPackage);
    ASSERT_EQ(stat(kSpool, &made), 0);
  };
  EXPECT_EQ(Send("Done"), 0);
  struct stat used {};
  ASSERT_EQ(stat(kSpool, &used), 0);
  EXPECT_EQ(used.st_ino, made.st_ino);
}

TEST_F(NotificationSpoolTest, IsMadeAlsoWhereFoldersCannotBeKeptFromBeingReplaced) {
  file_system_can_keep = false;
  ASSERT_EQ(chown(kSpoolParent, kPackage, kPackage), 0);
  before_fchown = [] { EXPECT_EQ(SendAs(kPackage), 0); };
  EXPECT_EQ(Send("Done"), 0);
  EXPECT_EQ(NumberForThePackage(), 2);
  fs::remove_all(kSpool);
  EXPECT_EQ(Send("Done"), 0);
  EXPECT_EQ(OwnerOf(kSpool), kPackage);
}

TEST_F(NotificationSpoolTest, ACrashBeforeItIsHandedOverLeavesItToThePackagesUser) {
  ASSERT_EQ(chown(kSpoolParent, kPackage, kPackage), 0);
  test_support::RunInChild([] {
    before_fchown = [] { _exit(0); };
    Send("Done");
    ADD_FAILURE() << "still running";
    return "";
  });
  EXPECT_EQ(SendAs(kPackage), 0);
  EXPECT_EQ(Send("Done"), 0);
  EXPECT_EQ(NumberForThePackage(), 2);
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

// A notification's text but for one of its members.
std::string With(const std::string& name, const std::string& value) {
  std::string text = "{";
  for (const std::string member : {"event", "application", "user", "title", "message"}) {
    text += '"' + member + "\":\"x\",";
  }
  return text + '"' + name + "\":" + value + '}';
}

TEST_F(NotificationSpoolTest, TheFolderThatWasOpenedIsTheOneThatIsRead) {
  ASSERT_EQ(Send("Done"), 0);
  fs::create_directory(kSpoolParent + std::string("/other"));
  before_getpwnam = [] {
    fs::rename(kSpool, kSpoolParent + std::string("/away"));
    fs::create_directory_symlink("other", kSpool);
  };
  EXPECT_THAT(Kept(), SizeIs(1));
  EXPECT_FALSE(before_getpwnam);
  EXPECT_THAT(TakeLog(), IsEmpty());
}

TEST_F(NotificationSpoolTest, LinksAreNotFollowed) {
  ASSERT_EQ(Send("Done"), 0);
  const std::string elsewhere = kSpoolParent + std::string("/elsewhere.json");
  fs::copy_file(Files()[0], elsewhere);
  fs::create_symlink(elsewhere, kSpool + std::string("/0.json"));
  EXPECT_THAT(Kept(), SizeIs(1));
  const auto log = TakeLog();
  ASSERT_THAT(log, SizeIs(1));
  EXPECT_EQ(log[0].text,
            "Failed to read notification [0.json]: 0.json: Too many levels of symbolic links");
}

// How many bytes this process has read from files until now.
unsigned long long BytesRead() {
  std::string label;
  unsigned long long bytes = 0;
  std::ifstream("/proc/self/io") >> label >> bytes;
  EXPECT_EQ(label, "rchar:");
  return bytes;
}

TEST_F(NotificationSpoolTest, ALargeOneIsListedAndAHugeOneIsNotRead) {
  ASSERT_EQ(Send("Done", "alice", "App", {{"%FILENAME%", std::string(30000, 'f')}}), 0);
  EXPECT_THAT(Kept(), SizeIs(1));
  const fs::path file = Files()[0];
  fs::resize_file(file, 1048576);  // what follows the notification does not count
  EXPECT_THAT(Kept(), SizeIs(1));
  EXPECT_THAT(TakeLog(), IsEmpty());
  for (const std::uintmax_t size : {1048577, 67108864}) {
    fs::resize_file(file, size);
    const auto before = BytesRead();
    EXPECT_THAT(Kept(), IsEmpty());
    EXPECT_LT(BytesRead() - before, 100000U);
    const auto log = TakeLog();
    ASSERT_THAT(log, SizeIs(1));
    EXPECT_THAT(log[0].text, HasSubstr(": File too large"));
  }
}

TEST_F(NotificationSpoolTest, OneThatCouldNotBeListedIsNotKept) {
  EXPECT_EQ(Send("Done", "alice", "App", {{"%X%", std::string(1048576, 'x')}}), EMSGSIZE);
  EXPECT_THAT(Failure(), HasSubstr("Message too long"));
  EXPECT_EQ(Send("Done", "alice", "App", {{"%X%", std::string(1048000, 'x')}}), 0);
  EXPECT_THAT(Kept(), SizeIs(1));
}

TEST_F(NotificationSpoolTest, WhatIsNoReadableFileHidesNoOther) {
  ASSERT_EQ(Send("Done"), 0);
  const std::string folder = kSpool + std::string("/");
  fs::create_directory(folder + "0.json");
  ASSERT_EQ(mkfifo((folder + "1.json").c_str(), 0600), 0);
  ASSERT_EQ(mknod((folder + "2.json").c_str(), S_IFSOCK | 0600, 0), 0);
  fs::create_symlink("nowhere", folder + "3.json");
  std::ofstream(folder + "4.json") << "{}";  // root's
  ASSERT_EQ(chmod((folder + "4.json").c_str(), 0600), 0);
  EXPECT_EQ(NumberForThePackage(), 1);
  EXPECT_THAT(Kept(), SizeIs(1));
  EXPECT_THAT(TakeLog(), SizeIs(5));
}

TEST_F(NotificationSpoolTest, FilesThatAreNoNotificationsAreLeftOut) {
  ASSERT_EQ(Send("Done"), 0);
  TakeLog();
  for (const std::string name : {".hidden.json", "notes.txt"}) {
    std::ofstream(kSpool + ("/" + name)) << "{}";
  }
  EXPECT_THAT(Kept(), SizeIs(1));
  EXPECT_THAT(TakeLog(), IsEmpty());
  const std::vector<std::string> contents = {
      "",
      "{",
      "null",
      "[]",
      "{}",
      "\"text\"",
      "{\"event\": 1}",
      "{\"event\":\"\"}",
      std::string(1000000, '['),
      With("created", "99999999999999999999"),
      With("created", "\"1\""),
      With("created", "1e999"),
      With("placeholders", "[\"a\"]"),
      With("placeholders", "\"a\""),
      With("placeholders", "{\"a\": [1]}"),
  };
  for (const std::string& content : contents) {
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
