#include "rendering/column_text.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace dorvdl::ctl {
namespace {

std::string Full(const std::string& column, const Json::Value& value) {
  return ColumnText(column, value, Detail::kFull);
}

std::string Brief(const std::string& column, const Json::Value& value) {
  return ColumnText(column, value, Detail::kBrief);
}

TEST(ColumnTextTest, TextsAndNumbersStandAsTheyAre) {
  EXPECT_EQ(Full("title", "a\nb"), "a\nb");
  EXPECT_EQ(Full("feed_id", -7), "-7");
  EXPECT_EQ(Brief("title", ""), "");
}

TEST(ColumnTextTest, TruthValuesAreYesAndNo) {
  EXPECT_EQ(Full("is_new", true), "yes");
  EXPECT_EQ(Brief("enable", false), "no");
}

TEST(ColumnTextTest, TimesAreReadable) {
  setenv("TZ", "UTC", 1);
  tzset();
  for (const char* const column : {"created_time", "started_time", "completed_time", "date",
                                   "waiting_until_time", "create_time", "last_update"}) {
    EXPECT_EQ(Full(column, 86400), "1970-01-02 00:00:00 +0000") << column;
    EXPECT_EQ(Brief(column, 0), "-") << column;
  }
  unsetenv("TZ");
  tzset();
}

TEST(ColumnTextTest, SizesNameTheirBytesInFullOnly) {
  EXPECT_EQ(Full("size", Json::Int64{1610612736}), "1.5 GiB (1610612736 bytes)");
  EXPECT_EQ(Brief("size", Json::Int64{1610612736}), "1.5 GiB");
  EXPECT_EQ(Full("total_size", 10), "10 B");
}

TEST(ColumnTextTest, CodesAreExplained) {
  EXPECT_EQ(Full("status", 105), "105 (disk-full)");
  EXPECT_EQ(Full("status", 77), "77");
  EXPECT_EQ(Brief("status", 105), "disk-full");
  EXPECT_EQ(Full("task_flags", 4), "4 (bt)");
}

TEST(ColumnTextTest, ObjectIdsAreUnsigned) { EXPECT_EQ(Full("file_oid", -1), "4294967295"); }

TEST(ColumnTextTest, JsonStandsOnOneLine) {
  Json::Value value;
  value["a"].append("x");
  EXPECT_EQ(Full("attributes", value), R"({"a":["x"]})");
  EXPECT_EQ(Full("result", Json::Value()), "null");
  EXPECT_EQ(Full("extra_data", "text"), "\"text\"");
}

TEST(ColumnTextTest, ASecretShowsOnlyThatThereIsOne) {
  EXPECT_EQ(Full("unzip_password", "hunter2"), "(set)");
  EXPECT_EQ(Brief("unzip_password", "hunter2"), "(set)");
  EXPECT_EQ(Full("unzip_password", ""), "");
  EXPECT_TRUE(IsSecret("unzip_password"));
  EXPECT_FALSE(IsSecret("title"));
  EXPECT_FALSE(IsSecret("status"));
}

}  // namespace
}  // namespace dorvdl::ctl
