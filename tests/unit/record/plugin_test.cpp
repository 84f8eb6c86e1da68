// The JSON columns of a plug-in record as values.
#include <dorvdl/record/plugin.h>
#include <gtest/gtest.h>
#include <json/writer.h>

#include <ostream>
#include <string>
#include <vector>

#include "support/record_facts.h"
#include "support/syslog_capture.h"

namespace dorvdl::record {
namespace {

using test_support::kError;
using test_support::LogLine;
using test_support::TakeLog;

struct JsonColumn {
  const char* name;
  Json::Value (Plugin::*get)() const;
  void (Plugin::*set)(const Json::Value&);

  friend std::ostream& operator<<(std::ostream& out, const JsonColumn& column) {
    return out << column.name;
  }
};

class PluginJsonTest : public testing::TestWithParam<JsonColumn> {
 protected:
  PluginJsonTest() { TakeLog(); }

  void SetStored(const std::string& text) { SetText(plugin_.mutable_proto(), column_, text); }
  std::string Stored() const { return GetText(plugin_.proto(), column_); }
  Json::Value Get() const { return (plugin_.*GetParam().get)(); }
  void Set(const Json::Value& value) { (plugin_.*GetParam().set)(value); }

  Plugin plugin_;
  const test_support::ColumnFacts column_{GetParam().name, test_support::ColumnType::kText};
};

INSTANTIATE_TEST_SUITE_P(
    EveryColumn, PluginJsonTest,
    testing::Values(JsonColumn{"process", &Plugin::process, &Plugin::set_process},
                    JsonColumn{"attributes", &Plugin::attributes, &Plugin::set_attributes},
                    JsonColumn{"response", &Plugin::response, &Plugin::set_response},
                    JsonColumn{"result", &Plugin::result, &Plugin::set_result}),
    [](const auto& instance) { return instance.param.name; });

TEST_P(PluginJsonTest, AValueComesBackEqual) {
  Json::Value object;
  object["list"].append(2.5);
  object["name"] = "ü \\ \" \n /* */ \x01";
  object["nothing"] = Json::Value();
  for (const Json::Value& value :
       {object, Json::Value(Json::objectValue), Json::Value(Json::arrayValue), Json::Value(),
        Json::Value(""), Json::Value("{"), Json::Value(true), Json::Value(-7),
        Json::Value(Json::Int64(9007199254740993))}) {
    Set(value);
    EXPECT_EQ(Get(), value);
    EXPECT_EQ(plugin_.GetInsertFields(), std::vector<std::string>{GetParam().name});
  }
  EXPECT_EQ(TakeLog(), std::vector<LogLine>{});
}

TEST_P(PluginJsonTest, Utf8StaysUtf8InTheStoredText) {
  Json::Value value;
  value["naïve"] = "日本😀";
  Set(value);
  EXPECT_EQ(Stored(), "{\"naïve\":\"日本😀\"}");
}

TEST_P(PluginJsonTest, AnAbsentColumnAndTheTextNullAreNull) {
  EXPECT_TRUE(Get().isNull());
  SetStored("null");
  EXPECT_TRUE(Get().isNull());
  EXPECT_EQ(TakeLog(), std::vector<LogLine>{});
}

TEST_P(PluginJsonTest, ATextThatIsNoJsonIsNullAndLogged) {
  const std::string too_deep = std::string(2000, '[') + std::string(2000, ']');
  for (const std::string& text :
       {std::string(), std::string("nonsense"), std::string("{\"a\":1"), std::string("[1,]"),
        std::string("{\"a\":1,\"b\":}"), std::string("'a'"), too_deep}) {
    SetStored(text);
    EXPECT_TRUE(Get().isNull()) << text;
    EXPECT_EQ(TakeLog(),
              (std::vector<LogLine>{
                  {kError, "record/plugin", std::string("Failed to parse ") + GetParam().name}}))
        << text;
  }
}

}  // namespace
}  // namespace dorvdl::record
