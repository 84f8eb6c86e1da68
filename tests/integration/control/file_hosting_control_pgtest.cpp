// Restarting tasks that wait for a file host.
#include <dorvdl/control/file_hosting_control.h>
#include <gtest/gtest.h>
#include <soci/soci.h>

#include <functional>

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

TEST_F(FileHostingControlTest, ATaskThatIsNotThereIsFalse) {
  InsertTaskWithPlugin(1, 9);
  const std::string before = Versions();
  for (const int id : {2, 0, -1}) {
    EXPECT_FALSE(hosts_.RestartHostWaitingTask(id)) << id;
  }
  EXPECT_EQ(Versions(), before);
}

TEST_F(FileHostingControlTest, AnotherUsersTaskIsFalse) {
  InsertTaskWithPlugin(1, 9, "bob");
  const std::string before = Versions();
  controller_.set_username("alice");
  EXPECT_FALSE(hosts_.RestartHostWaitingTask(1));
  EXPECT_EQ(Versions(), before);
  controller_.set_username("BOB");
  EXPECT_TRUE(hosts_.RestartHostWaitingTask(1));
  EXPECT_EQ(Statuses(), Rows{"1"});
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

TEST_F(FileHostingControlTest, WithoutSuchTasksRestartingAllWritesNothing) {
  InsertTaskWithPlugin(1, 15);
  const std::string before = Versions();
  EXPECT_TRUE(hosts_.RestartAllHostWaitingTask());
  EXPECT_EQ(Versions(), before);
}

TEST_F(FileHostingControlTest, RestartingAllGoesOnAfterATaskThatFailedAndLeavesItsPluginRow) {
  InsertTaskWithPlugin(1, 9);
  InsertTaskWithPlugin(2, 9);
  RefuseUpdates("download_queue", 1);
  EXPECT_TRUE(hosts_.RestartAllHostWaitingTask());
  EXPECT_EQ(Statuses(), (Rows{"9", "1"}));
  EXPECT_EQ(Attributes(), (Rows{"{\"kept\": true}", "null"}));
  EXPECT_EQ(TakeLog(), Refused(kUpdateTask));
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

TEST_F(FileHostingControlTest, RestartingAllIsTrueAlsoWhenTheTasksCannotBeListed) {
  raw_.Run("ALTER TABLE download_queue RENAME TO elsewhere");
  EXPECT_TRUE(hosts_.RestartAllHostWaitingTask());
  raw_.Run("ALTER TABLE elsewhere RENAME TO download_queue");
  const Lines lines = TakeLog();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].source, "dbquery/query");
  EXPECT_EQ(lines[1], (test_support::LogLine{test_support::kError, "db/download_queue",
                                             "Failed to execute list operation"}));
}

TEST_F(FileHostingControlTest, AConnectionThatCannotBeOpenedIsThrown) {
  test_support::HaltServer();
  EXPECT_THROW(hosts_.RestartHostWaitingTask(1), soci::soci_error);
  EXPECT_THROW(hosts_.RestartAllHostWaitingTask(), soci::soci_error);
  test_support::ResumeServer();
}

// A control of a program's own, which notes the tasks and does something else instead.
class NotingControl : public FileHostingControl {
 public:
  using FileHostingControl::FileHostingControl;
  bool RestartHostWaitingTask(int task_id) override {
    seen.push_back(task_id);
    return instead(task_id);
  }

  Ids seen;
  std::function<bool(int)> instead;
};

class OverriddenFileHostingControlTest : public RestartTest<NotingControl> {};

TEST_F(OverriddenFileHostingControlTest, RestartingAllCallsTheOverrideForEachTaskInTheListsOrder) {
  for (const int id : {3, 1, 2}) {
    InsertTaskWithPlugin(id, 9);
  }
  control_.instead = [](int task_id) { return task_id == 2; };
  EXPECT_TRUE(control_.RestartAllHostWaitingTask());
  EXPECT_EQ(control_.seen, (Ids{1, 2, 3}));
  EXPECT_EQ(Statuses(), Rows(3, "9")) << "nothing but the override is called";
  EXPECT_EQ(Attributes(), (Rows{"{\"kept\": true}", "null", "{\"kept\": true}"}))
      << "its word decides about the plug-in row";
}

TEST_F(OverriddenFileHostingControlTest, ATaskThatLeftTheStatusSinceTheListIsSkipped) {
  InsertTaskWithPlugin(1, 9);
  InsertTaskWithPlugin(2, 9);
  control_.instead = [this](int task_id) {
    raw_.Run("UPDATE download_queue SET status = 3 WHERE task_id = 2");
    return control_.FileHostingControl::RestartHostWaitingTask(task_id);
  };
  EXPECT_TRUE(control_.RestartAllHostWaitingTask());
  EXPECT_EQ(Statuses(), (Rows{"1", "3"}));
  EXPECT_EQ(Attributes(), (Rows{"null", "{\"kept\": true}"}));
}

}  // namespace
}  // namespace dorvdl::control
