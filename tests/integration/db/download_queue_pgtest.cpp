// Tasks: whose they are, every criterion and every order.
#include <dorvdl/util/task_flag.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "integration/db/download_queue_test.h"
#include "support/sql_matchers.h"

namespace dorvdl::db {
namespace {

using control::option::task::ListOption;
using record::Task;
using test_support::kError;
using test_support::LogLine;
using test_support::Show;
using test_support::TakeLog;

const LogLine kListFailed{kError, "db/download_queue", "Failed to execute list operation"};

TEST_F(DownloadQueueTest, NamesItsTableAndKey) {
  DownloadQueue queue = QueueOf("");
  EXPECT_STREQ(queue.GetTableName(), "download_queue");
  EXPECT_STREQ(queue.GetPrimaryKeyName(), "task_id");
}

TEST_F(DownloadQueueTest, TheUserConditionComparesInLowerCase) {
  EXPECT_TRUE(QueueOf("").GetUserCondition().IsNull());
  EXPECT_EQ(Show(QueueOf("Alice").GetUserCondition()), "lower(username) = $1 [$1=alice]");
}

TEST_F(DownloadQueueTest, TheConditionJoinsItsTermsInOrder) {
  ListOption option;
  option.exclude_status = true;
  option.status = std::vector<int>{5, 8};
  option.task_flags = 4;
  option.waiting_until_time = 100;
  option.filename = "x";
  option.common.limit = 1;
  option.common.sort_by = "pid";
  EXPECT_EQ(Show(QueueOf("bob").GetCondition(option)),
            "lower(username) = $1 AND strpos(\"filename\", $2) > 0 AND waiting_until_time > $3 AND "
            "(task_flags&4) != $4 AND NOT (\"status\" = ANY($5)) "
            "[$1=bob] [$2=x] [$3=100] [$4=0] [$5={5,8}]");
}

TEST_F(DownloadQueueTest, AnEmptyUserNameReachesAllTasks) {
  const int alice = Insert("username, filename", "'alice', 'a'");
  const int bob = Insert("username, filename", "'bob', 'b'");
  EXPECT_EQ(Names({}), (Rows{"a", "b"}));
  EXPECT_EQ(QueueOf("").Count({}), 2);
  EXPECT_TRUE(QueueOf("").Get(bob).IsValid());
  Task change;
  change.set_primary_key(alice);
  change.mutable_proto().set_status(3);
  EXPECT_TRUE(QueueOf("").Update(change));
  EXPECT_EQ(raw_.Value("SELECT status FROM download_queue WHERE username = 'alice'"), "3");
  EXPECT_TRUE(QueueOf("").Delete({alice, bob}));
  EXPECT_EQ(raw_.Value("SELECT count(*) FROM download_queue"), "0");
}

TEST_F(DownloadQueueTest, AUserReachesTheirOwnTasksInAnyCase) {
  const int mine = Insert("username, filename", "'aLICE', 'mine'");
  const int other = Insert("username, filename", "'bob', 'other'");
  DownloadQueue queue = QueueOf("Alice");
  EXPECT_EQ(Names({}, "Alice"), Rows{"mine"});
  EXPECT_EQ(queue.Count({}), 1);
  EXPECT_TRUE(queue.Get(mine).IsValid());
  EXPECT_FALSE(queue.Get(other).IsValid());
  Task change;
  change.set_primary_key(other);
  change.mutable_proto().set_filename("taken");
  EXPECT_TRUE(queue.Update(change)) << "an update that reaches no row succeeds";
  EXPECT_TRUE(queue.Delete({other}));
  EXPECT_EQ(raw_.Value("SELECT filename FROM download_queue WHERE username = 'bob'"), "other");
  EXPECT_TRUE(queue.Delete({mine, other}));
  EXPECT_EQ(raw_.Run("SELECT username FROM download_queue"), Rows{"bob"});
}

TEST_F(DownloadQueueTest, UserNamesBeyondAsciiMatchAsTheDatabaseLowersThem) {
  Insert("username, filename", "'ägir', '1'");
  Insert("username, filename", "'ÉMILE', '2'");
  EXPECT_EQ(Names({}, "ÄGIR"), Rows{"1"});
  EXPECT_EQ(Names({}, "émile"), Rows{"2"});
}

TEST_F(DownloadQueueTest, UserNamesAreText) {
  const std::string odd = "o'neil; DROP TABLE download_queue; -- %_\\ \"x\"";
  Insert("username, filename", "$q$" + odd + "$q$, 'odd'");
  EXPECT_EQ(Names({}, odd), Rows{"odd"});
  EXPECT_EQ(Names({}, "o%"), Rows{});
  EXPECT_EQ(Names({}, std::string(1 << 20, 'x')), Rows{});
}

TEST_F(DownloadQueueTest, TheFileNameFilterIsALiteralSubstring) {
  Insert("filename", "'100%_done\\x'");
  Insert("filename", "'100 done'");
  ListOption option;
  const auto listed = [&](const std::string& text) {
    option.filename = text;
    return Names(option).size();
  };
  EXPECT_EQ(listed("%_"), 1U);
  EXPECT_EQ(listed("\\x"), 1U);
  EXPECT_EQ(listed("DONE"), 0U) << "case counts";
  EXPECT_EQ(listed("00"), 2U);
  EXPECT_EQ(listed(""), 2U);
  EXPECT_EQ(listed("'; DELETE FROM download_queue; --"), 0U);
  EXPECT_EQ(listed(std::string(1 << 20, '%')), 0U);
  EXPECT_EQ(raw_.Value("SELECT count(*) FROM download_queue"), "2");
}

TEST_F(DownloadQueueTest, AnEmbeddedNulInAFilterFailsTheList) {
  ListOption option;
  option.filename = std::string("a\0b", 3);
  EXPECT_TRUE(QueueOf("").List(option).empty());
  EXPECT_EQ(TakeLog(), (Lines{{kError, "dbquery/query",
                               "Failed to execute statement: a text value has an "
                               "embedded NUL"},
                              kListFailed}));
  EXPECT_EQ(QueueOf("").Count(option), -1);
}

// The server would see only the part before the NUL, which is another user's name.
TEST_F(DownloadQueueTest, AUserNameWithAnEmbeddedNulReachesNothing) {
  const int id = Insert("username", "'alice'");
  DownloadQueue queue = QueueOf(std::string("alice\0x", 7));
  const LogLine refused{kError, "dbquery/query",
                        "Failed to execute statement: a text value has an embedded NUL"};
  TakeLog();
  EXPECT_TRUE(queue.List({}).empty());
  EXPECT_EQ(TakeLog(), (Lines{refused, kListFailed}));
  EXPECT_EQ(queue.Count({}), -1);
  EXPECT_FALSE(queue.Delete({id}));
  EXPECT_EQ(raw_.Value("SELECT count(*) FROM download_queue"), "1");
}

TEST_F(DownloadQueueTest, AnEmptyStatusListRestrictsNothing) {
  Insert("filename, status", "'a', 5");
  ListOption option;
  option.status = std::vector<int>{};
  EXPECT_EQ(Names(option), Rows{"a"});
  option.exclude_status = true;
  EXPECT_EQ(Names(option), Rows{"a"});
}

TEST_F(DownloadQueueTest, StatusesAreListedOrExcluded) {
  Insert("filename, status", "'waiting', 1");
  Insert("filename, status", "'finished', 5");
  Insert("filename, status", "'error', 101");
  ListOption option;
  option.status = std::vector<int>{5, 101};
  EXPECT_EQ(Names(option), (Rows{"finished", "error"}));
  EXPECT_EQ(QueueOf("").Count(option), 2);
  option.exclude_status = false;
  EXPECT_EQ(QueueOf("").Count(option), 2);
  option.exclude_status = true;
  EXPECT_EQ(Names(option), Rows{"waiting"});
}

TEST_F(DownloadQueueTest, FlagsAreTestedOrExcluded) {
  Insert("filename, task_flags", "'torrent', " + std::to_string(task_flag::kBt | task_flag::kHttp));
  Insert("filename, task_flags", "'http', " + std::to_string(task_flag::kHttp));
  ListOption option;
  option.task_flags = task_flag::kBt;
  EXPECT_EQ(Names(option), Rows{"torrent"});
  option.exclude_task_flags = true;
  EXPECT_EQ(Names(option), Rows{"http"});
  option.task_flags = -1;
  EXPECT_EQ(QueueOf("").Count(option), -1) << "(task_flags&-1) is no expression to the server";
}

TEST_F(DownloadQueueTest, TheWaitingTimeIsAnExclusiveBound) {
  Insert("filename, waiting_until_time", "'at', 1000");
  Insert("filename, waiting_until_time", "'after', 1001");
  ListOption option;
  option.waiting_until_time = 1000;
  EXPECT_EQ(Names(option), Rows{"after"});
}

TEST_F(DownloadQueueTest, WithoutSortByTheIdOrdersAscendingWhateverTheDirection) {
  Insert("task_id, filename", "3, 'c'");
  Insert("task_id, filename", "1, 'a'");
  Insert("task_id, filename", "2, 'b'");
  ListOption option;
  EXPECT_EQ(Names(option), (Rows{"a", "b", "c"}));
  option.common.ascending = false;
  EXPECT_EQ(Names(option), (Rows{"a", "b", "c"}));
  option.common.limit = 1;
  option.common.offset = 1;
  EXPECT_EQ(Names(option), Rows{"b"});
}

TEST_F(DownloadQueueTest, ProgressOrdersByPercentThenById) {
  Insert("filename, total_size, current_size", "'half', 200, 100");
  Insert("filename, total_size, current_size", "'unknown', 0, 50");
  Insert("filename, total_size, current_size", "'half again', 8000000000, 4000000000");
  Insert("filename, total_size, current_size", "'quarter', 400, 100");
  ListOption option;
  for (const char* name : {"progress", "PROGRESS", "pRoGress"}) {
    option.common.sort_by = name;
    option.common.ascending = boost::none;
    EXPECT_EQ(Names(option), (Rows{"unknown", "quarter", "half", "half again"}));
    option.common.ascending = false;
    EXPECT_EQ(Names(option), (Rows{"half", "half again", "quarter", "unknown"}));
  }
}

TEST_F(DownloadQueueTest, TimeLeftOrdersBySecondsThenByStatusInTheSameDirection) {
  const std::string columns = "filename, status, total_size, current_size, current_rate";
  Insert(columns, "'slow', 2, 100000, 0, 511");
  Insert(columns, "'hour', 2, 3600000, 0, 1000");
  Insert(columns, "'paused', 3, 3600000, 0, 1000");
  Insert(columns, "'minute', 2, 120000, 60000, 1000");
  Insert(columns, "'waiting', 1, 3600000, 0, 1000");
  Insert(columns, "'sizeless', 2, 0, 0, 1000");
  ListOption option;
  option.common.sort_by = "TimeLeft";
  Rows ascending = Names(option);
  ASSERT_EQ(ascending.size(), 6U);
  std::sort(ascending.begin() + 3, ascending.begin() + 5);  // both unknown and downloading
  EXPECT_EQ(ascending, (Rows{"minute", "hour", "waiting", "sizeless", "slow", "paused"}));
  option.common.ascending = false;
  Rows descending = Names(option);
  ASSERT_EQ(descending.size(), 6U);
  std::sort(descending.begin() + 1, descending.begin() + 3);
  EXPECT_EQ(descending, (Rows{"paused", "sizeless", "slow", "waiting", "hour", "minute"}));
}

TEST_F(DownloadQueueTest, OtherOrdersAreColumnsWithoutATieBreak) {
  Insert("filename, pid", "'b', 1");
  Insert("filename, pid", "'a', 2");
  ListOption option;
  option.common.sort_by = "filename";
  EXPECT_EQ(Names(option), (Rows{"a", "b"}));
  option.common.sort_by = "PID";
  option.common.ascending = false;
  EXPECT_EQ(Names(option), (Rows{"a", "b"}));
}

TEST_F(DownloadQueueTest, AnOrderThatIsNoColumnGivesAnEmptyListAndIsLogged) {
  Insert("filename", "'a'");
  ListOption option;
  option.common.sort_by = "no_such_column";
  EXPECT_TRUE(QueueOf("").List(option).empty());
  const Lines lines = TakeLog();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].source, "dbquery/query");
  EXPECT_EQ(
      lines[0].text.find("Failed to execute statement: [42703] column \"no_such_column\" does "
                         "not exist: SELECT \"task_id\", "),
      0U)
      << lines[0].text;
  EXPECT_EQ(lines[1], kListFailed);
  for (const char* text : {"", "1; DELETE FROM download_queue", "filename DESC", "pg_sleep(5)"}) {
    option.common.sort_by = text;
    EXPECT_TRUE(QueueOf("").List(option).empty()) << text;
    EXPECT_EQ(TakeLog().back(), kListFailed) << text;
  }
  option.common.sort_by = boost::none;
  EXPECT_EQ(Names(option), Rows{"a"}) << "the session goes on";
}

TEST_F(DownloadQueueTest, DeleteEarlierThanReachesTheUsersTasksUpToTheId) {
  Insert("username", "'alice'");
  const int bobs = Insert("username", "'bob'");
  const int last = Insert("username", "'ALICE'");
  const int later = Insert("username", "'alice'");
  EXPECT_TRUE(QueueOf("Alice").DeleteEarlierThan(last));
  EXPECT_EQ(KeysOf(QueueOf("").List({})), (Ids{bobs, later}));
  DownloadQueue queue(LostSession(), "alice");
  EXPECT_FALSE(queue.DeleteEarlierThan(last));
  EXPECT_EQ(TakeLog(), Lines{Lost("DELETE FROM \"download_queue\" WHERE task_id <= $1 AND "
                                  "lower(username) = $2")});
}

TEST_F(DownloadQueueTest, DeleteEarlierThanReachesAllTasksWithoutAUserAndThroughTheOperator) {
  const int alices = Insert("username", "'alice'");
  EXPECT_TRUE(QueueOf("").DeleteEarlierThan(alices));
  EXPECT_EQ(QueueOf("").Count({}), 0);
  const int another = Insert("username", "'alice'");
  DownloadQueue queue = QueueOf("bob");
  DBOperator<record::Task>& table = queue;
  EXPECT_TRUE(table.DeleteEarlierThan(another));
  EXPECT_EQ(QueueOf("").Count({}), 0);
}

TEST_F(DownloadQueueTest, DeletesAHundredThousandIdsInOneStatement) {
  raw_.Run("INSERT INTO download_queue (pid) SELECT 0 FROM generate_series(1, 1000)");
  std::vector<int> ids(100000);
  for (std::size_t i = 0; i < ids.size(); ++i) {
    ids[i] = static_cast<int>(i) - 50000;
  }
  EXPECT_TRUE(QueueOf("").Delete(ids));
  EXPECT_EQ(raw_.Value("SELECT count(*) FROM download_queue"), "0");
}

TEST_F(DownloadQueueTest, TheAccessorKeepsItsOwnCopyOfTheUserName) {
  std::string user = "alice";
  const DownloadQueue queue(Session(), user);
  user = "bob";
  EXPECT_EQ(Show(queue.GetUserCondition()), "lower(username) = $1 [$1=alice]");
}

}  // namespace
}  // namespace dorvdl::db
