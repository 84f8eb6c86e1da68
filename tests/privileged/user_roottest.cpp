// Users and the administrators' group with an account database of the test's own.
#include <dorv/user.h>
#include <gtest/gtest.h>

#include <string>

#include "support/mount_namespace.h"

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
  }

  static bool Knows(const std::string& user) {
    char name[493] = {};
    return VLIBUserRealNameGet(user.c_str(), name, sizeof name) == 0 && name == user;
  }
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

}  // namespace
}  // namespace test_support
