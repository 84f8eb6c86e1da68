// A user's controller on the tables without owners, whose rows are a user's by the feed or task
// that they belong to.
#include <dorvdl/control/notification_control.h>
#include <dorvdl/control/plugin_control.h>
#include <dorvdl/control/rss_filter_control.h>
#include <dorvdl/control/rss_item_control.h>
#include <dorvdl/control/thumbnail_control.h>
#include <gtest/gtest.h>

#include <vector>

#include "integration/control/user_controller_test.h"
#include "support/connection.h"
#include "support/keys_of.h"

namespace dorvdl::control {
namespace {

using test_support::KeysOf;
using Ids = std::vector<int>;

// What the controls of tables without owners have in common; Carry names the parent.
template <typename ControlType, typename RecordType, void (*Carry)(RecordType& record, int parent)>
struct KindBelow {
  using Control = ControlType;
  using Record = RecordType;
  static Record Of(int parent) {
    Record record;
    Carry(record, parent);
    return record;
  }
};

template <typename Record>
void CarryFeed(Record& record, int feed_id) {
  record.mutable_proto().set_feed_id(feed_id);
}
template <typename Record>
void CarryTask(Record& record, int task_id) {
  record.mutable_proto().set_task_id(task_id);
}

template <typename Kind>
class BelowAParentTest : public UserControllerTest {};

using KindsBelow = testing::Types<
    KindBelow<RssFilterControl, record::RssFilter, CarryFeed<record::RssFilter>>,
    KindBelow<RssItemControl, record::RssItem, CarryFeed<record::RssItem>>,
    KindBelow<ThumbnailControl, record::Thumbnail, CarryTask<record::Thumbnail>>,
    KindBelow<NotificationControl, record::Notification, CarryTask<record::Notification>>>;
TYPED_TEST_SUITE(BelowAParentTest, KindsBelow);

TYPED_TEST(BelowAParentTest, RowsOfOthersAndOfNobodyAreNotThere) {
  typename TypeParam::Control control(this->controller_);
  EXPECT_TRUE(control.Get(1).IsValid());
  for (const int foreign : {2, 3}) {
    EXPECT_FALSE(control.Get(foreign).IsValid()) << foreign;
    this->ExpectAnswer();
    auto change = TypeParam::Of(1);
    change.set_primary_key(foreign);
    EXPECT_TRUE(control.Update(change)) << "reaches none";
    this->ExpectAnswer();
  }
  EXPECT_FALSE(control.Get(4).IsValid());
  EXPECT_TRUE(control.Delete({2, 3, 4})) << "reaches none";
  this->ExpectAnswer();
  EXPECT_TRUE(control.Delete({1, 2, 3, 4}));
  EXPECT_FALSE(control.Get(1).IsValid());
}

TYPED_TEST(BelowAParentTest, ARowCannotBeCreatedBelowWhatIsNotTheUsers) {
  typename TypeParam::Control control(this->controller_);
  for (const int foreign : {2, 9}) {
    auto record = TypeParam::Of(foreign);
    EXPECT_FALSE(control.Create(record)) << foreign;
    this->ExpectRefused();
    EXPECT_FALSE(record.IsValid());
  }
  typename TypeParam::Record without_parent;
  EXPECT_FALSE(control.Create(without_parent));
  this->ExpectRefused();
  auto with_key = TypeParam::Of(1);
  with_key.set_primary_key(77);
  EXPECT_FALSE(control.Create(with_key));
  this->ExpectRefused();
  auto own = TypeParam::Of(1);
  EXPECT_TRUE(control.Create(own));
  this->ExpectAnswer();
  EXPECT_TRUE(control.Get(own.primary_key()).IsValid());
}

TYPED_TEST(BelowAParentTest, ARowCannotBeMovedBelowWhatIsNotTheUsers) {
  typename TypeParam::Control control(this->controller_);
  const auto before = control.Get(1).proto().SerializeAsString();
  for (const int foreign : {2, 9}) {
    auto change = TypeParam::Of(foreign);
    change.set_primary_key(1);
    EXPECT_FALSE(control.Update(change)) << foreign;
    this->ExpectRefused();
  }
  EXPECT_EQ(control.Get(1).proto().SerializeAsString(), before);
  auto same = TypeParam::Of(1);
  same.set_primary_key(1);
  EXPECT_TRUE(control.Update(same));
  this->ExpectAnswer();
}

TYPED_TEST(BelowAParentTest, EachCallIsOneRoundTrip) {
  typename TypeParam::Control control(this->controller_);
  test_support::MessageTrace trace(this->controller_.db_session().session());
  auto record = TypeParam::Of(1);
  EXPECT_TRUE(control.Create(record));
  EXPECT_EQ(trace.RoundTrips(), 1);
  EXPECT_TRUE(control.Update(record));
  EXPECT_EQ(trace.RoundTrips(), 2);
  EXPECT_TRUE(control.Get(record.primary_key()).IsValid());
  EXPECT_EQ(trace.RoundTrips(), 3);
  EXPECT_TRUE(control.Delete({record.primary_key()}));
  EXPECT_EQ(trace.RoundTrips(), 4);
}

TYPED_TEST(BelowAParentTest, APlainControllerReachesAllRowsAsEver) {
  Controller plain;
  plain.set_username("alice");
  typename TypeParam::Control control(plain);
  EXPECT_TRUE(control.Get(2).IsValid());
  EXPECT_TRUE(control.Get(3).IsValid());
  auto record = TypeParam::Of(9);
  record.set_primary_key(77);
  EXPECT_TRUE(control.Create(record));
  EXPECT_TRUE(control.Delete({77}));
}

TEST_F(UserControllerTest, FiltersAreThoseOfTheUsersFeeds) {
  RssFilterControl filters(controller_);
  EXPECT_EQ(KeysOf(filters.List({})), Ids{1});
  EXPECT_EQ(filters.Count({}), 1);
  option::rss_filter::ListOption of_bob;
  of_bob.feed_id = 2;
  EXPECT_TRUE(filters.List(of_bob).empty());
  EXPECT_EQ(filters.Count(of_bob), 0);
  ExpectAnswer();
  EXPECT_TRUE(filters.TestLike("abc", "%B%"));
  EXPECT_TRUE(filters.TestRegexp("abc", "^a"));
}

TEST_F(UserControllerTest, ItemsAreThoseOfTheUsersFeeds) {
  RssItemControl items(controller_);
  EXPECT_EQ(KeysOf(items.List({})), Ids{1});
  EXPECT_EQ(items.Count({}), 1);
  option::rss_item::ListOption of_bob;
  of_bob.feed_id = 2;
  EXPECT_TRUE(items.List(of_bob).empty());
  for (const int foreign : {2, 9}) {
    EXPECT_TRUE(items.UpdateAllNew(foreign, false)) << "reaches none";
    EXPECT_TRUE(items.DeleteByFeedId(foreign)) << "reaches none";
    ExpectAnswer();
  }
  EXPECT_TRUE(items.UpdateAllNew(1, false));
  EXPECT_FALSE(items.Get(1).proto().is_new());
  EXPECT_TRUE(items.DeleteByFeedId(1));
  EXPECT_EQ(items.Count({}), 0);
}

TEST_F(UserControllerTest, ThumbnailsAreThoseOfTheUsersTasks) {
  ThumbnailControl thumbnails(controller_);
  EXPECT_EQ(KeysOf(thumbnails.List({})), Ids{1});
  EXPECT_EQ(thumbnails.Count({}), 1);
  EXPECT_EQ(thumbnails.ListFileIndexByTaskID(1), Ids{5});
  EXPECT_TRUE(thumbnails.ListFileIndexByTaskID(2).empty());
  EXPECT_TRUE(thumbnails.ListFileIndexByTaskID(9).empty());
  ExpectAnswer();
}

TEST_F(UserControllerTest, NotificationsAreThoseOfTheUsersTasks) {
  NotificationControl notifications(controller_);
  EXPECT_EQ(KeysOf(notifications.List()), Ids{1});
  EXPECT_EQ(KeysOf(notifications.ListFromView()), Ids{1});
  EXPECT_EQ(KeysOf(notifications.ListAll({})), Ids{1});
  EXPECT_EQ(notifications.Count(), 1);
  EXPECT_TRUE(notifications.DeleteEarlierThan(4));
  EXPECT_TRUE(notifications.List().empty());
  ExpectAnswer();
}

TEST_F(UserControllerTest, PluginStatesAreThoseOfTheUsersTasks) {
  PluginControl plugins(controller_);
  EXPECT_EQ(KeysOf(plugins.ListActivePlugin()), Ids{1});
  EXPECT_EQ(KeysOf(plugins.ListAll({})), Ids{1});
  EXPECT_EQ(plugins.Count(), 1);
  for (const int foreign : {2, 9}) {
    EXPECT_FALSE(plugins.Get(foreign).IsValid());
    ExpectAnswer();
    record::Plugin plugin = Change<record::Plugin>(foreign);
    plugin.mutable_proto().set_pid(0);
    EXPECT_FALSE(plugins.Update(plugin)) << "names another's task";
    ExpectRefused();
    EXPECT_FALSE(plugins.Create(plugin));
    ExpectRefused();
  }
  EXPECT_TRUE(plugins.Delete({2, 9})) << "reaches none";
  ExpectAnswer();

  record::Plugin own = Change<record::Plugin>(1);
  own.mutable_proto().set_pid(0);
  EXPECT_TRUE(plugins.Update(own));
  EXPECT_TRUE(plugins.ListActivePlugin().empty());
  EXPECT_TRUE(plugins.Delete({1}));
  EXPECT_TRUE(plugins.Create(own)) << "its key is its task";
  EXPECT_TRUE(plugins.Get(1).IsValid());
}

}  // namespace
}  // namespace dorvdl::control
