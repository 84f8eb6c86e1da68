// The language that users have chosen, in a folder of settings of the test's own.
#include <dorv/cgi.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "support/identity.h"
#include "support/mount_namespace.h"
#include "support/temporary_folder.h"

namespace test_support {
namespace {

namespace fs = std::filesystem;

constexpr char kSettings[] = "/var/lib/tarnwick/users/";

class UserLanguageTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    EnterMountNamespace();
    MakeExtendable("/var/lib");
    setenv("LC_ALL", "fr_FR.UTF-8", 1);
  }

  UserLanguageTest() {
    fs::create_directories(kSettings);
    for (const std::string language : {"en", "de", "fr"}) {
      fs::create_directories(application_.Path("texts/" + language));
      application_.Write("texts/" + language + "/strings", "[section]\nkey=" + language + "\n");
    }
  }
  ~UserLanguageTest() override { fs::remove_all("/var/lib/tarnwick"); }

  static void Write(const std::string& file, const std::string& content) {
    std::ofstream(kSettings + file) << content;
  }

  // The language in which a user is addressed.
  std::string LanguageOf(const std::string& user) {
    setenv("USERNAME", user.c_str(), 1);
    DorvCgiContext context = {};
    EXPECT_NE(DorvCgiInit(application_.Path("").c_str(), &context), 0);
    EXPECT_NE(DorvCgiLoadText(&context, "section", 0), 0);
    std::string language = DorvCgiGetText(&context, "key", "none");
    DorvCgiFree(&context);
    return language;
  }

  TemporaryFolder application_;
};

TEST_F(UserLanguageTest, TheUsersChoiceGoesBeforeTheLocale) {
  Write("alice", "; chosen\nlanguage = de\n[mail]\nlanguage=en\n");
  EXPECT_EQ(LanguageOf("alice"), "de");
  EXPECT_EQ(LanguageOf("bob"), "fr");
}

TEST_F(UserLanguageTest, TheSettingsAreThoseOfTheRealName) {
  ReplaceFile("/etc/passwd", "alice:x:2001:2001::/:/bin/sh\n");
  Write("alice", "language=de\n");
  Write("Alice", "language=en\n");
  EXPECT_EQ(LanguageOf("Alice"), "de");
}

TEST_F(UserLanguageTest, ALocalesNameChoosesItsLanguage) {
  Write("alice", "language=de_DE.UTF-8\n");
  EXPECT_EQ(LanguageOf("alice"), "de");
}

TEST_F(UserLanguageTest, AChoiceWithoutTextsLeavesItToTheLocale) {
  Write("alice", "language=it\n");
  EXPECT_EQ(LanguageOf("alice"), "fr");
}

TEST_F(UserLanguageTest, SettingsThatSayNothingLeaveItToTheLocale) {
  for (const std::string content :
       {"", "theme=dark\n", "[mail]\nlanguage=de\n", "language=de", "language=\n", "[lang\n",
        "language=../../secret\n", "language=de/..\n"}) {
    Write("alice", content);
    EXPECT_EQ(LanguageOf("alice"), "fr") << content;
  }
}

TEST_F(UserLanguageTest, AUserNameNeverReachesAnotherPath) {
  Write(".hidden", "language=de\n");
  Write("../outside", "language=de\n");
  fs::create_directories(kSettings + std::string("folder"));
  Write("folder/inside", "language=de\n");
  for (const std::string user : {".hidden", "../outside", "folder/inside", "folder",
                                 "/var/lib/tarnwick/outside", "%s%n", ""}) {
    EXPECT_EQ(LanguageOf(user), "fr") << user;
  }
  EXPECT_EQ(LanguageOf(std::string(10000, 'u')), "fr");
}

TEST_F(UserLanguageTest, NoIdsAreSwitched) {
  Write("alice", "language=de\n");
  TakeIdCalls();
  EXPECT_EQ(LanguageOf("alice"), "de");
  EXPECT_TRUE(TakeIdCalls().empty());
}

}  // namespace
}  // namespace test_support
