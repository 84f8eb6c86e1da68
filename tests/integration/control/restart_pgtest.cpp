// What holds for both restarts, asked through their interfaces.
#include <gtest/gtest.h>
#include <soci/soci.h>

#include <string>

#include "integration/control/restart_test.h"

namespace dorvdl::control {
namespace {

using test_support::TakeLog;

using Restarts = testing::Types<Captcha, FileHosting>;

template <typename Restart>
class EveryRestartTest : public RestartTest<typename Restart::Control> {
 protected:
  bool One(int task_id) { return Restart::One(this->control_, task_id); }
  bool All() { return Restart::All(this->control_); }
};
TYPED_TEST_SUITE(EveryRestartTest, Restarts);

TYPED_TEST(EveryRestartTest, ATaskThatIsNotThereIsFalse) {
  this->InsertTaskWithPlugin(1, TypeParam::kStatus);
  this->InsertPlugin(2);
  const std::string before = this->Versions();
  for (const int id : {2, 0, -1}) {
    EXPECT_FALSE(this->One(id)) << id;
  }
  EXPECT_EQ(this->Versions(), before);
}

TYPED_TEST(EveryRestartTest, AnotherUsersTaskIsFalse) {
  this->InsertTaskWithPlugin(1, TypeParam::kStatus, "bob");
  const std::string before = this->Versions();
  this->controller_.set_username("alice");
  EXPECT_FALSE(this->One(1));
  EXPECT_EQ(this->Versions(), before);
  this->controller_.set_username("BOB");
  EXPECT_TRUE(this->One(1));
  EXPECT_EQ(this->Statuses(), Rows{"1"});
}

TYPED_TEST(EveryRestartTest, WithoutSuchTasksRestartingAllWritesNothing) {
  this->InsertTaskWithPlugin(1, Captcha::kStatus + FileHosting::kStatus - TypeParam::kStatus);
  const std::string before = this->Versions();
  EXPECT_TRUE(this->All());
  EXPECT_EQ(this->Versions(), before);
}

TYPED_TEST(EveryRestartTest, RestartingAllGoesOnAfterATaskThatFailedAndLeavesItsPluginRow) {
  this->InsertTaskWithPlugin(1, TypeParam::kStatus);
  this->InsertTaskWithPlugin(2, TypeParam::kStatus);
  this->RefuseUpdates("download_queue", 1);
  EXPECT_TRUE(this->All());
  EXPECT_EQ(this->Statuses(), (Rows{std::to_string(TypeParam::kStatus), "1"}));
  EXPECT_EQ(this->Attributes(), (Rows{"{\"kept\": true}", "null"}));
  EXPECT_EQ(TakeLog(), this->Refused(kUpdateTask));
}

TYPED_TEST(EveryRestartTest, RestartingAllIsTrueAlsoWhenTheTasksCannotBeListed) {
  this->raw_.Run("ALTER TABLE download_queue RENAME TO elsewhere");
  EXPECT_TRUE(this->All());
  this->raw_.Run("ALTER TABLE elsewhere RENAME TO download_queue");
  const Lines lines = TakeLog();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].source, "dbquery/query");
  EXPECT_EQ(lines[0].text.find("Failed to execute statement: [42P01] "), 0U);
  EXPECT_NE(lines[0].text.find(
                " FROM \"download_queue\" WHERE \"status\" = ANY($1) ORDER BY \"task_id\" ASC"),
            std::string::npos)
      << "neither limit nor offset";
  EXPECT_EQ(lines[1], (test_support::LogLine{test_support::kError, "db/download_queue",
                                             "Failed to execute list operation"}));
}

TYPED_TEST(EveryRestartTest, AConnectionThatCannotBeOpenedIsThrown) {
  test_support::HaltServer();
  EXPECT_THROW(this->One(1), soci::soci_error);
  EXPECT_THROW(this->All(), soci::soci_error);
  test_support::ResumeServer();
}

template <typename Restart>
class OverriddenRestartTest : public RestartTest<typename Restart::Overridden> {};
TYPED_TEST_SUITE(OverriddenRestartTest, Restarts);

TYPED_TEST(OverriddenRestartTest, RestartingAllCallsTheOverrideForEachTaskInTheListsOrder) {
  for (const int id : {3, 1, 2}) {
    this->InsertTaskWithPlugin(id, TypeParam::kStatus);
  }
  EXPECT_TRUE(TypeParam::All(this->control_));
  EXPECT_EQ(this->control_.restart.seen, (Ids{1, 2, 3}));
  EXPECT_EQ(this->Statuses(), Rows(3, std::to_string(TypeParam::kStatus)))
      << "nothing but the override is called";
  EXPECT_EQ(this->Attributes(), Rows(3, "{\"kept\": true}"));
}

}  // namespace
}  // namespace dorvdl::control
