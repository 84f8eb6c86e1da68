// Restarting tasks that wait for a file host; what both restarts have in common is tested beside.
#include <gtest/gtest.h>

#include <cstddef>

#include "integration/control/restart_test.h"

namespace dorvdl::control {
namespace {

using test_support::TakeLog;

class FileHostingControlTest : public RestartTest<FileHostingControl> {
 protected:
  interface::FileHostingInterface& hosts_ = control_;
};

TEST_F(FileHostingControlTest, ARestartSetsTheTaskToWaitingAndLeavesThePluginRow) {
  InsertTaskWithPlugin(1, 9);
  InsertTaskWithPlugin(2, 9);
  const Rows tasks = OtherTaskColumns();
  const Rows plugins = OtherPluginColumns();
  EXPECT_TRUE(hosts_.RestartHostWaitingTask(1));
  EXPECT_EQ(Statuses(), (Rows{"1", "9"}));
  EXPECT_EQ(OtherTaskColumns(), tasks);
  EXPECT_EQ(Attributes(), Rows(2, "{\"kept\": true}"));
  EXPECT_EQ(OtherPluginColumns(), plugins);
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(FileHostingControlTest, ATaskInAnotherStatusIsFalse) {
  const Ids statuses{15, 1, 2, 5, 10, 101, 0};
  for (std::size_t i = 0; i < statuses.size(); ++i) {
    InsertTaskWithPlugin(static_cast<int>(i) + 1, statuses[i]);
  }
  const std::string before = Versions();
  for (std::size_t i = 0; i < statuses.size(); ++i) {
    EXPECT_FALSE(hosts_.RestartHostWaitingTask(static_cast<int>(i) + 1)) << statuses[i];
  }
  EXPECT_EQ(Versions(), before);
}

TEST_F(FileHostingControlTest, AFailedUpdateIsFalse) {
  InsertTaskWithPlugin(1, 9);
  RefuseUpdates("download_queue", 1);
  EXPECT_FALSE(hosts_.RestartHostWaitingTask(1));
  EXPECT_EQ(Statuses(), Rows{"9"});
  EXPECT_EQ(TakeLog(), Refused(kUpdateTask));
}

TEST_F(FileHostingControlTest, RestartingAllOfTheUsersTasksInStatus9ClearsTheirPluginsAttributes) {
  InsertTaskWithPlugin(1, 9);
  InsertTaskWithPlugin(2, 15);
  InsertTask(3, 9, "ALICE");
  InsertTaskWithPlugin(4, 9, "bob");
  const Rows tasks = OtherTaskColumns();
  const Rows plugins = OtherPluginColumns();
  controller_.set_username("Alice");
  EXPECT_TRUE(hosts_.RestartAllHostWaitingTask());
  EXPECT_EQ(Statuses(), (Rows{"1", "15", "1", "9"}));
  EXPECT_EQ(Attributes(), (Rows{"null", "{\"kept\": true}", "{\"kept\": true}"}));
  EXPECT_EQ(OtherTaskColumns(), tasks);
  EXPECT_EQ(OtherPluginColumns(), plugins);
  controller_.set_username("");
  EXPECT_TRUE(hosts_.RestartAllHostWaitingTask());
  EXPECT_EQ(Statuses(), (Rows{"1", "15", "1", "1"}));
  EXPECT_EQ(Attributes(), (Rows{"null", "{\"kept\": true}", "null"}));
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(FileHostingControlTest, RestartingAllGoesOnAfterAPluginRowThatFailed) {
  InsertTaskWithPlugin(1, 9);
  InsertTaskWithPlugin(2, 9);
  RefuseUpdates("task_plugin", 1);
  EXPECT_TRUE(hosts_.RestartAllHostWaitingTask());
  EXPECT_EQ(Statuses(), (Rows{"1", "1"}));
  EXPECT_EQ(Attributes(), (Rows{"{\"kept\": true}", "null"}));
  EXPECT_EQ(TakeLog(), Refused(kUpdatePlugin));
}

class OverriddenFileHostingControlTest : public RestartTest<FileHosting::Overridden> {};

TEST_F(OverriddenFileHostingControlTest, TheOverridesWordDecidesAboutThePluginRow) {
  for (const int id : {1, 2, 3}) {
    InsertTaskWithPlugin(id, 9);
  }
  control_.restart.instead = [](int task_id) { return task_id == 2; };
  EXPECT_TRUE(control_.RestartAllHostWaitingTask());
  EXPECT_EQ(Attributes(), (Rows{"{\"kept\": true}", "null", "{\"kept\": true}"}));
}

TEST_F(OverriddenFileHostingControlTest, ATaskThatLeftTheStatusSinceTheListIsSkipped) {
  InsertTaskWithPlugin(1, 9);
  InsertTaskWithPlugin(2, 9);
  control_.restart.instead = [this](int task_id) {
    raw_.Run("UPDATE download_queue SET status = 3 WHERE task_id = 2");
    return control_.FileHostingControl::RestartHostWaitingTask(task_id);
  };
  EXPECT_TRUE(control_.RestartAllHostWaitingTask());
  EXPECT_EQ(Statuses(), (Rows{"1", "3"}));
  EXPECT_EQ(Attributes(), (Rows{"null", "{\"kept\": true}"}));
}

}  // namespace
}  // namespace dorvdl::control
