#include "reading/json_text.h"

#include <gtest/gtest.h>

namespace dorvdl::ctl {
namespace {

TEST(JsonTextTest, EveryKindOfValueIsRead) {
  EXPECT_EQ(ParseJson("null"), Json::Value());
  EXPECT_EQ(ParseJson("\"ä\""), Json::Value("ä"));
  EXPECT_EQ(ParseJson("[true]").value()[0], Json::Value(true));
  EXPECT_EQ(ParseJson(R"({"a": 9223372036854775807})").value()["a"].asInt64(), 9223372036854775807);
}

TEST(JsonTextTest, WhatIsNoJsonIsNothing) {
  for (const char* const text : {"", "{", "[1,]", "{} x", "yes", "'a'"}) {
    EXPECT_EQ(ParseJson(text), std::nullopt) << text;
  }
  EXPECT_EQ(ParseJson(std::string(2000, '[')), std::nullopt);
}

}  // namespace
}  // namespace dorvdl::ctl
