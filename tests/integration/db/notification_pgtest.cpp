// Pending notifications, from the table and from the view.
#include <dorvdl/db/notification.h>
#include <gtest/gtest.h>
#include <soci/soci.h>

#include "integration/db/table_test.h"

namespace dorvdl::db {
namespace {

using test_support::kError;
using test_support::TakeLog;

class NotificationTest : public TableTest {
 protected:
  void TearDown() override {
    ReplaceView("SELECT id, task_id, type, create_time FROM notification");
  }

  void InsertThree() {
    raw_.Run(
        "INSERT INTO notification VALUES (3, 30, 'failed', 1099511627776), (1, 10, 'complete', 1), "
        "(2, 20, 'captcha', 2)");
  }

  void ReplaceView(const std::string& select) {
    raw_.Run("DROP VIEW notification_view; CREATE VIEW notification_view AS " + select);
  }

  Notification Notifications() { return Notification(Session()); }
  Ids ListedFromView() { return KeysOf(Notifications().ListFromView()); }
};

TEST_F(NotificationTest, TheTableIsListedInTheDatabasesOrder) {
  InsertThree();
  EXPECT_EQ(KeysOf(Notifications().List()), (Ids{3, 1, 2}));
}

TEST_F(NotificationTest, TheViewIsListedById) {
  InsertThree();
  const std::vector<record::Notification> listed = Notifications().ListFromView();
  EXPECT_EQ(KeysOf(listed), (Ids{1, 2, 3}));
  EXPECT_EQ(listed[2].proto().task_id(), 30);
  EXPECT_EQ(listed[2].proto().type(), "failed");
  EXPECT_EQ(listed[2].proto().create_time(), 1099511627776);
}

TEST_F(NotificationTest, TheViewsOwnOrderDoesNotCount) {
  InsertThree();
  ReplaceView("SELECT id, task_id, type, create_time FROM notification ORDER BY id DESC");
  EXPECT_EQ(ListedFromView(), (Ids{1, 2, 3}));
}

TEST_F(NotificationTest, TheViewMayLeaveRowsOutAndAddColumns) {
  InsertThree();
  ReplaceView(
      "SELECT type, id, 'x'::text AS extra, create_time, task_id FROM notification "
      "WHERE type <> 'captcha'");
  EXPECT_EQ(ListedFromView(), (Ids{1, 3}));
  EXPECT_EQ(KeysOf(Notifications().List()).size(), 3U) << "the table is listed whole";
}

TEST_F(NotificationTest, AnEmptyViewGivesAnEmptyList) {
  InsertThree();
  ReplaceView("SELECT id, task_id, type, create_time FROM notification WHERE false");
  EXPECT_EQ(ListedFromView(), Ids{});
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(NotificationTest, AViewWithoutAColumnIsThrown) {
  InsertThree();
  ReplaceView("SELECT id, task_id, type FROM notification");
  EXPECT_THROW(Notifications().ListFromView(), soci::soci_error);
  EXPECT_EQ(TakeLog(), Lines{});
  EXPECT_EQ(Notifications().List().size(), 3U) << "the session goes on";
}

TEST_F(NotificationTest, AFailedListIsEmptyAndLogged) {
  Notification notifications(LostSession());
  EXPECT_EQ(KeysOf(notifications.List()), Ids{});
  EXPECT_EQ(TakeLog(), (Lines{Lost("SELECT * FROM \"notification\""),
                              {kError, "db/operator", "Failed to execute list operation"}}));
  EXPECT_EQ(KeysOf(notifications.ListFromView()), Ids{});
  EXPECT_EQ(TakeLog(), (Lines{Lost("SELECT * FROM \"notification_view\" ORDER BY \"id\" ASC"),
                              {kError, "db/notification", "Failed to execute list operation"}}));
}

}  // namespace
}  // namespace dorvdl::db
