// How often each operation of each control waits for the server.
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
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/connection.h"
#include "support/database.h"
#include "support/make_records.h"
#include "support/temporary_folder.h"

namespace dorvdl::control {
namespace {

using test_support::Renaming;

// What an operation is given.
struct Stage {
  Controller& controller;
  const test_support::TemporaryFolder& folder;
};

// One operation, on the rows of the test below.
struct Case {
  const char* name;
  bool (*run)(const Stage& on);  // whether it did what it is for
  int alone;                     // round trips outside of any transaction
  int in_unit;                   // and inside
};

template <typename Record>
Record Of(int key) {
  Record record;
  record.set_primary_key(key);
  return record;
}

const std::vector<Case> kCases = {
    {"TaskControl::Create",
     [](const Stage& on) {
       record::Task task = test_support::TaskOf("alice", "u");
       return TaskControl(on.controller).Create(task, "");
     },
     1, 3},
    {"TaskControl::Create with a file",
     [](const Stage& on) {
       record::Task task = test_support::TaskOf("alice", "u");
       return TaskControl(on.controller).Create(task, on.folder.Path("in"));
     },
     5, 5},
    {"TaskControl::Update",
     [](const Stage& on) { return TaskControl(on.controller).Update(Renaming(1, "b")); }, 1, 1},
    {"TaskControl::List",
     [](const Stage& on) { return TaskControl(on.controller).List({}).size() == 3; }, 1, 1},
    {"TaskControl::Count",
     [](const Stage& on) { return TaskControl(on.controller).Count({}) == 3; }, 1, 1},
    {"TaskControl::Get",
     [](const Stage& on) { return TaskControl(on.controller).Get(1).IsValid(); }, 1, 1},
    {"TaskControl::Delete",
     [](const Stage& on) {
       return TaskControl(on.controller).Delete({1, 2});
     },
     1, 1},
    {"TaskControl::LoImport",
     [](const Stage& on) { return TaskControl(on.controller).LoImport(1, on.folder.Path("in")); },
     5, 5},
    {"TaskControl::LoExport",
     [](const Stage& on) { return TaskControl(on.controller).LoExport(3, on.folder.Path("out")); },
     6, 4},
    {"RssFeedControl::Create",
     [](const Stage& on) {
       record::RssFeed feed;
       feed.mutable_proto().set_username("alice");
       return RssFeedControl(on.controller).Create(feed);
     },
     1, 1},
    {"RssFeedControl::Update",
     [](const Stage& on) {
       auto feed = Of<record::RssFeed>(1);
       feed.mutable_proto().set_url("v");
       return RssFeedControl(on.controller).Update(feed);
     },
     1, 1},
    {"RssFeedControl::List",
     [](const Stage& on) { return RssFeedControl(on.controller).List({}).size() == 1; }, 1, 1},
    {"RssFeedControl::ListId",
     [](const Stage& on) { return RssFeedControl(on.controller).ListId({}).size() == 1; }, 1, 1},
    {"RssFeedControl::Count",
     [](const Stage& on) { return RssFeedControl(on.controller).Count({}) == 1; }, 1, 1},
    {"RssFeedControl::Get",
     [](const Stage& on) { return RssFeedControl(on.controller).Get(1).IsValid(); }, 1, 1},
    {"RssFeedControl::Delete",
     [](const Stage& on) { return RssFeedControl(on.controller).Delete({1}); }, 1, 1},
    {"RssFilterControl::Create",
     [](const Stage& on) {
       record::RssFilter filter;
       filter.mutable_proto().set_feed_id(1);
       return RssFilterControl(on.controller).Create(filter);
     },
     1, 1},
    {"RssFilterControl::Update",
     [](const Stage& on) {
       auto filter = Of<record::RssFilter>(1);
       filter.mutable_proto().set_feed_id(1);
       return RssFilterControl(on.controller).Update(filter);
     },
     1, 1},
    {"RssFilterControl::List",
     [](const Stage& on) { return RssFilterControl(on.controller).List({}).size() == 1; }, 1, 1},
    {"RssFilterControl::Count",
     [](const Stage& on) { return RssFilterControl(on.controller).Count({}) == 1; }, 1, 1},
    {"RssFilterControl::Get",
     [](const Stage& on) { return RssFilterControl(on.controller).Get(1).IsValid(); }, 1, 1},
    {"RssFilterControl::Delete",
     [](const Stage& on) { return RssFilterControl(on.controller).Delete({1}); }, 1, 1},
    {"RssFilterControl::TestLike",
     [](const Stage& on) { return RssFilterControl(on.controller).TestLike("a", "A"); }, 1, 1},
    {"RssFilterControl::TestRegexp",
     [](const Stage& on) { return RssFilterControl(on.controller).TestRegexp("a", "a"); }, 1, 1},
    {"RssItemControl::Create",
     [](const Stage& on) {
       record::RssItem item;
       item.mutable_proto().set_feed_id(1);
       return RssItemControl(on.controller).Create(item);
     },
     1, 1},
    {"RssItemControl::Update",
     [](const Stage& on) {
       auto item = Of<record::RssItem>(1);
       item.mutable_proto().set_feed_id(1);
       return RssItemControl(on.controller).Update(item);
     },
     1, 1},
    {"RssItemControl::List",
     [](const Stage& on) { return RssItemControl(on.controller).List({}).size() == 1; }, 1, 1},
    {"RssItemControl::Count",
     [](const Stage& on) { return RssItemControl(on.controller).Count({}) == 1; }, 1, 1},
    {"RssItemControl::Get",
     [](const Stage& on) { return RssItemControl(on.controller).Get(1).IsValid(); }, 1, 1},
    {"RssItemControl::Delete",
     [](const Stage& on) { return RssItemControl(on.controller).Delete({1}); }, 1, 1},
    {"RssItemControl::DeleteByFeedId",
     [](const Stage& on) { return RssItemControl(on.controller).DeleteByFeedId(1); }, 1, 1},
    {"RssItemControl::UpdateAllNew",
     [](const Stage& on) { return RssItemControl(on.controller).UpdateAllNew(1, true); }, 1, 1},
    {"ThumbnailControl::Create",
     [](const Stage& on) {
       record::Thumbnail thumbnail;
       thumbnail.mutable_proto().set_task_id(1);
       return ThumbnailControl(on.controller).Create(thumbnail);
     },
     1, 1},
    {"ThumbnailControl::Update",
     [](const Stage& on) {
       auto thumbnail = Of<record::Thumbnail>(1);
       thumbnail.mutable_proto().set_task_id(1);
       return ThumbnailControl(on.controller).Update(thumbnail);
     },
     1, 1},
    {"ThumbnailControl::List",
     [](const Stage& on) { return ThumbnailControl(on.controller).List({}).size() == 1; }, 1, 1},
    {"ThumbnailControl::Count",
     [](const Stage& on) { return ThumbnailControl(on.controller).Count({}) == 1; }, 1, 1},
    {"ThumbnailControl::Get",
     [](const Stage& on) { return ThumbnailControl(on.controller).Get(1).IsValid(); }, 1, 1},
    {"ThumbnailControl::Delete",
     [](const Stage& on) { return ThumbnailControl(on.controller).Delete({1}); }, 1, 1},
    {"ThumbnailControl::ListFileIndexByTaskID",
     [](const Stage& on) {
       return ThumbnailControl(on.controller).ListFileIndexByTaskID(1).size() == 1;
     },
     1, 1},
    {"PluginControl::Create",
     [](const Stage& on) {
       auto plugin = Of<record::Plugin>(2);
       return PluginControl(on.controller).Create(plugin);
     },
     1, 1},
    {"PluginControl::Update",
     [](const Stage& on) { return PluginControl(on.controller).Update(Of<record::Plugin>(1)); }, 1,
     1},
    {"PluginControl::Get",
     [](const Stage& on) { return PluginControl(on.controller).Get(1).IsValid(); }, 1, 1},
    {"PluginControl::Delete",
     [](const Stage& on) { return PluginControl(on.controller).Delete({1}); }, 1, 1},
    {"PluginControl::ListActivePlugin",
     [](const Stage& on) { return PluginControl(on.controller).ListActivePlugin().size() == 1; }, 1,
     1},
    {"PluginControl::ListAll",
     [](const Stage& on) { return PluginControl(on.controller).ListAll({}).size() == 1; }, 1, 1},
    {"PluginControl::Count",
     [](const Stage& on) { return PluginControl(on.controller).Count() == 1; }, 1, 1},
    {"NotificationControl::Create",
     [](const Stage& on) {
       record::Notification notification;
       notification.mutable_proto().set_task_id(1);
       return NotificationControl(on.controller).Create(notification);
     },
     1, 1},
    {"NotificationControl::Update",
     [](const Stage& on) {
       auto notification = Of<record::Notification>(1);
       notification.mutable_proto().set_task_id(1);
       return NotificationControl(on.controller).Update(notification);
     },
     1, 1},
    {"NotificationControl::List",
     [](const Stage& on) { return NotificationControl(on.controller).List().size() == 1; }, 1, 1},
    {"NotificationControl::ListAll",
     [](const Stage& on) { return NotificationControl(on.controller).ListAll({}).size() == 1; }, 1,
     1},
    {"NotificationControl::ListFromView",
     [](const Stage& on) { return NotificationControl(on.controller).ListFromView().size() == 1; },
     1, 1},
    {"NotificationControl::Count",
     [](const Stage& on) { return NotificationControl(on.controller).Count() == 1; }, 1, 1},
    {"NotificationControl::Get",
     [](const Stage& on) { return NotificationControl(on.controller).Get(1).IsValid(); }, 1, 1},
    {"NotificationControl::Delete",
     [](const Stage& on) { return NotificationControl(on.controller).Delete({1}); }, 1, 1},
    {"NotificationControl::DeleteEarlierThan",
     [](const Stage& on) { return NotificationControl(on.controller).DeleteEarlierThan(1); }, 1, 1},
    {"CaptchaControl::RestartCaptchaTask",
     [](const Stage& on) { return CaptchaControl(on.controller).RestartCaptchaTask(1); }, 3, 3},
    {"CaptchaControl::RestartAllCaptchaTask",
     [](const Stage& on) { return CaptchaControl(on.controller).RestartAllCaptchaTask(); }, 4, 4},
    {"FileHostingControl::RestartHostWaitingTask",
     [](const Stage& on) { return FileHostingControl(on.controller).RestartHostWaitingTask(2); }, 2,
     2},
    {"FileHostingControl::RestartAllHostWaitingTask",
     [](const Stage& on) { return FileHostingControl(on.controller).RestartAllHostWaitingTask(); },
     4, 4},
};

class RoundTripsTest : public test_support::DatabaseTest {
 protected:
  RoundTripsTest() { folder_.Write("in", "content"); }

  // Alice's rows: a task in each of the states that restarts look for and one with a file, and one
  // row of each kind that belongs to her.
  void Fill() {
    raw_.Run(
        "TRUNCATE download_queue, rss_feed, rss_filter, rss_item, thumbnail, task_plugin, "
        "notification RESTART IDENTITY;"
        "INSERT INTO download_queue (username, status, file_oid) VALUES "
        "('alice', 15, 0), ('alice', 9, 0), ('alice', 1, lo_from_bytea(0, 'content')::int);"
        "INSERT INTO rss_feed (username) VALUES ('alice');"
        "INSERT INTO rss_filter (feed_id) VALUES (1);"
        "INSERT INTO rss_item (feed_id) VALUES (1);"
        "INSERT INTO thumbnail (task_id) VALUES (1);"
        "INSERT INTO task_plugin (task_id, pid) VALUES (1, 1);"
        "INSERT INTO notification (task_id) VALUES (1)");
  }

  void Try(Controller controller) {
    for (const Case& tried : kCases) {
      SCOPED_TRACE(tried.name);
      Fill();
      {
        test_support::MessageTrace trace(controller.db_session().session());
        EXPECT_TRUE(tried.run({controller, folder_}));
        EXPECT_FALSE(controller.failure()) << controller.failure().message;
        EXPECT_EQ(trace.RoundTrips(), tried.alone);
      }
      Fill();
      Unit unit(controller);
      test_support::MessageTrace trace(controller.db_session().session());
      EXPECT_TRUE(tried.run({controller, folder_}));
      EXPECT_EQ(trace.RoundTrips(), tried.in_unit) << "in a unit";
      EXPECT_EQ(unit.Commit(), Unit::Outcome::kCommitted);
    }
  }

  const test_support::TemporaryFolder folder_;
};

TEST_F(RoundTripsTest, OfEveryOperation) { Try(Controller()); }

TEST_F(RoundTripsTest, OfEveryOperationOnAUsersControllerAreTheSame) {
  Try(Controller::ForUser("alice"));
}

}  // namespace
}  // namespace dorvdl::control
