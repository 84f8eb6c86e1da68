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

#include "integration/control/user_controller_test.h"
#include "support/environment.h"
#include "support/keys_of.h"
#include "support/make_records.h"
#include "support/temporary_folder.h"

namespace dorvdl::control {
namespace {

using dorvdbquery::Failure;
using test_support::KeysOf;
using test_support::Renaming;
using Ids = std::vector<int>;
using Rows = std::vector<std::string>;

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
