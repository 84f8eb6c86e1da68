// A user's controller: every operation of every control, against the rows of a second user and rows
// whose feed or task is gone.
#include <dorvdl/control/captcha_control.h>
#include <dorvdl/control/file_hosting_control.h>
#include <dorvdl/control/notification_control.h>
#include <dorvdl/control/plugin_control.h>
#include <dorvdl/control/rss_feed_control.h>
#include <dorvdl/control/rss_filter_control.h>
#include <dorvdl/control/rss_item_control.h>
#include <dorvdl/control/task_control.h>
#include <dorvdl/control/thumbnail_control.h>
#include <dorvdl/control/unit.h>
#include <dorvdl/db/rss_item.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "support/connection.h"
#include "support/database.h"
#include "support/environment.h"
#include "support/keys_of.h"
#include "support/make_records.h"
#include "support/syslog_capture.h"
#include "support/temporary_folder.h"

namespace dorvdl::control {
namespace {

using dorvdbquery::Failure;
using test_support::KeysOf;
using test_support::Renaming;
using test_support::TakeLog;
using Ids = std::vector<int>;
using Rows = std::vector<std::string>;

// Of each kind Alice has the row 1, Bob the row 2, and 3 belongs to a feed or task that is gone, as
// 4 does, whose parent is NULL.
constexpr char kRows[] =
    "INSERT INTO rss_feed (id, username, url) VALUES (1, 'Alice', 'u'), (2, 'bob', 'u');"
    "INSERT INTO rss_filter (id, feed_id, name) VALUES (1, 1, 'n'), (2, 2, 'n'), (3, 9, 'n'), "
    "(4, NULL, 'n');"
    "INSERT INTO rss_item (id, feed_id, title, is_new) VALUES (1, 1, 't', 1), (2, 2, 't', 1), "
    "(3, 9, 't', 1), (4, NULL, 't', 1);"
    "INSERT INTO download_queue (task_id, username, status, filename) VALUES (1, 'ALICE', 15, "
    "'f'), "
    "(2, 'bob', 15, 'f');"
    "INSERT INTO thumbnail (thumbnail_id, task_id, file_index) VALUES (1, 1, 5), (2, 2, 6), "
    "(3, 9, 7), (4, NULL, 8);"
    "INSERT INTO task_plugin (task_id, pid, attributes) VALUES (1, 7, '1'), (2, 8, '1'), "
    "(9, 9, '1');"
    "INSERT INTO notification (id, task_id, type) VALUES (1, 1, 'a'), (2, 2, 'b'), (3, 9, 'c'), "
    "(4, NULL, 'd');"
    "SELECT setval(pg_get_serial_sequence('rss_feed', 'id'), 10), "
    "setval(pg_get_serial_sequence('rss_filter', 'id'), 10), "
    "setval(pg_get_serial_sequence('rss_item', 'id'), 10), "
    "setval(pg_get_serial_sequence('download_queue', 'task_id'), 10), "
    "setval(pg_get_serial_sequence('thumbnail', 'thumbnail_id'), 10), "
    "setval(pg_get_serial_sequence('notification', 'id'), 10)";

// All that is not Alice's, a line per table.
constexpr char kForeign[] =
    "SELECT string_agg(t::text, ' ' ORDER BY id) FROM rss_feed t WHERE username = 'bob' UNION ALL "
    "SELECT string_agg(t::text, ' ' ORDER BY id) FROM rss_filter t "
    "WHERE feed_id IS DISTINCT FROM 1 UNION ALL "
    "SELECT string_agg(t::text, ' ' ORDER BY id) FROM rss_item t "
    "WHERE feed_id IS DISTINCT FROM 1 UNION ALL "
    "SELECT string_agg(t::text, ' ' ORDER BY task_id) FROM download_queue t "
    "WHERE username = 'bob' UNION ALL "
    "SELECT string_agg(t::text, ' ' ORDER BY thumbnail_id) FROM thumbnail t "
    "WHERE task_id IS DISTINCT FROM 1 UNION ALL "
    "SELECT string_agg(t::text, ' ' ORDER BY task_id) FROM task_plugin t "
    "WHERE task_id <> 1 UNION ALL "
    "SELECT string_agg(t::text, ' ' ORDER BY id) FROM notification t "
    "WHERE task_id IS DISTINCT FROM 1";

class UserControllerTest : public test_support::DatabaseTest {
 protected:
  UserControllerTest() {
    raw_.Run(kRows);
    foreign_ = raw_.Run(kForeign);
    TakeLog();
  }
  ~UserControllerTest() override {
    EXPECT_EQ(raw_.Run(kForeign), foreign_) << "a row that is not Alice's has changed";
  }

  void ExpectRefused() {
    EXPECT_EQ(controller_.failure().kind, Failure::Kind::kRefused);
    EXPECT_NE(controller_.failure().message, "");
  }
  void ExpectAnswer() { EXPECT_FALSE(controller_.failure()) << controller_.failure().message; }

  Controller controller_ = Controller::ForUser("alice");

 private:
  Rows foreign_;
};

// An update of the record with a key.
template <typename Record>
Record Change(int key) {
  Record record;
  record.set_primary_key(key);
  return record;
}

TEST_F(UserControllerTest, TasksAreTheUsersOwn) {
  TaskControl tasks(controller_);
  const test_support::TemporaryFolder folder;
  raw_.Run("UPDATE download_queue SET file_oid = lo_create(0)");
  const Rows foreign = raw_.Run(kForeign);
  EXPECT_EQ(KeysOf(tasks.List({})), Ids{1});
  EXPECT_EQ(tasks.Count({}), 1);
  EXPECT_TRUE(tasks.Get(1).IsValid());
  EXPECT_FALSE(tasks.Get(2).IsValid());
  EXPECT_TRUE(tasks.Update(Renaming(2, "x"))) << "reaches none";
  EXPECT_TRUE(tasks.Delete({2})) << "reaches none";
  ExpectAnswer();
  EXPECT_FALSE(tasks.LoExport(2, folder.Path("out")));
  ExpectAnswer();
  EXPECT_FALSE(folder.Exists("out"));
  EXPECT_FALSE(tasks.LoImport(2, folder.Write("in", "x")));
  ExpectRefused();
  EXPECT_TRUE(tasks.LoImport(1, folder.Path("in")));
  EXPECT_TRUE(tasks.LoExport(1, folder.Path("out")));
  EXPECT_EQ(folder.Read("out"), "x");
  EXPECT_EQ(raw_.Run(kForeign), foreign);
  raw_.Run("UPDATE download_queue SET file_oid = 0");
}

TEST_F(UserControllerTest, TheOwnerOfACreatedTaskIsTheUser) {
  TaskControl tasks(controller_);
  const test_support::TemporaryFolder folder;
  for (const std::string& source : {std::string(), folder.Write("in", "x")}) {
    record::Task absent;
    absent.mutable_proto().set_url("u");
    EXPECT_TRUE(tasks.Create(absent, source));
    EXPECT_EQ(absent.proto().username(), "alice");
    EXPECT_EQ(tasks.Get(absent.primary_key()).proto().username(), "alice");

    record::Task own = test_support::TaskOf("ALICE", "u");
    EXPECT_TRUE(tasks.Create(own, source));
    EXPECT_EQ(tasks.Get(own.primary_key()).proto().username(), "ALICE");

    for (const char* const name : {"bob", ""}) {
      record::Task other = test_support::TaskOf(name, "u");
      EXPECT_FALSE(tasks.Create(other, source));
      ExpectRefused();
      EXPECT_EQ(other.proto().SerializeAsString(),
                test_support::TaskOf(name, "u").proto().SerializeAsString())
          << "as it was";
    }
  }
  record::Task empty;
  EXPECT_TRUE(tasks.Create(empty, ""));
  EXPECT_EQ(tasks.Count({}), 6);
}

TEST_F(UserControllerTest, AFailedCreateLeavesARecordWithoutAnOwnerAsItWas) {
  raw_.Run("ALTER TABLE download_queue RENAME TO elsewhere");
  record::Task task;
  task.mutable_proto().set_url("u");
  EXPECT_FALSE(TaskControl(controller_).Create(task, ""));
  raw_.Run("ALTER TABLE elsewhere RENAME TO download_queue");
  EXPECT_FALSE(task.proto().has_username());
  EXPECT_FALSE(task.proto().has_task_id());
}

TEST_F(UserControllerTest, AKeyAndAStoredFileAreNotTheUsersToChoose) {
  TaskControl tasks(controller_);
  const std::string oid = raw_.Value("SELECT lo_create(0)::int");
  raw_.Run("UPDATE download_queue SET file_oid = " + oid + " WHERE task_id = 2");
  const Rows foreign = raw_.Run(kForeign);
  const test_support::TemporaryFolder folder;
  for (const std::string& source : {std::string(), folder.Write("in", "x")}) {
    record::Task with_key;
    with_key.set_primary_key(77);
    EXPECT_FALSE(tasks.Create(with_key, source));
    ExpectRefused();
    record::Task with_file;
    with_file.mutable_proto().set_file_oid(std::stoi(oid));
    EXPECT_FALSE(tasks.Create(with_file, source)) << "which is Bob's";
    ExpectRefused();
    record::Task without_file;
    without_file.mutable_proto().set_file_oid(0);
    EXPECT_TRUE(tasks.Create(without_file, source));
  }
  for (const int file : {std::stoi(oid), 0}) {
    record::Task change = Change<record::Task>(1);
    change.mutable_proto().set_file_oid(file);
    EXPECT_FALSE(tasks.Update(change));
    ExpectRefused();
  }
  EXPECT_EQ(raw_.Value("SELECT file_oid FROM download_queue WHERE task_id = 1"), "0");
  EXPECT_EQ(raw_.Run(kForeign), foreign);
  raw_.Run("SELECT lo_unlink(" + oid + "); UPDATE download_queue SET file_oid = 0");
}

TEST_F(UserControllerTest, AnUpdateLeavesTheOwnerAsItIsAndGivesNothingAway) {
  TaskControl tasks(controller_);
  record::Task change = Renaming(1, "g");
  change.mutable_proto().set_username("alice");
  EXPECT_TRUE(tasks.Update(change));
  EXPECT_EQ(tasks.Get(1).proto().username(), "ALICE");
  EXPECT_EQ(tasks.Get(1).proto().filename(), "g");
  change.mutable_proto().set_filename("h");
  for (const char* const name : {"bob", ""}) {
    change.mutable_proto().set_username(name);
    EXPECT_FALSE(tasks.Update(change));
    ExpectRefused();
  }
  EXPECT_EQ(tasks.Get(1).proto().filename(), "g");

  record::Task only_the_owner = Change<record::Task>(1);
  only_the_owner.mutable_proto().set_username("alice");
  EXPECT_FALSE(tasks.Update(only_the_owner)) << "nothing to set";
  ExpectAnswer();
}

// A program's own records may spell a column in capitals, which name the same one.
struct OtherFeed : record::RssFeed {
  void BindUpdateField(dorvdbquery::UpdateQuery& query) const override {
    RssFeed::BindUpdateField(query);
    query.SetFactory<std::string>("UserName", owner);
  }
  std::string owner = "bob";
};
struct OtherItem : record::RssItem {
  std::vector<std::string> GetInsertFields() const override { return {"ID", "Feed_ID"}; }
  void soci_ToBase(soci::values& values, soci::indicator& /*indicator*/) const override {
    values.set("ID", 77);
    values.set("Feed_ID", 1);
  }
};

TEST_F(UserControllerTest, ColumnsInCapitalsAreTheSameColumns) {
  OtherFeed feed;
  feed.set_primary_key(1);
  EXPECT_FALSE(RssFeedControl(controller_).Update(feed));
  ExpectRefused();
  feed.owner = "alice";
  feed.mutable_proto().set_url("x");
  EXPECT_TRUE(RssFeedControl(controller_).Update(feed));
  EXPECT_EQ(RssFeedControl(controller_).Get(1).proto().username(), "Alice");
  OtherItem item;
  EXPECT_FALSE(RssItemControl(controller_).Create(item)) << "it carries a key";
  ExpectRefused();
  EXPECT_FALSE(RssItemControl(controller_).Get(77).IsValid());
}

// Of a program's own record, whose hooks write what its message does not carry.
struct MovingFeed : record::RssFeed {
  void BindUpdateField(dorvdbquery::UpdateQuery& query) const override {
    query.SetFactory<int>("id", to);
  }
  int to = 9;
};

TEST_F(UserControllerTest, ARowIsNotMovedToAnotherKey) {
  MovingFeed feed;
  feed.set_primary_key(1);
  EXPECT_FALSE(RssFeedControl(controller_).Update(feed)) << "nobody's items would be Alice's";
  ExpectRefused();
  EXPECT_EQ(RssItemControl(controller_).Count({}), 1);
  feed.to = 1;
  EXPECT_TRUE(RssFeedControl(controller_).Update(feed)) << "where it is";
}

struct TaskWithFile : record::Task {
  explicit TaskWithFile(std::string oid) : oid_(std::move(oid)) {}
  void BindUpdateField(dorvdbquery::UpdateQuery& query) const override {
    query.SetFactory<std::string>("file_oid", oid_);
  }
  std::vector<std::string> GetInsertFields() const override { return {"file_oid"}; }
  void soci_ToBase(soci::values& values, soci::indicator& /*indicator*/) const override {
    values.set("file_oid", oid_);
  }

 private:
  std::string oid_;
};

TEST_F(UserControllerTest, AStoredFileThatOnlyHooksNameIsRefusedToo) {
  TaskControl tasks(controller_);
  const test_support::TemporaryFolder folder;
  for (const std::string& source : {std::string(), folder.Write("in", "x")}) {
    TaskWithFile task("7");
    EXPECT_FALSE(tasks.Create(task, source));
    ExpectRefused();
  }
  TaskWithFile change("7");
  change.set_primary_key(1);
  EXPECT_FALSE(tasks.Update(change));
  ExpectRefused();
  TaskWithFile none("0");
  EXPECT_TRUE(tasks.Create(none, ""));
  EXPECT_EQ(raw_.Value("SELECT count(*) FROM download_queue WHERE file_oid <> 0"), "0");
}

TEST_F(UserControllerTest, FeedsAreTheUsersOwn) {
  RssFeedControl feeds(controller_);
  EXPECT_EQ(KeysOf(feeds.List({})), Ids{1});
  EXPECT_EQ(feeds.Count({}), 1);
  EXPECT_EQ(feeds.ListId({}), Ids{1});
  EXPECT_FALSE(feeds.Get(2).IsValid());
  record::RssFeed change = Change<record::RssFeed>(2);
  change.mutable_proto().set_url("x");
  EXPECT_TRUE(feeds.Update(change)) << "reaches none";
  EXPECT_TRUE(feeds.Delete({2})) << "reaches none";
  ExpectAnswer();

  record::RssFeed absent;
  EXPECT_TRUE(feeds.Create(absent));
  EXPECT_EQ(absent.proto().username(), "alice");
  EXPECT_EQ(feeds.Get(absent.primary_key()).proto().username(), "alice");
  record::RssFeed other;
  other.mutable_proto().set_username("bob");
  EXPECT_FALSE(feeds.Create(other));
  ExpectRefused();
  record::RssFeed with_key;
  with_key.set_primary_key(77);
  EXPECT_FALSE(feeds.Create(with_key));
  ExpectRefused();
  change = Change<record::RssFeed>(1);
  change.mutable_proto().set_username("bob");
  EXPECT_FALSE(feeds.Update(change));
  ExpectRefused();
  EXPECT_TRUE(feeds.Delete({1, absent.primary_key()}));
  EXPECT_EQ(feeds.Count({}), 0);
}

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

TEST_F(UserControllerTest, RestartsReachTheUsersTasksAndTheirPlugins) {
  CaptchaControl captcha(controller_);
  EXPECT_FALSE(captcha.RestartCaptchaTask(2));
  ExpectAnswer();
  EXPECT_TRUE(captcha.RestartAllCaptchaTask());
  EXPECT_EQ(raw_.Value("SELECT status FROM download_queue WHERE task_id = 1"), "1");
  EXPECT_EQ(raw_.Value("SELECT attributes FROM task_plugin WHERE task_id = 1"), "null");
  raw_.Run("UPDATE download_queue SET status = 9 WHERE task_id = 1");
  FileHostingControl hosting(controller_);
  EXPECT_FALSE(hosting.RestartHostWaitingTask(2));
  EXPECT_TRUE(hosting.RestartAllHostWaitingTask());
  EXPECT_EQ(raw_.Value("SELECT status FROM download_queue WHERE task_id = 1"), "1");
}

TEST_F(UserControllerTest, AnotherUserIsAnotherSetOfRows) {
  controller_.set_username("BOB");
  EXPECT_EQ(KeysOf(TaskControl(controller_).List({})), Ids{2});
  EXPECT_EQ(KeysOf(RssItemControl(controller_).List({})), Ids{2});
  Controller copy = controller_;
  EXPECT_EQ(KeysOf(RssItemControl(copy).List({})), Ids{2}) << "a copy has the bounds, too";
  EXPECT_FALSE(RssItemControl(copy).Get(1).IsValid());
  controller_ = Controller::ForUser("alice");
  EXPECT_EQ(KeysOf(RssItemControl(controller_).List({})), Ids{1});
}

TEST_F(UserControllerTest, NamesOfAnyScriptAreOneInAnyCase) {
  raw_.Run("UPDATE rss_feed SET username = 'Ägir' WHERE id = 1");
  controller_.set_username("ÄGIR");
  EXPECT_EQ(KeysOf(RssItemControl(controller_).List({})), Ids{1});
  record::RssItem item;
  item.mutable_proto().set_feed_id(1);
  EXPECT_TRUE(RssItemControl(controller_).Create(item));
}

TEST_F(UserControllerTest, AnAccessorLeavesTheBounds) {
  EXPECT_EQ(controller_.Use<db::RssItem>().Count({}), 4);
}

TEST_F(UserControllerTest, SharesASessionWithOthers) {
  const auto session = std::make_shared<db::DBSession>();
  Controller shared = Controller::ForUser("alice", session);
  EXPECT_EQ(&shared.db_session(), session.get());
  EXPECT_EQ(RssItemControl(shared).Count({}), 1);
}

TEST_F(UserControllerTest, WhatIsRefusedFailsTheUnitAndLeavesTheOthersWorking) {
  {
    Unit unit(controller_);
    record::RssItem item;
    item.mutable_proto().set_feed_id(2);
    EXPECT_FALSE(RssItemControl(controller_).Create(item));
    EXPECT_TRUE(unit.failed());
    record::RssFeed feed;
    EXPECT_TRUE(RssFeedControl(controller_).Create(feed));
    EXPECT_EQ(unit.Commit(), Unit::Outcome::kRolledBack);
    ExpectRefused();
  }
  EXPECT_EQ(RssFeedControl(controller_).Count({}), 1);
}

// Every operation, as far as it needs rows.
const std::vector<std::function<void(Controller&)>> kOperations = {
    [](Controller& c) { EXPECT_EQ(TaskControl(c).Count({}), -1); },
    [](Controller& c) { EXPECT_TRUE(TaskControl(c).List({}).empty()); },
    [](Controller& c) { EXPECT_FALSE(TaskControl(c).Get(1).IsValid()); },
    [](Controller& c) { EXPECT_FALSE(TaskControl(c).Update(Renaming(1, "x"))); },
    [](Controller& c) { EXPECT_FALSE(TaskControl(c).Delete({1})); },
    [](Controller& c) { EXPECT_FALSE(TaskControl(c).LoImport(1, "/etc/hostname")); },
    [](Controller& c) { EXPECT_FALSE(TaskControl(c).LoExport(1, "/tmp/never-written")); },
    [](Controller& c) {
      record::Task task;
      EXPECT_FALSE(TaskControl(c).Create(task, ""));
    },
    [](Controller& c) {
      record::RssFeed feed;
      EXPECT_FALSE(RssFeedControl(c).Create(feed));
    },
    [](Controller& c) { EXPECT_TRUE(RssFeedControl(c).List({}).empty()); },
    [](Controller& c) { EXPECT_TRUE(RssFeedControl(c).ListId({}).empty()); },
    [](Controller& c) { EXPECT_EQ(RssFeedControl(c).Count({}), -1); },
    [](Controller& c) { EXPECT_FALSE(RssFeedControl(c).Delete({1})); },
    [](Controller& c) { EXPECT_EQ(RssFilterControl(c).Count({}), -1); },
    [](Controller& c) { EXPECT_FALSE(RssFilterControl(c).TestLike("a", "a")); },
    [](Controller& c) { EXPECT_FALSE(RssFilterControl(c).TestRegexp("a", "a")); },
    [](Controller& c) { EXPECT_EQ(RssItemControl(c).Count({}), -1); },
    [](Controller& c) { EXPECT_FALSE(RssItemControl(c).DeleteByFeedId(1)); },
    [](Controller& c) { EXPECT_FALSE(RssItemControl(c).UpdateAllNew(1, true)); },
    [](Controller& c) { EXPECT_FALSE(ThumbnailControl(c).Get(1).IsValid()); },
    [](Controller& c) { EXPECT_TRUE(ThumbnailControl(c).ListFileIndexByTaskID(1).empty()); },
    [](Controller& c) { EXPECT_TRUE(PluginControl(c).ListActivePlugin().empty()); },
    [](Controller& c) { EXPECT_EQ(PluginControl(c).Count(), -1); },
    [](Controller& c) { EXPECT_TRUE(NotificationControl(c).List().empty()); },
    [](Controller& c) { EXPECT_TRUE(NotificationControl(c).ListFromView().empty()); },
    [](Controller& c) { EXPECT_FALSE(NotificationControl(c).DeleteEarlierThan(9)); },
    [](Controller& c) { EXPECT_FALSE(CaptchaControl(c).RestartCaptchaTask(1)); },
    [](Controller& c) { EXPECT_TRUE(CaptchaControl(c).RestartAllCaptchaTask()) << "as ever"; },
    [](Controller& c) { EXPECT_FALSE(FileHostingControl(c).RestartHostWaitingTask(1)); },
    [](Controller& c) { EXPECT_TRUE(FileHostingControl(c).RestartAllHostWaitingTask()); },
};

TEST_F(UserControllerTest, WithoutANameEverythingIsRefusedAndNothingThrown) {
  Controller nobody = Controller::ForUser("");
  const test_support::Environment nowhere("PGPORT", "1");  // nothing is opened either
  for (const auto& operation : kOperations) {
    operation(nobody);
    EXPECT_EQ(nobody.failure().kind, Failure::Kind::kRefused);
  }
  EXPECT_FALSE(TaskControl(nobody).Delete({}));
  EXPECT_FALSE(nobody.failure()) << "a guard comes first";
  controller_.set_username("");
  EXPECT_EQ(RssItemControl(controller_).Count({}), -1);
  ExpectRefused();
}

}  // namespace
}  // namespace dorvdl::control
