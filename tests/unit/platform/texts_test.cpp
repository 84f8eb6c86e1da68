// The texts that come with the package.
#include <dorv/cgi.h>
#include <dorvdl/record/task_status.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <string>

namespace {

constexpr char kPackage[] = DORVDL_TEST_SOURCE_DIR "/platform";

// The explanation of a status; empty when there is none.
std::string Explain(int status, const char* language) {
  setenv("LC_ALL", language, 1);
  const auto name = dorvdl::record::GetStatusName(status);
  DorvCgiContext context = {};
  const bool loaded =
      DorvCgiInit(kPackage, &context) != 0 && DorvCgiLoadText(&context, name.section, 0) != 0;
  std::string text = loaded ? DorvCgiGetText(&context, name.key, "") : "";
  DorvCgiFree(&context);
  return text;
}

TEST(TextsTest, EveryStatusIsExplainedInEveryLanguage) {
  std::set<std::string> keys, english, german;
  for (int status = 1; status <= 131; ++status) {
    keys.insert(dorvdl::record::GetStatusName(status).key);
    english.insert(Explain(status, "en"));
    german.insert(Explain(status, "de"));
  }
  EXPECT_EQ(english.count(""), 0U);
  EXPECT_EQ(german.count(""), 0U);
  EXPECT_EQ(english.size(), keys.size());
  EXPECT_EQ(german.size(), keys.size());
  for (const std::string& text : english) {
    EXPECT_EQ(german.count(text), 0U) << text;
  }
}

}  // namespace
