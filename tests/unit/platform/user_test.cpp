#include <dorv/user.h>
#include <gtest/gtest.h>

#include <string>

namespace {

// What the call says about a name, with a buffer that has room for the names of all real users.
int RealName(const std::string& user) {
  char name[256] = {};
  return VLIBUserRealNameGet(user.c_str(), name, sizeof name);
}

TEST(UserRealNameTest, GivesTheName) {
  char name[493] = {};
  EXPECT_EQ(VLIBUserRealNameGet("root", name, sizeof name), 0);
  EXPECT_STREQ(name, "root");
}

TEST(UserRealNameTest, TheNameAndItsZeroHaveToFit) {
  char name[8] = "before";
  EXPECT_EQ(VLIBUserRealNameGet("root", name, 5), 0);
  EXPECT_STREQ(name, "root");
  for (const int size : {4, 1, 0, -1, -2147483647}) {
    EXPECT_EQ(VLIBUserRealNameGet("root", name, size), -1) << size;
  }
}

TEST(UserRealNameTest, NamesOfNobodyFail) {
  EXPECT_EQ(RealName("no such user"), -1);
  EXPECT_EQ(RealName(""), -1);
  EXPECT_EQ(RealName("%s%n%s%n"), -1);
  EXPECT_EQ(RealName("root\n"), -1);
  EXPECT_EQ(RealName("../root"), -1);
  EXPECT_EQ(RealName(std::string(10000, 'r')), -1);
}

TEST(AdminGroupTest, AUserIdOfNobodyCannotBeToldAbout) {
  EXPECT_EQ(VLIBGroupIsAdminGroupMemByUid(3999999999U, 1), -1);
}

}  // namespace
