// Numbers in the JSON columns: which texts are numbers, and that no locale of the program's has a
// say in what they mean.
#include <dorvdl/record/plugin.h>
#include <dorvdl/record/task.h>
#include <gtest/gtest.h>

#include <array>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <locale>
#include <optional>
#include <string>

#include "support/syslog_capture.h"
#include "support/temporary_folder.h"

namespace dorvdl::record {
namespace {

// The value that a column holding @p text has; nothing when it is no JSON.
std::optional<Json::Value> Read(const std::string& text) {
  Plugin plugin;
  plugin.mutable_proto().set_process(text);
  test_support::TakeLog();
  Json::Value value = plugin.process();
  return test_support::TakeLog().empty() ? std::optional<Json::Value>(value) : std::nullopt;
}

std::string Written(const Json::Value& value) {
  Plugin plugin;
  plugin.set_process(value);
  return plugin.proto().process();
}

Json::Value List(const std::initializer_list<Json::Value>& values) {
  Json::Value list(Json::arrayValue);
  for (const Json::Value& value : values) {
    list.append(value);
  }
  return list;
}

void ExpectNumbersToBeReadAndWritten() {
  EXPECT_EQ(Read("1.5"), Json::Value(1.5));
  EXPECT_EQ(Read("1.500"), Json::Value(1.5)) << "no thousands";
  EXPECT_EQ(Read("-1234567.25e-1"), Json::Value(-123456.725));
  EXPECT_EQ(Read("[1.5, 2, {\"a\": 0.25}]"), List({1.5, 2, [] {
                                                     Json::Value object;
                                                     object["a"] = 0.25;
                                                     return object;
                                                   }()}));
  EXPECT_EQ(Read("12345678901234567"), Json::Value(Json::Int64(12345678901234567)));
  EXPECT_EQ(Written(1.5), "1.5");
  EXPECT_EQ(Written(1234567.5), "1234567.5");
  EXPECT_EQ(Written(1234567), "1234567");
  EXPECT_EQ(Written(Json::Int64(-12345678901234567)), "-12345678901234567");
}

class JsonNumberTest : public testing::Test {
 protected:
  ~JsonNumberTest() override {
    std::locale::global(std::locale::classic());
    std::setlocale(LC_ALL, "C");
  }
};

TEST_F(JsonNumberTest, NumbersAreReadAndWritten) { ExpectNumbersToBeReadAndWritten(); }

TEST_F(JsonNumberTest, TheProgramsCppLocaleHasNoSay) {
  struct Grouping : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  std::locale::global(std::locale(std::locale::classic(), new Grouping));
  ExpectNumbersToBeReadAndWritten();
}

TEST_F(JsonNumberTest, TheProgramsCLocaleHasNoSay) {
  // Made here, for a machine may have none but "C". Its point is none that a library would foresee.
  const test_support::TemporaryFolder folder;
  const std::string source = folder.Write(
      "source",
      "LC_NUMERIC\ndecimal_point \";\"\nthousands_sep \".\"\ngrouping 3\nEND LC_NUMERIC\n");
  const std::string make =
      "localedef --quiet --force -i " + source + " " + folder.Path("xx_XX") + " >/dev/null 2>&1";
  std::system(make.c_str());  // fails for the categories that are not there
  setenv("LOCPATH", folder.Path("").c_str(), 1);
  ASSERT_NE(std::setlocale(LC_NUMERIC, "xx_XX"), nullptr);
  std::array<char, 8> half{};
  std::snprintf(half.data(), half.size(), "%g", 0.5);
  ASSERT_STREQ(half.data(), "0;5");
  ExpectNumbersToBeReadAndWritten();
  unsetenv("LOCPATH");
}

TEST_F(JsonNumberTest, WhatIsNoJsonNumberIsRefused) {
  for (const std::string number :
       {"+1",   "+1.5",  "01",    "-01", "00",       "01.5",      ".5",   "-.5",  "1.",
        "1.e3", "-",     "+",     "1e",  "1e+",      "1.5e",      "--1",  "-+1",  "1-2",
        "0x1",  "1_000", "1.2.3", "NaN", "Infinity", "-Infinity", "-inf", "1e400"}) {
    EXPECT_EQ(Read(number), std::nullopt) << number;
    EXPECT_EQ(Read("[" + number + "]"), std::nullopt) << number;
    EXPECT_EQ(Read("{\"a\": 1, \"b\": " + number + "}"), std::nullopt) << number;
  }
}

TEST_F(JsonNumberTest, EveryJsonNumberIsRead) {
  for (const char* const zero : {"0", "-0"}) {
    EXPECT_EQ(Read(zero), Json::Value(0)) << zero;
  }
  EXPECT_EQ(Read("-2147483648"), Json::Value(Json::Value::minInt));
  EXPECT_EQ(Read("18446744073709551615"), Json::Value(Json::Value::maxUInt64));
  EXPECT_EQ(Read("18446744073709551616"), Json::Value(18446744073709551616.0));
  EXPECT_EQ(Read("-0.0"), Json::Value(-0.0));
  EXPECT_EQ(Read("0e0"), Json::Value(0.0));
  EXPECT_EQ(Read("1E+2"), Json::Value(100.0));
  EXPECT_EQ(Read("10e-1"), Json::Value(1.0));
  EXPECT_EQ(Read("0.1"), Json::Value(0.1));
  EXPECT_EQ(Read("1e-400"), Json::Value(0.0));
  EXPECT_EQ(Read("1.5")->type(), Json::realValue);
  EXPECT_EQ(Read("1e2")->type(), Json::realValue);
  EXPECT_EQ(Read("1")->type(), Json::intValue);
}

TEST_F(JsonNumberTest, WhatLooksLikeANumberInATextOrACommentIsNone) {
  EXPECT_EQ(Read(R"(["+1", "\"+1", "\\", 1.5])"), List({"+1", "\"+1", "\\", 1.5}));
  EXPECT_EQ(Read("/* +1 \" */ [1, // +1 \"\n 0.5, // .5\r 2 /* 01 **/]"), List({1, 0.5, 2}));
  EXPECT_EQ(Read("[1, // .5\r +1]"), std::nullopt) << "the comment is over";
  EXPECT_EQ(Read("{\"01\": 0.5}")->getMemberNames(), Json::Value::Members{"01"});
}

TEST_F(JsonNumberTest, WhatFollowsTheValueIsNotLookedAt) {
  EXPECT_EQ(Read("[0.5] +1"), List({0.5}));
}

TEST_F(JsonNumberTest, ExtraDataKeepsWhatStandsBeforeTheNumberThatIsNone) {
  Task task;
  task.mutable_proto().set_extra_data(R"("{\"a\":0.5,\"b\":+1}")");
  test_support::TakeLog();
  EXPECT_EQ(task.extra_data()["a"], Json::Value(0.5));
  EXPECT_EQ(test_support::TakeLog().size(), 1U);
  task.mutable_proto().set_extra_data("\"[0.5," + std::string(2000, '[') + "\"");
  EXPECT_EQ(task.extra_data()[0], Json::Value(0.5)) << "too deep";
  task.mutable_proto().set_extra_data(R"("{\"a\":1.5}")");
  EXPECT_EQ(task.extra_data()["a"], Json::Value(1.5));
}

}  // namespace
}  // namespace dorvdl::record
