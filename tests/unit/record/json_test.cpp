// Records as JSON.
#include <gtest/gtest.h>
#include <json/reader.h>
#include <json/value.h>
#include <json/writer.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "support/record_facts.h"

namespace dorvdl::record {
namespace {

using test_support::ColumnFacts;
using test_support::ColumnType;
using test_support::FactsOf;

Json::Value Parsed(const std::string& text) {
  Json::Value value;
  const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
  EXPECT_TRUE(reader->parse(text.data(), text.data() + text.size(), &value, nullptr)) << text;
  return value;
}

const Json::Value kEmptyObject = Json::objectValue;

template <typename Record>
class RenderedTest : public testing::Test {};
using Rendered = testing::Types<RssFeed, RssFilter, RssItem, Thumbnail>;
TYPED_TEST_SUITE(RenderedTest, Rendered);

TYPED_TEST(RenderedTest, ADefaultRecordTurnsWhatIsNoObjectIntoAnEmptyOne) {
  for (const char* const before : {"null", "{}", "[1]", "7", "\"text\"", "true"}) {
    Json::Value json = Parsed(before);
    TypeParam().ToJson(json);
    EXPECT_EQ(json, kEmptyObject) << before;
  }
}

TYPED_TEST(RenderedTest, EachPresentColumnIsOneKeyOfItsTypeAndOtherKeysStay) {
  for (const ColumnFacts& column : FactsOf<TypeParam>().columns) {
    SCOPED_TRACE(column.name);
    TypeParam record;
    Json::Value json = Parsed("{\"other\": [1], \"" + column.name + "\": \"before\"}");
    record.ToJson(json);
    EXPECT_EQ(json[column.name], "before") << "an absent field is left alone";

    Json::Value expected = json;
    switch (column.type) {
      case ColumnType::kInt:
        SetText(record.mutable_proto(), column, "-2147483648");
        expected[column.name] = Json::Value::minInt;
        break;
      case ColumnType::kBigint:
        SetText(record.mutable_proto(), column, "9007199254740993");  // no double holds this
        expected[column.name] = Json::Int64(9007199254740993);
        break;
      case ColumnType::kBool:
        SetText(record.mutable_proto(), column, "1");
        expected[column.name] = true;
        break;
      case ColumnType::kText:
        SetText(record.mutable_proto(), column, "ü\"");
        expected[column.name] = "ü\"";
    }
    record.ToJson(json);
    EXPECT_EQ(json, expected);
    EXPECT_EQ(json[column.name].type(), expected[column.name].type());
  }
}

TYPED_TEST(RenderedTest, EveryPresentColumnIsRenderedAndNothingElse) {
  TypeParam record;
  for (const ColumnFacts& column : FactsOf<TypeParam>().columns) {
    SetText(record.mutable_proto(), column, column.type == ColumnType::kText ? "" : "0");
  }
  Json::Value json;
  const RecordBase& base = record;
  base.ToJson(json);
  std::vector<std::string> names = FactsOf<TypeParam>().Names();
  std::sort(names.begin(), names.end());
  EXPECT_EQ(json.getMemberNames(), names);
}

template <typename Record>
class NotRenderedTest : public testing::Test {};
using NotRendered = testing::Types<Task, Plugin, Notification, UserSetting>;
TYPED_TEST_SUITE(NotRenderedTest, NotRendered);

TYPED_TEST(NotRenderedTest, TheValueIsEmptied) {
  TypeParam record;
  for (const ColumnFacts& column : FactsOf<TypeParam>().columns) {
    SetText(record.mutable_proto(), column, "1");
  }
  const std::pair<const char*, const char*> cases[] = {
      {"{\"a\": 1}", "{}"}, {"[1]", "[]"}, {"7", "null"}, {"\"text\"", "null"}, {"null", "null"}};
  for (const auto& [before, after] : cases) {
    Json::Value json = Parsed(before);
    record.ToJson(json);
    EXPECT_EQ(json, Parsed(after)) << before;
  }
}

}  // namespace
}  // namespace dorvdl::record
