// What some controls offer beyond creating, updating, deleting and getting: each passes its
// arguments and the result of the table on.
#include <dorvdl/control/notification_control.h>
#include <dorvdl/control/plugin_control.h>
#include <dorvdl/control/rss_feed_control.h>
#include <dorvdl/control/rss_filter_control.h>
#include <dorvdl/control/rss_item_control.h>
#include <dorvdl/control/thumbnail_control.h>
#include <gtest/gtest.h>
#include <soci/soci.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/database.h"
#include "support/keys_of.h"
#include "support/syslog_capture.h"

namespace dorvdl::control {
namespace {

using test_support::kError;
using test_support::KeysOf;
using test_support::LogLine;
using test_support::TakeLog;
using Ids = std::vector<int>;
using Rows = std::vector<std::string>;

template <typename Control>
class OwnOperationsTest : public test_support::DatabaseTest {
 protected:
  Controller controller_;
  Control control_{controller_};
};

using RssFeedControlTest = OwnOperationsTest<RssFeedControl>;
using RssFilterControlTest = OwnOperationsTest<RssFilterControl>;
using RssItemControlTest = OwnOperationsTest<RssItemControl>;
using ThumbnailControlTest = OwnOperationsTest<ThumbnailControl>;
using PluginControlTest = OwnOperationsTest<PluginControl>;
using NotificationControlTest = OwnOperationsTest<NotificationControl>;

TEST_F(RssFeedControlTest, ListCountAndListIdReachTheUsersFeeds) {
  raw_.Run(
      "INSERT INTO rss_feed (id, username, url) VALUES (1, 'alice', 'b'), (2, 'bob', 'a'), "
      "(3, 'ALICE', 'a')");
  interface::RssFeedInterface& feeds = control_;
  controller_.set_username("Alice");
  option::rss_feed::ListOption option;
  option.common.sort_by = "url";
  EXPECT_EQ(KeysOf(feeds.List(option)), (Ids{3, 1}));
  option.url = "a";
  EXPECT_EQ(KeysOf(feeds.List(option)), Ids{3});
  EXPECT_EQ(feeds.Count(option), 1);
  Ids ids = control_.ListId(option);
  std::sort(ids.begin(), ids.end());
  EXPECT_EQ(ids, (Ids{1, 3})) << "the url does not count";
  option.common.limit = 1;
  EXPECT_EQ(control_.ListId(option).size(), 1U);
  controller_.set_username("");
  EXPECT_EQ(feeds.Count({}), 3);
}

TEST_F(RssFeedControlTest, CreateStampsNoUser) {
  controller_.set_username("alice");
  record::RssFeed feed;
  feed.mutable_proto().set_url("http://x");
  EXPECT_TRUE(control_.Create(feed));
  EXPECT_EQ(raw_.Run("SELECT username, url FROM rss_feed"), Rows{"|http://x"});
}

TEST_F(RssFilterControlTest, ListAndCountTakeTheOption) {
  raw_.Run("INSERT INTO rss_filter (id, feed_id) VALUES (1, 1), (2, 2), (3, 1)");
  interface::RssFilterInterface& filters = control_;
  option::rss_filter::ListOption option;
  option.feed_id = 1;
  option.common.sort_by = "id";
  option.common.ascending = false;
  EXPECT_EQ(KeysOf(filters.List(option)), (Ids{3, 1}));
  EXPECT_EQ(filters.Count(option), 2);
}

TEST_F(RssFilterControlTest, PatternsAreTestedEachInItsOwnWay) {
  EXPECT_TRUE(control_.TestLike("abc", "A%"));
  EXPECT_FALSE(control_.TestLike("abc", "^a"));
  EXPECT_TRUE(control_.TestRegexp("abc", "^a"));
  EXPECT_FALSE(control_.TestRegexp("abc", "^A"));
  EXPECT_TRUE(control_.TestRegexp("'it''s'", "^it's$"));
}

TEST_F(RssFilterControlTest, APatternThatIsNoneIsFalseAndTheNextCallWorks) {
  controller_.db_session();
  TakeLog();
  EXPECT_FALSE(control_.TestRegexp("a", "("));
  const std::vector<LogLine> lines = TakeLog();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].source, "dbquery/query");
  EXPECT_EQ(lines[1],
            (LogLine{kError, "db/rss_filter", "Failed to execute test regexp operation"}));
  EXPECT_TRUE(control_.TestRegexp("a", "a"));
}

TEST_F(RssItemControlTest, ListAndCountTakeTheOption) {
  raw_.Run("INSERT INTO rss_item (id, title) VALUES (1, 'one'), (2, 'two'), (3, 'three')");
  interface::RssItemInterface& items = control_;
  option::rss_item::ListOption option;
  option.title_like = "T%";
  option.common.sort_by = "title";
  EXPECT_EQ(KeysOf(items.List(option)), (Ids{3, 2}));
  EXPECT_EQ(items.Count(option), 2);
  option.title_regex = "(";
  EXPECT_EQ(items.Count(option), -1);
  EXPECT_EQ(items.Count({}), 3);
}

TEST_F(RssItemControlTest, AllItemsOfAFeedAreMarkedAndDeleted) {
  raw_.Run("INSERT INTO rss_item (id, feed_id, is_new) VALUES (1, 1, 0), (2, 1, 1), (3, 2, 0)");
  controller_.set_username("somebody");
  EXPECT_TRUE(control_.UpdateAllNew(1, true));
  EXPECT_EQ(raw_.Run("SELECT is_new FROM rss_item ORDER BY id"), (Rows{"1", "1", "0"}));
  EXPECT_TRUE(control_.UpdateAllNew(1, false));
  EXPECT_EQ(raw_.Run("SELECT is_new FROM rss_item ORDER BY id"), (Rows{"0", "0", "0"}));
  EXPECT_TRUE(control_.UpdateAllNew(99, true));
  EXPECT_TRUE(control_.DeleteByFeedId(1));
  EXPECT_EQ(raw_.Run("SELECT id FROM rss_item"), Rows{"3"});
}

TEST_F(ThumbnailControlTest, ListsTakeTheTaskAndTheFile) {
  raw_.Run("INSERT INTO thumbnail (task_id, file_index) VALUES (1, 5), (2, 5), (1, 6), (1, 6)");
  interface::ThumbnailInterface& thumbnails = control_;
  option::thumbnail::ListOption option;
  option.task_id = 1;
  option.file_index = 6;
  option.common.offset = 1;
  EXPECT_EQ(KeysOf(thumbnails.List(option)), Ids{4});
  Ids indexes = thumbnails.ListFileIndexByTaskID(1);
  std::sort(indexes.begin(), indexes.end());
  EXPECT_EQ(indexes, (Ids{5, 6}));
  EXPECT_EQ(thumbnails.ListFileIndexByTaskID(3), Ids{});
}

TEST_F(ThumbnailControlTest, AFileIndexThatIsNullIsThrown) {
  raw_.Run("INSERT INTO thumbnail (task_id, file_index) VALUES (1, NULL)");
  EXPECT_THROW(control_.ListFileIndexByTaskID(1), soci::soci_error);
}

TEST_F(PluginControlTest, ActivePluginsAreListed) {
  raw_.Run("INSERT INTO task_plugin (task_id, pid) VALUES (1, 0), (2, 5)");
  EXPECT_EQ(KeysOf(control_.ListActivePlugin()), Ids{2});
}

TEST_F(NotificationControlTest, TheTableAndTheViewAreListed) {
  raw_.Run("INSERT INTO notification (id) VALUES (2), (1)");
  interface::NotificationInterface& notifications = control_;
  EXPECT_EQ(KeysOf(notifications.List()), (Ids{2, 1})) << "in the table's order";
  EXPECT_EQ(KeysOf(control_.ListFromView()), (Ids{1, 2}));
}

TEST_F(NotificationControlTest, DeleteEarlierThanIncludesTheId) {
  raw_.Run("INSERT INTO notification (id, create_time) VALUES (1, 9), (2, 8), (3, 0)");
  EXPECT_TRUE(control_.DeleteEarlierThan(2));
  EXPECT_EQ(raw_.Run("SELECT id FROM notification"), Rows{"3"});
  EXPECT_TRUE(control_.DeleteEarlierThan(2)) << "reaching none is a success";
}

}  // namespace
}  // namespace dorvdl::control
