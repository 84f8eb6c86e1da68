#include <dorv/cgi.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <locale>
#include <string>

#include "support/syslog_capture.h"
#include "support/temporary_folder.h"

namespace test_support {
namespace {

using testing::IsEmpty;

constexpr char kEnglish[] = "[download]\nrunning=running\nwaiting=waiting\n[error]\nfull=full\n";
constexpr char kGerman[] = "[download]\nrunning=läuft\n";

// A web application's folder with texts, asked in the language of the environment.
class CgiTest : public testing::Test {
 protected:
  CgiTest() {
    for (const char* const name : {"USERNAME", "LC_ALL", "LC_MESSAGES", "LANG"}) {
      unsetenv(name);
    }
    TakeLog();
  }
  ~CgiTest() override { DorvCgiFree(&context_); }

  void Write(const std::string& language, const std::string& texts) {
    std::filesystem::create_directories(folder_.Path("texts/" + language));
    folder_.Write("texts/" + language + "/strings", texts);
  }

  bool Init() { return DorvCgiInit(folder_.Path("").c_str(), &context_) != 0; }
  bool Load(const char* section) { return DorvCgiLoadText(&context_, section, 0) != 0; }
  std::string Text(const char* key) { return DorvCgiGetText(&context_, key, "default"); }

  // The text of a key in the section "download", from start to end.
  std::string Look(const char* key) {
    EXPECT_TRUE(Init() && Load("download"));
    std::string text = Text(key);
    DorvCgiFree(&context_);
    return text;
  }

  // The reason that the log gives for a failing start, without the folder's path.
  std::string FailureToInit() {
    EXPECT_FALSE(Init());
    EXPECT_EQ(context_.texts, nullptr);
    const auto log = TakeLog();
    const std::string before = "Failed to read texts: " + folder_.Path("");
    if (log.size() != 1 || log[0].priority != kError || log[0].source != "platform/cgi" ||
        log[0].text.rfind(before, 0) != 0) {
      return "log: " + testing::PrintToString(log);
    }
    return log[0].text.substr(before.size());
  }

  TemporaryFolder folder_;
  DorvCgiContext context_ = {};
};

TEST_F(CgiTest, GivesTextsOfLoadedSections) {
  Write("en", kEnglish);
  ASSERT_TRUE(Init());
  EXPECT_EQ(Text("running"), "default");
  ASSERT_TRUE(Load("download"));
  EXPECT_EQ(Text("running"), "running");
  EXPECT_EQ(Text("full"), "default");
  ASSERT_TRUE(Load("error"));
  EXPECT_EQ(Text("full"), "full");
  EXPECT_EQ(Text("running"), "running");
  EXPECT_THAT(TakeLog(), IsEmpty());
}

TEST_F(CgiTest, ATextStaysWhereItIsWhenMoreAreLoaded) {
  Write("en", "[a]\nkey=first\n[b]\nkey=second\nother=x\n");
  ASSERT_TRUE(Init() && Load("a"));
  const char* const text = DorvCgiGetText(&context_, "key", nullptr);
  ASSERT_TRUE(Load("b"));
  EXPECT_EQ(DorvCgiGetText(&context_, "key", nullptr), text);
  EXPECT_STREQ(text, "first");
}

TEST_F(CgiTest, UnknownSectionsAreNotLoaded) {
  Write("en", kEnglish + std::string("[empty]\n"));
  ASSERT_TRUE(Init());
  for (const char* const section : {"none", "empty", "", "download.running", "down\nload", "%s"}) {
    EXPECT_FALSE(Load(section)) << section;
  }
}

TEST_F(CgiTest, TheLocaleChoosesTheLanguage) {
  Write("en", kEnglish);
  Write("de", kGerman);
  for (const char* const german :
       {"de", "de_DE", "de_DE.UTF-8", "de_AT@euro", "de-CH", "de.UTF-8"}) {
    setenv("LANG", german, 1);
    EXPECT_EQ(Look("running"), "läuft") << german;
  }
  for (const char* const no_language : {"C", "POSIX", "german", "DE", "d", "de1"}) {
    Write(no_language, "[download]\nrunning=unexpected\n");
  }
  for (const char* const english : {"en_GB.UTF-8", "fr_FR.UTF-8", "C", "C.UTF-8", "POSIX", "",
                                    "german", "DE", "../de", "d", "de1"}) {
    setenv("LANG", english, 1);
    EXPECT_EQ(Look("running"), "running") << english;
  }
}

TEST_F(CgiTest, TheFirstLocaleVariableThatIsSetDecides) {
  Write("en", kEnglish);
  Write("de", kGerman);
  setenv("LANG", "de_DE.UTF-8", 1);
  EXPECT_EQ(Look("running"), "läuft");
  setenv("LC_MESSAGES", "C", 1);
  EXPECT_EQ(Look("running"), "running");
  setenv("LC_ALL", "de_DE.UTF-8", 1);
  EXPECT_EQ(Look("running"), "läuft");
  setenv("LC_ALL", "", 1);
  EXPECT_EQ(Look("running"), "running");
}

TEST_F(CgiTest, EnglishFillsTheGaps) {
  Write("en", kEnglish);
  Write("de", kGerman);
  setenv("LANG", "de_DE.UTF-8", 1);
  ASSERT_TRUE(Init() && Load("download") && Load("error"));
  EXPECT_EQ(Text("running"), "läuft");
  EXPECT_EQ(Text("waiting"), "waiting");
  EXPECT_EQ(Text("full"), "full");
}

TEST_F(CgiTest, ALanguageStandsAloneWithoutEnglishTexts) {
  Write("de", kGerman);
  setenv("LANG", "de_DE.UTF-8", 1);
  EXPECT_EQ(Look("running"), "läuft");
}

TEST_F(CgiTest, StrangeUserNamesChooseNoLanguage) {
  Write("en", kEnglish);
  for (const std::string& user :
       {std::string(), std::string("../alice"), std::string(".."), std::string("%s%n%s%n"),
        std::string("a\nb"), std::string(10000, 'u'), std::string("/etc/passwd")}) {
    setenv("USERNAME", user.c_str(), 1);
    EXPECT_EQ(Look("running"), "running") << user;
  }
  EXPECT_THAT(TakeLog(), IsEmpty());
}

// A locale in which the second byte of "à" is a blank, as the no-break space is in ISO 8859-1.
std::locale LocaleOfBytes() {
  using Letters = std::ctype<char>;
  static Letters::mask table[Letters::table_size];
  std::copy_n(Letters::classic_table(), Letters::table_size, table);
  table[0xa0] = Letters::space;
  return {std::locale::classic(), new Letters(table)};
}

TEST_F(CgiTest, TheProgramsLocaleDoesNotChangeTexts) {
  Write("en", "[download]\nrunning=voilà\n");
  const std::locale before = std::locale::global(LocaleOfBytes());
  EXPECT_EQ(Look("running"), "voilà");
  std::locale::global(before);
}

TEST_F(CgiTest, WithoutTextsItDoesNotStart) {
  EXPECT_EQ(FailureToInit(), "/texts/en/strings: No such file or directory");
  Write("de", kGerman);
  EXPECT_EQ(FailureToInit(), "/texts/en/strings: No such file or directory");
}

TEST_F(CgiTest, HalfWrittenTextsAreNotLoaded) {
  const std::string path = "/texts/en/strings: ";
  Write("en", "");
  EXPECT_EQ(FailureToInit(), path + "cut short: Bad message");
  Write("en", "[download]\nrunning=running\nwaiting=wai");
  EXPECT_EQ(FailureToInit(), path + "cut short: Bad message");
  Write("en", "[download]\nrunning\n");
  EXPECT_EQ(FailureToInit(), path + "line 2: '=' character not found in line: Bad message");
  Write("en", "[download\n");
  EXPECT_EQ(FailureToInit(), path + "line 1: unmatched '[': Bad message");
}

TEST_F(CgiTest, HalfWrittenTextsOfOneLanguageAreNotHiddenByAnother) {
  Write("en", kEnglish);
  Write("de", "[download");
  EXPECT_EQ(Look("running"), "running");
  setenv("LANG", "de_DE.UTF-8", 1);
  EXPECT_EQ(FailureToInit(), "/texts/de/strings: cut short: Bad message");
  Write("de", kGerman);
  Write("en", "[download");
  EXPECT_EQ(FailureToInit(), "/texts/en/strings: cut short: Bad message");
}

TEST_F(CgiTest, WhatIsNoRegularFileDoesNotMakeItWait) {
  std::filesystem::create_directories(folder_.Path("texts/en"));
  folder_.MakeFifo("texts/en/strings");
  EXPECT_EQ(FailureToInit(), "/texts/en/strings: Invalid argument");
  std::filesystem::remove(folder_.Path("texts/en/strings"));
  std::filesystem::create_directories(folder_.Path("texts/en/strings"));
  EXPECT_EQ(FailureToInit(), "/texts/en/strings: Invalid argument");
}

}  // namespace
}  // namespace test_support
