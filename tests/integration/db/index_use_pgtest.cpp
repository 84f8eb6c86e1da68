// The indexes of the tables beside the download queue serve the statements that the accessors send.
#include <dorvdl/db/rss_feed.h>
#include <dorvdl/db/rss_filter.h>
#include <dorvdl/db/rss_item.h>
#include <dorvdl/db/thumbnail.h>
#include <gtest/gtest.h>
#include <soci/soci.h>

#include "integration/db/table_test.h"

namespace dorvdl::db {
namespace {

class IndexUseTest : public TableTest {
 protected:
  // Fills the table with what the query gives for n from 1 to `count`.
  void Fill(const std::string& columns, const std::string& values, int count) {
    const std::string table = columns.substr(0, columns.find(' '));
    raw_.Run("INSERT INTO " + columns + " SELECT " + values + " FROM generate_series(1, " +
             std::to_string(count) + ") n");
    raw_.Run("VACUUM ANALYZE " + table);
  }

  void FillItems() {
    Fill("rss_item (feed_id, title, date, is_new)", "n % 20, md5(n::text), n, (n % 500 = 0)::int",
         10000);
  }

  // The indexes beside the primary keys that the server has read while `operation` ran.
  template <typename Operation>
  Rows IndexesOf(const Operation& operation) {
    raw_.Run(
        "DROP TABLE IF EXISTS before; CREATE TEMPORARY TABLE before AS "
        "SELECT indexrelid, idx_scan FROM pg_stat_user_indexes");
    operation();
    *Session().session().handle() << "SELECT pg_stat_force_next_flush()";
    return raw_.Run(
        "SELECT indexrelname FROM pg_stat_user_indexes now JOIN before USING (indexrelid) "
        "WHERE now.idx_scan > before.idx_scan ORDER BY indexrelname");
  }

  // The indexes that a list of items with this option reads.
  Rows IndexesOfItems(const control::option::rss_item::ListOption& option) {
    return IndexesOf([&] { EXPECT_FALSE(RssItem(Session()).List(option).empty()); });
  }
};

TEST_F(IndexUseTest, AFeedsItems) {
  FillItems();
  EXPECT_EQ(IndexesOf([this] { EXPECT_TRUE(RssItem(Session()).DeleteByFeedId(7)); }),
            Rows{"rss_item_feed"});
  control::option::rss_item::ListOption newest;
  newest.feed_id = 3;
  newest.common.sort_by = "date";
  newest.common.ascending = false;
  newest.common.limit = 10;
  EXPECT_EQ(IndexesOfItems(newest), Rows{"rss_item_feed"});
}

TEST_F(IndexUseTest, AFeedsNewItems) {
  FillItems();
  control::option::rss_item::ListOption option;
  option.feed_id = 0;
  option.is_new = true;
  EXPECT_EQ(IndexesOfItems(option), Rows{"rss_item_feed_new"});
}

TEST_F(IndexUseTest, ItemsByTitle) {
  FillItems();
  control::option::rss_item::ListOption like;
  like.title_like = "%C4CA4238%";  // md5('1')
  EXPECT_EQ(IndexesOfItems(like), Rows{"rss_item_title"});
  control::option::rss_item::ListOption regex;
  regex.title_regex = "^c4ca4238a0b9";
  EXPECT_EQ(IndexesOfItems(regex), Rows{"rss_item_title"});
}

TEST_F(IndexUseTest, AUsersFeeds) {
  Fill("rss_feed (username)", "'user' || n", 5000);
  const std::string user = "User77";
  EXPECT_EQ(IndexesOf([&] { EXPECT_EQ(RssFeed(Session(), user).List({}).size(), 1U); }),
            Rows{"rss_feed_user"});
  EXPECT_EQ(IndexesOf([&] { EXPECT_EQ(RssFeed(Session(), user).ListId({}).size(), 1U); }),
            Rows{"rss_feed_user"});
}

TEST_F(IndexUseTest, AFeedsFilters) {
  Fill("rss_filter (feed_id)", "n", 5000);
  control::option::rss_filter::ListOption option;
  option.feed_id = 77;
  EXPECT_EQ(IndexesOf([&] { EXPECT_EQ(RssFilter(Session()).List(option).size(), 1U); }),
            Rows{"rss_filter_feed"});
}

TEST_F(IndexUseTest, ATasksThumbnails) {
  Fill("thumbnail (task_id, file_index)", "n / 4, n % 4", 5000);
  control::option::thumbnail::ListOption option;
  option.task_id = 77;
  option.file_index = 2;
  EXPECT_EQ(IndexesOf([&] { EXPECT_EQ(Thumbnail(Session()).List(option).size(), 1U); }),
            Rows{"thumbnail_task"});
  EXPECT_EQ(
      IndexesOf([&] { EXPECT_EQ(Thumbnail(Session()).ListFileIndexByTaskID(77).size(), 4U); }),
      Rows{"thumbnail_task"});
}

}  // namespace
}  // namespace dorvdl::db
