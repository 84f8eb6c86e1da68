// Download tasks through their control: what it passes on, and what it answers by itself.
#include <dorvdl/control/task_control.h>
#include <gtest/gtest.h>
#include <soci/soci.h>

#include <type_traits>

#include "support/child.h"
#include "support/database.h"
#include "support/identity.h"
#include "support/syslog_capture.h"
#include "support/temporary_folder.h"

namespace dorvdl::control {
namespace {

using record::Task;
using test_support::LogLine;
using test_support::TakeIdCalls;
using test_support::TakeLog;
using Lines = std::vector<LogLine>;
using ListOption = option::task::ListOption;

static_assert(std::is_base_of_v<interface::TaskInterface, TaskControl>);
static_assert(!std::has_virtual_destructor_v<interface::TaskInterface>);

class TaskControlTest : public test_support::DatabaseTest {
 protected:
  // Inserts a task of the user; returns its id.
  int Insert(const std::string& user) {
    return std::stoi(raw_.Value("INSERT INTO download_queue (username) VALUES ('" + user +
                                "') RETURNING task_id"));
  }

  std::vector<std::string> Names() {
    return raw_.Run("SELECT filename FROM download_queue ORDER BY task_id");
  }

  Controller controller_;
  TaskControl control_{controller_};
  interface::TaskInterface& tasks_ = control_;
  test_support::TemporaryFolder folder_;
};

TEST_F(TaskControlTest, CreateStoresTheTaskWithItsFile) {
  Task task;
  task.mutable_proto().set_username("alice");
  ASSERT_TRUE(tasks_.Create(task, folder_.Write("a.torrent", "content")));
  EXPECT_EQ(task.primary_key(), 1);
  EXPECT_NE(task.proto().file_oid(), 0);
  ASSERT_TRUE(tasks_.LoExport(1, folder_.Path("out")));
  EXPECT_EQ(folder_.Read("out"), "content");
}

TEST_F(TaskControlTest, CreateWithoutAPathStoresTheTaskAlone) {
  Task task;
  ASSERT_TRUE(tasks_.Create(task, ""));
  EXPECT_FALSE(task.proto().has_file_oid());
  EXPECT_FALSE(tasks_.LoExport(task.primary_key(), folder_.Path("out")));
}

TEST_F(TaskControlTest, AFailedCreateLeavesTheTaskAsItWas) {
  Task task;
  task.mutable_proto().set_username("alice");
  EXPECT_FALSE(tasks_.Create(task, folder_.Path("missing")));
  EXPECT_EQ(task.GetInsertFields(), std::vector<std::string>{"username"});
  EXPECT_EQ(raw_.Value("SELECT count(*) FROM download_queue"), "0");
}

TEST_F(TaskControlTest, EveryOperationReachesTheUsersOwnTasksOnly) {
  const int alices = Insert("alice");
  const int bobs = Insert("BOB");
  controller_.set_username("Bob");
  EXPECT_TRUE(tasks_.Get(bobs).IsValid());
  EXPECT_FALSE(tasks_.Get(alices).IsValid());
  ASSERT_EQ(tasks_.List({}).size(), 1U);
  EXPECT_EQ(tasks_.List({})[0].primary_key(), bobs);
  Task change;
  change.mutable_proto().set_filename("bob was here");
  for (const int id : {alices, bobs}) {
    change.set_primary_key(id);
    EXPECT_TRUE(tasks_.Update(change));
  }
  EXPECT_EQ(Names(), (std::vector<std::string>{"", "bob was here"}));
  const std::string file = folder_.Write("f", "x");
  EXPECT_FALSE(tasks_.LoImport(alices, file));
  EXPECT_TRUE(tasks_.LoImport(bobs, file));
  EXPECT_FALSE(tasks_.LoExport(alices, folder_.Path("out")));
  EXPECT_TRUE(tasks_.LoExport(bobs, folder_.Path("out")));
  EXPECT_TRUE(tasks_.Delete({alices, bobs}));
  EXPECT_EQ(raw_.Run("SELECT username FROM download_queue"), std::vector<std::string>{"alice"});
}

TEST_F(TaskControlTest, TheUserOfTheMomentCounts) {
  Insert("alice");
  Insert("bob");
  EXPECT_EQ(tasks_.List({}).size(), 2U) << "no user is all users";
  controller_.set_username("alice");
  EXPECT_EQ(tasks_.List({}).size(), 1U);
  controller_.set_username("carol");
  EXPECT_EQ(tasks_.List({}).size(), 0U);
}

TEST_F(TaskControlTest, AListTakesItsWholeOption) {
  raw_.Run(
      "INSERT INTO download_queue (filename, status) SELECT 'f' || n, n % 2 FROM "
      "generate_series(1, 6) n");
  ListOption option;
  option.status = std::vector<int>{1};
  option.common.sort_by = "filename";
  option.common.ascending = false;
  option.common.offset = 1;
  option.common.limit = 1;
  ASSERT_EQ(tasks_.List(option).size(), 1U);
  EXPECT_EQ(tasks_.List(option)[0].proto().filename(), "f3");
}

TEST_F(TaskControlTest, AnUpdateWithNothingButTheKeyIsFalse) {
  Task change;
  change.set_primary_key(Insert("alice"));
  EXPECT_FALSE(tasks_.Update(change));
}

TEST_F(TaskControlTest, ExceptionsOfReadingPass) {
  Insert("alice");
  raw_.Run("ALTER TABLE download_queue ALTER pid TYPE bigint");
  EXPECT_THROW(tasks_.Get(1), std::bad_cast);
  EXPECT_THROW(tasks_.List({}), std::bad_cast);
  raw_.Run("ALTER TABLE download_queue ALTER pid TYPE integer");
  EXPECT_TRUE(tasks_.Get(1).IsValid());
}

TEST_F(TaskControlTest, ALostConnectionIsReplacedByTheNextCall) {
  Insert("alice");
  EXPECT_TRUE(tasks_.Get(1).IsValid());
  test_support::TerminateOtherSessions(raw_);
  EXPECT_TRUE(tasks_.Get(1).IsValid());
}

TEST_F(TaskControlTest, OperationsGoOnAfterTheServerWasDown) {
  const int id = Insert("alice");
  EXPECT_TRUE(tasks_.Get(id).IsValid());
  test_support::HaltServer();
  EXPECT_THROW(tasks_.Get(id), soci::soci_error);
  EXPECT_THROW(tasks_.List({}), soci::soci_error);
  Task task;
  EXPECT_THROW(tasks_.Create(task, ""), soci::soci_error);
  EXPECT_THROW(tasks_.Delete({id}), soci::soci_error);
  test_support::ResumeServer();
  EXPECT_TRUE(tasks_.Get(id).IsValid());
}

TEST_F(TaskControlTest, EmptyIdsAndPathsAreAnsweredBeforeAnythingIsOpened) {
  test_support::HaltServer();
  test_support::RunInChild([this] {
    test_support::BecomeIds({0, 1000, 2000}, {0, 1000, 2000});
    TakeLog();
    TakeIdCalls();
    EXPECT_FALSE(tasks_.Delete({}));
    EXPECT_FALSE(tasks_.LoImport(1, ""));
    EXPECT_FALSE(tasks_.LoExport(1, ""));
    EXPECT_EQ(TakeLog(), Lines{});
    EXPECT_EQ(TakeIdCalls(), std::vector<std::string>{});
    EXPECT_THROW(tasks_.Delete({1}), soci::soci_error) << "the server is really down";
    return std::string();
  });
  test_support::ResumeServer();
}

}  // namespace
}  // namespace dorvdl::control
