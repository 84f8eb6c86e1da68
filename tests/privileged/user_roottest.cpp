// Users and the administrators' group with an account database of the test's own.
#include <dlfcn.h>
#include <dorv/share_path.h>
#include <dorv/user.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <pwd.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <string>
#include <thread>

#include "support/mount_namespace.h"

// The account database's calls pass through here and fail on request.
namespace {

struct Trouble {
  std::string call;  // the call that fails
  int error = 0;
  int times = 0;
  int made = 0;  // how often it was called
};
Trouble trouble;

bool Fails(const char* call) { return trouble.call == call && trouble.made++ < trouble.times; }

template <typename Function>
Function* Real(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {
#define EXPORTED __attribute__((visibility("default")))

EXPORTED int getpwnam_r(const char* name, passwd* entry, char* texts, std::size_t size,
                        passwd** found) {
  *found = nullptr;
  return Fails("getpwnam_r")
             ? trouble.error
             : Real<decltype(getpwnam_r)>("getpwnam_r")(name, entry, texts, size, found);
}
EXPORTED int getpwuid_r(uid_t uid, passwd* entry, char* texts, std::size_t size, passwd** found) {
  *found = nullptr;
  return Fails("getpwuid_r")
             ? trouble.error
             : Real<decltype(getpwuid_r)>("getpwuid_r")(uid, entry, texts, size, found);
}
EXPORTED int getpwent_r(passwd* entry, char* texts, std::size_t size, passwd** found) {
  *found = nullptr;
  return Fails("getpwent_r") ? trouble.error
                             : Real<decltype(getpwent_r)>("getpwent_r")(entry, texts, size, found);
}
EXPORTED int getgrnam_r(const char* name, group* entry, char* texts, std::size_t size,
                        group** found) {
  *found = nullptr;
  return Fails("getgrnam_r")
             ? trouble.error
             : Real<decltype(getgrnam_r)>("getgrnam_r")(name, entry, texts, size, found);
}
EXPORTED int getgrouplist(const char* user, gid_t first, gid_t* groups, int* count) {
  return Fails("getgrouplist")
             ? -1
             : Real<decltype(getgrouplist)>("getgrouplist")(user, first, groups, count);
}
}

namespace test_support {
namespace {

constexpr char kUsers[] =
    "root:x:0:0::/root:/bin/sh\n"
    "alice:x:2001:2001::/:/bin/sh\n"
    "bob:x:2002:27::/:/bin/sh\n"
    "carol:x:2003:2003::/:/bin/sh\n";

class UserRootTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { EnterMountNamespace(); }

  UserRootTest() {
    ReplaceFile("/etc/passwd", kUsers);
    ReplaceFile("/etc/group", "sudo:x:27:alice\nalice:x:2001:\ncarol:x:2003:\n");
    trouble = {};
  }

  // The real name of a user; empty when there is none.
  static std::string RealName(const std::string& user) {
    char name[493] = {};
    return VLIBUserRealNameGet(user.c_str(), name, sizeof name) == 0 ? name : "";
  }

  static bool Knows(const std::string& user) { return RealName(user) == user; }
};

TEST_F(UserRootTest, MembersOfTheGroupAreAdministrators) {
  EXPECT_EQ(VLIBGroupIsAdminGroupMemByUid(2001, 1), 1);
  EXPECT_EQ(VLIBGroupIsAdminGroupMemByUid(2003, 1), 0);
}

TEST_F(UserRootTest, ThePrimaryGroupCountsToo) {
  EXPECT_EQ(VLIBGroupIsAdminGroupMemByUid(2002, 1), 1);
}

TEST_F(UserRootTest, AnAdministratorMayHaveManyGroups) {
  std::string groups;
  for (int id = 4000; id < 4100; ++id) {
    groups += "g" + std::to_string(id) + ":x:" + std::to_string(id) + ":carol\n";
  }
  ReplaceFile("/etc/group", groups + "sudo:x:27:carol\n");
  EXPECT_EQ(VLIBGroupIsAdminGroupMemByUid(2003, 1), 1);
}

TEST_F(UserRootTest, WithoutTheGroupOnlyRootCanBeToldAbout) {
  ReplaceFile("/etc/group", "alice:x:2001:\n");
  EXPECT_EQ(VLIBGroupIsAdminGroupMemByUid(2001, 1), -1);
  EXPECT_EQ(VLIBGroupIsAdminGroupMemByUid(0, 1), 1);
}

TEST_F(UserRootTest, AGroupWithManyMembersIsRead) {
  std::string members = "alice";
  for (int number = 0; number < 1000; ++number) {
    members += ",member" + std::to_string(number);
  }
  ReplaceFile("/etc/group", "sudo:x:27:" + members + "\n");
  EXPECT_EQ(VLIBGroupIsAdminGroupMemByUid(2001, 1), 1);
}

TEST_F(UserRootTest, AnAccountEntryOfAnyLengthIsRead) {
  ReplaceFile("/etc/passwd", "dora:x:2004:2004:" + std::string(5000, 'd') + ":/:/bin/sh\n");
  EXPECT_TRUE(Knows("dora"));
  EXPECT_EQ(VLIBGroupIsAdminGroupMemByUid(2004, 1), 0);
}

TEST_F(UserRootTest, ANameWithASlashIsNobodysEvenWhenTheDatabaseHasIt) {
  const std::string entry = ":x:2005:2005::/:/bin/sh\n";
  ReplaceFile("/etc/passwd", "a/b" + entry + "a.b" + entry);
  EXPECT_FALSE(Knows("a/b"));
  EXPECT_TRUE(Knows("a.b"));
}

TEST_F(UserRootTest, ANameThatDoesNotFitFails) {
  const std::string entry = ":x:2005:2005::/:/bin/sh\n";
  ReplaceFile("/etc/passwd", std::string(492, 'u') + entry + std::string(493, 'v') + entry);
  EXPECT_TRUE(Knows(std::string(492, 'u')));
  EXPECT_FALSE(Knows(std::string(493, 'v')));
}

constexpr char kEntry[] = ":x:2005:2005::/:/bin/sh\n";

TEST_F(UserRootTest, ANameThatDiffersInCaseOnlyIsFound) {
  ReplaceFile("/etc/passwd", kUsers + ("Tarnwick" + std::string(kEntry)));
  EXPECT_EQ(RealName("Alice"), "alice");
  EXPECT_EQ(RealName("ALICE"), "alice");
  EXPECT_EQ(RealName("tarnwick"), "Tarnwick");
  EXPECT_EQ(RealName("TARNWICk"), "Tarnwick");
  EXPECT_EQ(RealName("alic"), "");
  EXPECT_EQ(RealName("alicee"), "");
  EXPECT_EQ(RealName("CAROL\n"), "");
}

TEST_F(UserRootTest, TheExactNameGoesBeforeOthers) {
  ReplaceFile("/etc/passwd",
              "ALICE" + std::string(kEntry) + "alice" + kEntry + "Alice" + kEntry + "bob" + kEntry);
  for (const std::string name : {"ALICE", "alice", "Alice"}) {
    EXPECT_EQ(RealName(name), name);
  }
  EXPECT_EQ(RealName("aLICE"), "ALICE");  // the first
  EXPECT_EQ(RealName("BOB"), "bob");
}

TEST_F(UserRootTest, CaseIsThatOfAllLettersOfUtf8) {
  ReplaceFile("/etc/passwd", "ägir" + std::string(kEntry) + "ÉMILE" + kEntry + "x\xe4" + kEntry);
  EXPECT_EQ(RealName("Ägir"), "ägir");
  EXPECT_EQ(RealName("Émile"), "ÉMILE");
  EXPECT_EQ(RealName("egir"), "");
  EXPECT_EQ(RealName("X\xe4"), "x\xe4");
  EXPECT_EQ(RealName("X\xc4"), "");
  EXPECT_EQ(RealName("xä"), "");  // whose code is that of the byte
}

TEST_F(UserRootTest, TheDatabaseIsGoneThroughFromItsBeginning) {
  setpwent();
  while (getpwent() != nullptr) {
  }
  EXPECT_EQ(RealName("Alice"), "alice");
}

TEST_F(UserRootTest, AnEntryOfAnyLengthIsReadOnTheWay) {
  ReplaceFile("/etc/passwd", "dora:x:2004:2004:" + std::string(5000, 'd') + ":/:/bin/sh\nerik" +
                                 std::string(kEntry));
  EXPECT_EQ(RealName("Dora"), "dora");
  EXPECT_EQ(RealName("Erik"), "erik");
}

TEST_F(UserRootTest, ThreadsFindNamesInAnyCaseSideBySide) {
  std::string users;
  for (int number = 0; number < 100; ++number) {
    users += "user" + std::to_string(number) + kEntry;
  }
  ReplaceFile("/etc/passwd", users);
  std::atomic<int> found = 0;
  const auto look = [&found] {
    for (int number = 0; number < 100; ++number) {
      const std::string name = std::to_string(number);
      found += RealName("User" + name) == "user" + name ? 1 : 0;
    }
  };
  std::thread other(look);
  look();
  other.join();
  EXPECT_EQ(found, 200);
}

TEST_F(UserRootTest, AShareIsTheUsersAlsoByANameInAnotherCase) {
  MakeExtendable("/var");
  std::filesystem::create_directories("/var/services/share");
  std::filesystem::create_directory_symlink("/mnt", "/var/services/share/media");
  EXPECT_EQ(dorvdl::common::GetRealPathFromSharePath("media", "Alice"), "/mnt");
  EXPECT_EQ(dorvdl::common::GetRealPathFromSharePath("media", "Alicia"), "");
  trouble = {"getpwnam_r", EIO, 1};
  EXPECT_EQ(dorvdl::common::GetRealPathFromSharePath("media", "alice"), "");
}

TEST_F(UserRootTest, ACallThatASignalInterruptsIsMadeAgain) {
  for (const std::string call : {"getpwnam_r", "getpwent_r"}) {
    trouble = {call, EINTR, 3};
    EXPECT_EQ(RealName("Alice"), "alice") << call;
    EXPECT_GT(trouble.made, 3);
  }
  for (const std::string call : {"getpwuid_r", "getgrnam_r"}) {
    trouble = {call, EINTR, 3};
    EXPECT_EQ(VLIBGroupIsAdminGroupMemByUid(2001, 1), 1) << call;
    EXPECT_EQ(trouble.made, 4);
  }
}

TEST_F(UserRootTest, ADatabaseThatCannotBeReadHasNoAnswerAndHoldsNobodyUp) {
  for (const int error : {EIO, EMFILE, EINTR, ERANGE}) {
    for (const std::string call : {"getpwnam_r", "getpwent_r"}) {
      trouble = {call, error, 1000000};
      EXPECT_EQ(RealName("Alice"), "") << call << ' ' << error;
    }
    for (const std::string call : {"getpwuid_r", "getgrnam_r", "getgrouplist"}) {
      trouble = {call, error, 1000000};
      EXPECT_EQ(VLIBGroupIsAdminGroupMemByUid(2001, 1), -1) << call << ' ' << error;
    }
  }
}

TEST_F(UserRootTest, AnErrorIsNotTakenForAnotherSpelling) {
  ReplaceFile("/etc/passwd", "ALICE" + std::string(kEntry) + "alice" + kEntry);
  trouble = {"getpwnam_r", EIO, 1};
  EXPECT_EQ(RealName("alice"), "");
}

}  // namespace
}  // namespace test_support
