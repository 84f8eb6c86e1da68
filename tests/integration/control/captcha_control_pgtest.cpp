// Restarting tasks that wait for a captcha; what both restarts have in common is tested beside.
#include <gtest/gtest.h>

#include <cstddef>

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

class OverriddenCaptchaControlTest : public RestartTest<Captcha::Overridden> {};

TEST_F(OverriddenCaptchaControlTest, ATaskThatChangedSinceTheListIsRestartedAllTheSame) {
  InsertTask(1, 15);
  InsertTask(2, 15);
  control_.restart.instead = [this](int task_id) {
    raw_.Run("UPDATE download_queue SET status = 3 WHERE task_id = 2");
    return control_.CaptchaControl::RestartCaptchaTask(task_id);
  };
  EXPECT_TRUE(control_.RestartAllCaptchaTask());
  EXPECT_EQ(Statuses(), (Rows{"1", "1"}));
}

}  // namespace
}  // namespace dorvdl::control
