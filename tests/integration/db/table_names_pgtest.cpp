// The tables and keys that the accessors name, and where in their virtual tables they do.
#include <dorvdl/db/download_queue.h>
#include <dorvdl/db/notification.h>
#include <dorvdl/db/rss_feed.h>
#include <dorvdl/db/rss_filter.h>
#include <dorvdl/db/rss_item.h>
#include <dorvdl/db/task_plugin.h>
#include <dorvdl/db/thumbnail.h>
#include <gtest/gtest.h>

#include <type_traits>

#include "integration/db/table_test.h"
#include "support/slot.h"

namespace dorvdl::db {
namespace {

class TableNamesTest : public TableTest {
 protected:
  // "table key", asked through the operator.
  template <typename Record>
  static std::string Names(DBOperator<Record>&& table) {
    return std::string(table.GetTableName()) + " " + table.GetPrimaryKeyName();
  }
};

TEST_F(TableNamesTest, EachAccessorNamesItsTableAndKey) {
  EXPECT_EQ(Names(controller_.UseWithName<DownloadQueue>()), "download_queue task_id");
  EXPECT_EQ(Names(controller_.UseWithName<RssFeed>()), "rss_feed id");
  EXPECT_EQ(Names(controller_.Use<RssFilter>()), "rss_filter id");
  EXPECT_EQ(Names(controller_.Use<RssItem>()), "rss_item id");
  EXPECT_EQ(Names(controller_.Use<Thumbnail>()), "thumbnail thumbnail_id");
  EXPECT_EQ(Names(controller_.Use<TaskPlugin>()), "task_plugin task_id");
  EXPECT_EQ(Names(controller_.Use<Notification>()), "notification id");
}

template <typename Table>
class TableShapeTest : public testing::Test {};

using Tables =
    testing::Types<DownloadQueue, RssFeed, RssFilter, RssItem, Thumbnail, TaskPlugin, Notification>;
TYPED_TEST_SUITE(TableShapeTest, Tables);

TYPED_TEST(TableShapeTest, TheNamesFollowTheVirtualDestructor) {
  EXPECT_TRUE(std::has_virtual_destructor_v<TypeParam>);
  EXPECT_EQ(test_support::Slot(&TypeParam::GetTableName), 2);
  EXPECT_EQ(test_support::Slot(&TypeParam::GetPrimaryKeyName), 3);
}

}  // namespace
}  // namespace dorvdl::db
