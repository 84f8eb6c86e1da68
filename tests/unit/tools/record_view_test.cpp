#include "rendering/record_view.h"

#include <dorvdl/proto/record.pb.h>
#include <gtest/gtest.h>

#include <sstream>

#include "rendering/text.h"

namespace dorvdl::ctl {
namespace {

class RecordViewTest : public testing::Test {
 protected:
  RecordViewTest() { UseUtf8(); }

  static std::string Printed(const Json::Value& rows, int width = 0) {
    std::ostringstream out;
    TableOf(*record::proto::RssItem::descriptor(), {"feed_id", "title", "size", "is_new"}, "title",
            rows)
        .Print(out, width);
    return out.str();
  }

  static Json::Value Row() {
    Json::Value row;
    row["feed_id"] = 12345678;
    row["title"] = "an item's title";
    row["size"] = 1536;
    row["is_new"] = true;
    row["url"] = "not listed";
    return row;
  }
};

TEST_F(RecordViewTest, ColumnsAreTheFieldsInTheirOrder) {
  EXPECT_EQ(ColumnsOf(*record::proto::Notification::descriptor()),
            (std::vector<std::string>{"id", "task_id", "type", "create_time"}));
}

TEST_F(RecordViewTest, ATableHasTheColumnsAskedForAndNumbersToTheRight) {
  Json::Value rows(Json::arrayValue);
  EXPECT_EQ(Printed(rows), "FEED ID  TITLE  SIZE  IS NEW\n");
  rows.append(Row());
  rows.append(Row());
  rows[1]["feed_id"] = 7;
  EXPECT_EQ(Printed(rows),
            " FEED ID  TITLE               SIZE  IS NEW\n"
            "12345678  an item's title  1.5 KiB  yes\n"
            "       7  an item's title  1.5 KiB  yes\n");
}

TEST_F(RecordViewTest, OneColumnGivesWayInANarrowTerminal) {
  Json::Value rows(Json::arrayValue);
  rows.append(Row());
  EXPECT_EQ(Printed(rows, 38),
            " FEED ID  TITLE            SIZE  IS NEW\n"
            "12345678  an item's t…  1.5 KiB  yes\n");
}

TEST_F(RecordViewTest, ARowIsPrintedInFullInTheOrderOfTheColumns) {
  Json::Value row = Row();
  row["title"] = "a\x1b[2J";
  row["url"] = "";
  std::ostringstream out;
  PrintRow(out, {"title", "url", "link", "size"}, row);
  EXPECT_EQ(out.str(),
            "title               a\\x1b[2J\n"
            "url\n"
            "size                1.5 KiB (1536 bytes)\n");
}

}  // namespace
}  // namespace dorvdl::ctl
