// Several threads, each with a controller of its own: none notices the others. Small here, for
// every run of the tests; the thread sanitizer watches the same for longer (scripts/campaign tsan).
#include <dorvdl/control/controller.h>
#include <dorvdl/control/rss_feed_control.h>
#include <dorvdl/control/rss_item_control.h>
#include <dorvdl/control/task_control.h>
#include <gtest/gtest.h>
#include <json/json.h>

#include <functional>
#include <future>
#include <string>
#include <vector>

#include "support/database.h"
#include "support/syslog_capture.h"
#include "support/temporary_folder.h"

namespace dorvdl::control {
namespace {

using test_support::kAuthInfo;
using test_support::LogLine;
using test_support::TakeLog;

constexpr int kThreads = 4;
constexpr int kRounds = 5;

// Calls work(0), work(1)... in threads that begin together; what one throws is thrown here.
void InThreads(const std::function<void(int)>& work) {
  std::promise<void> start;
  const std::shared_future<void> started = start.get_future().share();
  std::vector<std::future<void>> threads;
  threads.reserve(kThreads);
  for (int number = 0; number < kThreads; ++number) {
    threads.push_back(std::async(std::launch::async, [&work, started, number] {
      started.wait();
      work(number);
    }));
  }
  start.set_value();
  for (std::future<void>& thread : threads) {
    thread.get();
  }
}

class ControllersInThreadsTest : public test_support::DatabaseTest {
 protected:
  ControllersInThreadsTest() { TakeLog(); }
};

TEST_F(ControllersInThreadsTest, ConnectionsAreOpenedAtTheSameTime) {
  InThreads([](int) {
    for (int round = 0; round < kRounds; ++round) {
      Controller controller;
      EXPECT_EQ(RssFeedControl(controller).Count({}), 0);
    }
  });
  const std::vector<LogLine> log = TakeLog();
  EXPECT_EQ(log.size(), 2U * kThreads * kRounds);
  for (const LogLine& line : log) {
    EXPECT_EQ(line.priority, kAuthInfo) << line;
    EXPECT_EQ(line.source, "db/session") << line;
  }
}

TEST_F(ControllersInThreadsTest, TasksAndTheirFilesAreTheThreadsOwn) {
  InThreads([](int number) {
    const std::string user = "user" + std::to_string(number);
    const test_support::TemporaryFolder folder;
    Controller controller;
    controller.set_username(user);
    TaskControl tasks(controller);
    for (int round = 0; round < kRounds; ++round) {
      const std::string content = user + " in round " + std::to_string(round);
      record::Task task;
      task.mutable_proto().set_username(user);
      ASSERT_TRUE(tasks.Create(task, folder.Write("in", content)));
      const int id = task.primary_key();
      EXPECT_TRUE(tasks.LoExport(id, folder.Path("out")));
      EXPECT_EQ(folder.Read("out"), content);

      record::Task change;
      change.set_primary_key(id);
      change.mutable_proto().set_filename(content);
      Json::Value data;
      data["round"] = round;
      change.set_extra_data(data);
      EXPECT_TRUE(tasks.Update(change));
      EXPECT_EQ(tasks.Get(id).proto().filename(), content);

      EXPECT_TRUE(tasks.LoImport(id, folder.Write("in", content + " again")));
      EXPECT_TRUE(tasks.LoExport(id, folder.Path("out")));
      EXPECT_EQ(folder.Read("out"), content + " again");

      const std::vector<record::Task> listed = tasks.List({});
      ASSERT_EQ(listed.size(), 1U);
      EXPECT_EQ(listed[0].primary_key(), id);
      EXPECT_EQ(listed[0].extra_data(), data);
      EXPECT_TRUE(tasks.Delete({id}));
    }
    EXPECT_TRUE(tasks.List({}).empty());
  });
}

TEST_F(ControllersInThreadsTest, FeedsAndItemsAreTheThreadsOwn) {
  InThreads([](int number) {
    Controller controller;
    controller.set_username("user" + std::to_string(number));
    RssFeedControl feeds(controller);
    RssItemControl items(controller);
    record::RssFeed feed;
    feed.mutable_proto().set_username(controller.username());
    ASSERT_TRUE(feeds.Create(feed));
    option::rss_item::ListOption of_the_feed;
    of_the_feed.feed_id = feed.primary_key();
    for (int count = 1; count <= kRounds; ++count) {
      record::RssItem item;
      item.mutable_proto().set_feed_id(feed.primary_key());
      item.mutable_proto().set_title("item " + std::to_string(count));
      ASSERT_TRUE(items.Create(item));
      EXPECT_EQ(items.List(of_the_feed).size(), static_cast<std::size_t>(count));
      EXPECT_EQ(items.Get(item.primary_key()).proto().title(), item.proto().title());
      EXPECT_EQ(feeds.Count({}), 1);
    }
    EXPECT_TRUE(items.DeleteByFeedId(feed.primary_key()));
    EXPECT_EQ(items.Count(of_the_feed), 0);
  });
}

TEST_F(ControllersInThreadsTest, AStatementThatIsRefusedIsTheThreadsOwn) {
  InThreads([](int number) {
    const bool refused = number % 2 == 0;
    Controller controller;
    RssFeedControl feeds(controller);
    record::RssFeed feed;
    feed.mutable_proto().set_username("user" + std::to_string(number));
    ASSERT_TRUE(feeds.Create(feed));
    option::rss_feed::ListOption option;
    option.common.sort_by = refused ? "no_such_column" : "id";
    for (int round = 0; round < kRounds; ++round) {
      EXPECT_EQ(feeds.List(option).empty(), refused);
    }
  });
}

}  // namespace
}  // namespace dorvdl::control
