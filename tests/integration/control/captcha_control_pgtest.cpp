// Restarting tasks that wait for a captcha.
#include <dorvdl/control/captcha_control.h>
#include <gtest/gtest.h>
#include <soci/soci.h>

#include <functional>

#include "integration/control/restart_test.h"

namespace dorvdl::control {
namespace {

using test_support::TakeLog;

class CaptchaControlTest : public RestartTest<CaptchaControl> {
 protected:
  interface::CaptchaInterface& captchas_ = control_;
};

TEST_F(CaptchaControlTest, ARestartSetsTheTaskToWaitingAndClearsItsPluginsAttributes) {
  InsertTaskWithPlugin(1, 15);
  InsertTaskWithPlugin(2, 15);
  const Rows tasks = OtherTaskColumns();
  const Rows plugins = OtherPluginColumns();
  EXPECT_TRUE(captchas_.RestartCaptchaTask(1));
  EXPECT_EQ(Statuses(), (Rows{"1", "15"}));
  EXPECT_EQ(Attributes(), (Rows{"null", "{\"kept\": true}"}));
  EXPECT_EQ(OtherTaskColumns(), tasks);
  EXPECT_EQ(OtherPluginColumns(), plugins);
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(CaptchaControlTest, AnyStatusIsRestarted) {
  const Ids statuses{2, 1, 5, 9, 101, 0};
  for (std::size_t i = 0; i < statuses.size(); ++i) {
    const int id = static_cast<int>(i) + 1;
    InsertTaskWithPlugin(id, statuses[i]);
    EXPECT_TRUE(captchas_.RestartCaptchaTask(id)) << statuses[i];
  }
  EXPECT_EQ(Statuses(), Rows(statuses.size(), "1"));
  EXPECT_EQ(Attributes(), Rows(statuses.size(), "null"));
}

TEST_F(CaptchaControlTest, ATaskThatIsNotThereIsFalse) {
  InsertTaskWithPlugin(1, 15);
  InsertPlugin(2);
  const std::string before = Versions();
  for (const int id : {2, 0, -1}) {
    EXPECT_FALSE(captchas_.RestartCaptchaTask(id)) << id;
  }
  EXPECT_EQ(Versions(), before);
}

TEST_F(CaptchaControlTest, AnotherUsersTaskIsFalse) {
  InsertTaskWithPlugin(1, 15, "bob");
  const std::string before = Versions();
  controller_.set_username("alice");
  EXPECT_FALSE(captchas_.RestartCaptchaTask(1));
  EXPECT_EQ(Versions(), before);
  controller_.set_username("BOB");
  EXPECT_TRUE(captchas_.RestartCaptchaTask(1));
  EXPECT_EQ(Statuses(), Rows{"1"});
}

TEST_F(CaptchaControlTest, ATaskWithoutAPluginRowIsRestarted) {
  InsertTask(1, 15);
  EXPECT_TRUE(captchas_.RestartCaptchaTask(1));
  EXPECT_EQ(Statuses(), Rows{"1"});
  EXPECT_EQ(Attributes(), Rows{}) << "no row is made";
}

TEST_F(CaptchaControlTest, AFailedUpdateOfTheTaskLeavesThePluginRow) {
  InsertTaskWithPlugin(1, 15);
  RefuseUpdates("download_queue", 1);
  controller_.set_username("alice");
  EXPECT_FALSE(captchas_.RestartCaptchaTask(1));
  EXPECT_EQ(Statuses(), Rows{"15"});
  EXPECT_EQ(Attributes(), Rows{"{\"kept\": true}"});
  EXPECT_EQ(TakeLog(), Refused(std::string(kUpdateTask) + " AND lower(username) = $3"));
}

TEST_F(CaptchaControlTest, AFailedUpdateOfThePluginRowIsFalse) {
  InsertTaskWithPlugin(1, 15);
  RefuseUpdates("task_plugin", 1);
  EXPECT_FALSE(captchas_.RestartCaptchaTask(1));
  EXPECT_EQ(Statuses(), Rows{"1"}) << "the two are separate statements";
  EXPECT_EQ(TakeLog(), Refused(kUpdatePlugin));
}

TEST_F(CaptchaControlTest, AllOfTheUsersTasksInStatus15AreRestarted) {
  InsertTaskWithPlugin(1, 15);
  InsertTaskWithPlugin(2, 9);
  InsertTaskWithPlugin(3, 15, "ALICE");
  InsertTaskWithPlugin(4, 15, "bob");
  controller_.set_username("Alice");
  EXPECT_TRUE(captchas_.RestartAllCaptchaTask());
  EXPECT_EQ(Statuses(), (Rows{"1", "9", "1", "15"}));
  EXPECT_EQ(Attributes(), (Rows{"null", "{\"kept\": true}", "null", "{\"kept\": true}"}));
  controller_.set_username("");
  EXPECT_TRUE(captchas_.RestartAllCaptchaTask());
  EXPECT_EQ(Statuses(), (Rows{"1", "9", "1", "1"}));
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(CaptchaControlTest, WithoutSuchTasksRestartingAllWritesNothing) {
  InsertTaskWithPlugin(1, 9);
  const std::string before = Versions();
  EXPECT_TRUE(captchas_.RestartAllCaptchaTask());
  EXPECT_EQ(Versions(), before);
}

TEST_F(CaptchaControlTest, RestartingAllGoesOnAfterOneThatFailed) {
  InsertTaskWithPlugin(1, 15);
  InsertTaskWithPlugin(2, 15);
  RefuseUpdates("download_queue", 1);
  EXPECT_TRUE(captchas_.RestartAllCaptchaTask());
  EXPECT_EQ(Statuses(), (Rows{"15", "1"}));
  EXPECT_EQ(Attributes(), (Rows{"{\"kept\": true}", "null"}));
  EXPECT_EQ(TakeLog(), Refused(kUpdateTask));
}

TEST_F(CaptchaControlTest, RestartingAllIsTrueAlsoWhenTheTasksCannotBeListed) {
  raw_.Run("ALTER TABLE download_queue RENAME TO elsewhere");
  EXPECT_TRUE(captchas_.RestartAllCaptchaTask());
  raw_.Run("ALTER TABLE elsewhere RENAME TO download_queue");
  const Lines lines = TakeLog();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].text.find("Failed to execute statement: [42P01] "), 0U);
  EXPECT_NE(lines[0].text.find(
                " FROM \"download_queue\" WHERE \"status\" = ANY($1) ORDER BY \"task_id\" ASC"),
            std::string::npos)
      << "neither limit nor offset";
  EXPECT_EQ(lines[1], (test_support::LogLine{test_support::kError, "db/download_queue",
                                             "Failed to execute list operation"}));
}

TEST_F(CaptchaControlTest, AConnectionThatCannotBeOpenedIsThrown) {
  test_support::HaltServer();
  EXPECT_THROW(captchas_.RestartCaptchaTask(1), soci::soci_error);
  EXPECT_THROW(captchas_.RestartAllCaptchaTask(), soci::soci_error);
  test_support::ResumeServer();
}

// A control of a program's own, which notes the tasks and does something else instead.
class NotingControl : public CaptchaControl {
 public:
  using CaptchaControl::CaptchaControl;
  bool RestartCaptchaTask(int task_id) override {
    seen.push_back(task_id);
    return instead(task_id);
  }

  Ids seen;
  std::function<bool(int)> instead = [](int) { return false; };
};

class OverriddenCaptchaControlTest : public RestartTest<NotingControl> {};

TEST_F(OverriddenCaptchaControlTest, RestartingAllCallsTheOverrideForEachTaskInTheListsOrder) {
  for (const int id : {3, 1, 2}) {
    InsertTaskWithPlugin(id, 15);
  }
  EXPECT_TRUE(control_.RestartAllCaptchaTask());
  EXPECT_EQ(control_.seen, (Ids{1, 2, 3}));
  EXPECT_EQ(Statuses(), Rows(3, "15")) << "nothing but the override is called";
  EXPECT_EQ(Attributes(), Rows(3, "{\"kept\": true}"));
}

TEST_F(OverriddenCaptchaControlTest, ATaskThatChangedSinceTheListIsRestartedAllTheSame) {
  InsertTask(1, 15);
  InsertTask(2, 15);
  control_.instead = [this](int task_id) {
    raw_.Run("UPDATE download_queue SET status = 3 WHERE task_id = 2");
    return control_.CaptchaControl::RestartCaptchaTask(task_id);
  };
  EXPECT_TRUE(control_.RestartAllCaptchaTask());
  EXPECT_EQ(Statuses(), (Rows{"1", "1"}));
}

}  // namespace
}  // namespace dorvdl::control
