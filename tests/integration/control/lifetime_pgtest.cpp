// Accessors and transactions on a connection that their controller replaces, or that is gone.
#include <dorvdl/control/controller.h>
#include <dorvdl/db/download_queue.h>
#include <dorvdl/db/rss_item.h>
#include <dorvdl/dbquery/transaction.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "support/connection.h"
#include "support/database.h"
#include "support/syslog_capture.h"

namespace dorvdl::control {
namespace {

using db::DBSession;
using db::DownloadQueue;

static_assert(sizeof(DBSession) == sizeof(std::shared_ptr<dorvdbquery::Session>));

class ConnectionLifetimeTest : public test_support::DatabaseTest {
 protected:
  static bool Create(DownloadQueue& queue) {
    record::Task task;
    task.mutable_proto().set_url("u");
    return queue.Create(task, "");
  }

  std::string Tasks() { return raw_.Value("SELECT count(*) FROM download_queue"); }

  // Waits until the server has that many sessions of the library.
  void AwaitSessions(const std::string& expected) {
    const std::string count =
        "SELECT count(*) FROM pg_stat_activity WHERE application_name = 'libdorvdlcore'";
    for (int tries = 0; tries < 500 && raw_.Value(count) != expected; ++tries) {
      usleep(10000);
    }
    EXPECT_EQ(raw_.Value(count), expected);
  }
};

TEST_F(ConnectionLifetimeTest, AnAccessorGoesOnWithItsConnectionWhenTheSessionObjectIsGone) {
  auto session = std::make_unique<DBSession>();
  DownloadQueue queue(*session, "");
  db::RssItem items(*session);
  session.reset();
  EXPECT_TRUE(Create(queue));
  EXPECT_EQ(queue.Count({}), 1);
  EXPECT_EQ(items.Count({}), 0);
  EXPECT_EQ(Tasks(), "1");
}

TEST_F(ConnectionLifetimeTest, AConnectionClosesWithItsLastHolder) {
  {
    auto session = std::make_unique<DBSession>();
    const DownloadQueue queue(*session, "");
    session.reset();
    AwaitSessions("1");
  }
  AwaitSessions("0");
}

TEST_F(ConnectionLifetimeTest, AnAccessorStaysOnTheConnectionThatItsControllerHasReplaced) {
  Controller controller;
  auto queue = controller.UseWithName<DownloadQueue>();
  test_support::TerminateOtherSessions(raw_);
  controller.db_session();
  EXPECT_EQ(queue.Count({}), -1);
  EXPECT_FALSE(Create(queue));
  EXPECT_EQ(controller.UseWithName<DownloadQueue>().Count({}), 0);
  EXPECT_EQ(Tasks(), "0");
}

// As a daemon does it that begins a transaction, sleeps over a time limit of the server's, and goes
// on.
TEST_F(ConnectionLifetimeTest, ATransactionOnAConnectionThatWasReplacedFails) {
  Controller controller;
  dorvdbquery::DefaultTransaction transaction(controller.db_session().session());
  auto queue = controller.UseWithName<DownloadQueue>();
  EXPECT_TRUE(Create(queue));
  test_support::TerminateOtherSessions(raw_);
  auto other = controller.UseWithName<DownloadQueue>();
  EXPECT_TRUE(Create(other)) << "on a connection of its own";
  EXPECT_FALSE(Create(queue));
  EXPECT_FALSE(transaction.Commit());
  EXPECT_EQ(Tasks(), "1");
}

TEST_F(ConnectionLifetimeTest, AReplacedConnectionThatNobodyHoldsEndsItsTransaction) {
  Controller controller;
  dorvdbquery::DefaultTransaction transaction(controller.db_session().session());
  test_support::TerminateOtherSessions(raw_);
  controller.db_session();
  test_support::TakeLog();
  EXPECT_FALSE(transaction.Commit());
  EXPECT_EQ(test_support::TakeLog(),
            (std::vector<test_support::LogLine>{
                {test_support::kError, "dbquery/query",
                 "Failed to execute statement: the session has no connection"}}));
}

}  // namespace
}  // namespace dorvdl::control
