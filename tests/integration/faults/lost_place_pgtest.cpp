// Errors at each receive, send and poll of an operation: whatever libpq makes of them, nobody gets
// an answer that was meant for another statement, nothing is half done, and a session that has lost
// its place takes part in nothing more.
#include <dorvdl/control/task_control.h>
#include <dorvdl/db/download_queue.h>
#include <dorvdl/dbquery/transaction.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "support/connection.h"
#include "support/database.h"
#include "support/network_calls.h"
#include "support/syslog_capture.h"
#include "support/temporary_folder.h"

namespace dorvdl::db {
namespace {

using control::Controller;
using control::TaskControl;
using record::Task;
using test_support::NetworkCalls;
using test_support::NetworkFault;
using test_support::TakeLog;

constexpr int kTasks = 3;

std::string UrlOf(int id) { return "https://example.org/" + std::to_string(id); }

bool Rename(DownloadQueue& queue, int id, const std::string& filename) {
  Task change;
  change.set_primary_key(id);
  change.mutable_proto().set_filename(filename);
  return queue.Update(change);
}

// What is tried: an operation, whether its result is a right one (success or failure alike), and
// what the table then holds when it reported success, as one line of text.
struct Operation {
  const char* name;
  std::function<bool(DownloadQueue& queue, const std::string& folder)> run;  // true: succeeded
  const char* before;
  const char* after;
};

Task NewTask() {
  Task task;
  task.mutable_proto().set_url("new");
  return task;
}

// How many tasks there are, what the second is called, how many have a file, how many files exist.
constexpr char kState[] =
    "SELECT (SELECT count(*) FROM download_queue) || ' ' || "
    "(SELECT filename FROM download_queue WHERE task_id = 2) || ' ' || "
    "(SELECT count(*) FROM download_queue WHERE file_oid <> 0) || ' ' || "
    "(SELECT count(*) FROM pg_largeobject_metadata)";

const std::vector<Operation> kOperations = {
    {"Get",
     [](DownloadQueue& queue, const std::string&) {
       const Task task = queue.Get(2);
       EXPECT_TRUE(!task.IsValid() || task.proto().url() == UrlOf(2)) << task.proto().url();
       return task.IsValid();
     },
     "3 b 1 1", "3 b 1 1"},
    {"List",
     [](DownloadQueue& queue, const std::string&) {
       const std::vector<Task> tasks = queue.List({});
       EXPECT_TRUE(tasks.empty() || tasks.size() == kTasks);
       for (const Task& task : tasks) {
         EXPECT_EQ(task.proto().url(), UrlOf(task.primary_key()));
       }
       return !tasks.empty();
     },
     "3 b 1 1", "3 b 1 1"},
    {"Update", [](DownloadQueue& queue, const std::string&) { return Rename(queue, 2, "B"); },
     "3 b 1 1", "3 B 1 1"},
    {"Create",
     [](DownloadQueue& queue, const std::string&) {
       Task task = NewTask();
       return queue.Create(task, "");
     },
     "3 b 1 1", "4 b 1 1"},
    {"CreateWithAFile",
     [](DownloadQueue& queue, const std::string& folder) {
       Task task = NewTask();
       return queue.Create(task, folder + "/source");
     },
     "3 b 1 1", "4 b 2 2"},
    {"Import",
     [](DownloadQueue& queue, const std::string& folder) {
       return queue.LoImport(2, folder + "/source");
     },
     "3 b 1 1", "3 b 2 2"},
    {"Export",
     [](DownloadQueue& queue, const std::string& folder) {
       const std::string target = folder + "/target";
       unlink(target.c_str());
       const bool exported = queue.LoExport(1, target);
       EXPECT_EQ(exported, access(target.c_str(), F_OK) == 0);
       return exported;
     },
     "3 b 1 1", "3 b 1 1"},
    {"Commit",
     [](DownloadQueue& queue, const std::string&) {
       dorvdbquery::DefaultTransaction transaction(queue.GetSession());
       Task task = NewTask();
       const bool created = queue.Create(task, "");
       const bool renamed = Rename(queue, 2, "B");
       return created && renamed && transaction.Commit();
     },
     "3 b 1 1", "4 B 1 1"},
};

const std::vector<NetworkFault> kFaults = {
    {"recv", ENOMEM}, {"recv", EIO},   {"recv", ECONNRESET}, {"recv", EINTR},
    {"send", ENOMEM}, {"send", EPIPE}, {"poll", ENOMEM},     {"poll", EINTR},
};

struct Case {
  Operation operation;
  NetworkFault fault;
};

std::vector<Case> Cases() {
  std::vector<Case> cases;
  for (const Operation& operation : kOperations) {
    for (const NetworkFault& fault : kFaults) {
      cases.push_back({operation, fault});
    }
  }
  return cases;
}

class FaultTest : public test_support::DatabaseTest {
 protected:
  FaultTest() { folder_.Write("source", std::string(300'000, 'x')); }
  ~FaultTest() override { alarm(0); }

  void Reset() {
    raw_.Run(
        "TRUNCATE download_queue RESTART IDENTITY;"
        "SELECT lo_unlink(oid) FROM pg_largeobject_metadata;"
        "INSERT INTO download_queue (url, filename, file_oid) VALUES "
        "('https://example.org/1', 'a', lo_from_bytea(0, 'stored')),"
        "('https://example.org/2', 'b', 0), ('https://example.org/3', 'c', 0)");
  }

  test_support::TemporaryFolder folder_;
};

class LostPlaceTest : public FaultTest, public testing::WithParamInterface<Case> {
 protected:
  // Asks the session that the fault has hit for other rows: it gives the right ones or none.
  static void ExpectNoOtherAnswer(DownloadQueue& queue) {
    for (const int id : {3, 1, 2, 3}) {
      const Task task = queue.Get(id);
      EXPECT_TRUE(!task.IsValid() || task.proto().url() == UrlOf(id))
          << "task " << id << " reads as " << task.proto().url();
    }
    const int count = queue.Count({});
    EXPECT_TRUE(count == -1 || count == kTasks || count == kTasks + 1) << count;
  }

  // Runs the operation with its nth call failing; false when there are fewer calls.
  bool Try(const Case& test, int nth) {
    Reset();
    const auto session = std::make_shared<DBSession>();
    DownloadQueue queue(*session, "");
    alarm(20);  // none of these may wait for what does not come
    bool succeeded = false;
    bool failed = false;
    {
      const NetworkCalls calls(test.fault, nth);
      succeeded = test.operation.run(queue, folder_.Path("."));
      failed = calls.HasFailed();
    }
    const std::string state = raw_.Value(kState);
    if (succeeded) {
      EXPECT_EQ(state, test.operation.after);
    } else {
      // The answer to a statement or commit may be what was lost.
      EXPECT_TRUE(state == test.operation.before || state == test.operation.after) << state;
    }
    ExpectNoOtherAnswer(queue);
    Controller controller(session);
    EXPECT_EQ(TaskControl(controller).Get(2).proto().url(), UrlOf(2)) << "the next call recovers";
    EXPECT_TRUE(failed || succeeded);
    return failed;
  }
};

TEST_P(LostPlaceTest, NobodyGetsAnotherStatementsAnswer) {
  int nth = 1;
  while (Try(GetParam(), nth) && !HasFailure()) {
    ++nth;
  }
  EXPECT_FALSE(HasFailure()) << "at call " << nth;
  if (GetParam().fault.call != "poll") {
    EXPECT_GT(nth, 1) << "nothing was tried";
  }
}

std::string CaseName(const testing::TestParamInfo<Case>& info) {
  const auto& [operation, fault] = info.param;
  return std::string(operation.name) + "_" + fault.call + "_" + strerrorname_np(fault.error);
}

INSTANTIATE_TEST_SUITE_P(Faults, LostPlaceTest, testing::ValuesIn(Cases()), CaseName);

class BrokenSessionTest : public FaultTest {
 protected:
  // Loses the place of the session in the middle of a statement's answer.
  void Break() {
    Reset();
    const NetworkCalls calls({"recv", ENOMEM}, 1);
    EXPECT_EQ(queue_.Count({}), -1);
    EXPECT_TRUE(calls.HasFailed());
    TakeLog();
  }

  static test_support::LogLine Lost(const std::string& statement) {
    return {
        test_support::kError, "dbquery/query",
        "Failed to execute statement: [08006] the connection to the server is lost: " + statement};
  }
  using Lines = std::vector<test_support::LogLine>;

  DBSession session_;
  DownloadQueue queue_{session_, ""};
};

TEST_F(BrokenSessionTest, ItIsNotGoodAndSendsNothingMore) {
  Break();
  EXPECT_FALSE(session_.session().Good());
  test_support::MessageTrace trace(session_.session());
  EXPECT_FALSE(queue_.Delete({1}));
  EXPECT_EQ(TakeLog(), Lines{Lost("DELETE FROM \"download_queue\" WHERE \"task_id\" = ANY($1)")});
  {
    dorvdbquery::DefaultTransaction transaction(session_.session());
    EXPECT_EQ(TakeLog(), Lines{Lost("BEGIN")});
    EXPECT_FALSE(transaction.Commit());
  }
  EXPECT_FALSE(queue_.LoImport(1, folder_.Path("source")));
  EXPECT_FALSE(queue_.GetSession().ClientSideLOExport(1, folder_.Path("target")));
  EXPECT_EQ(trace.Messages(), "");
  EXPECT_EQ(raw_.Value(kState), "3 b 1 1");
}

TEST_F(BrokenSessionTest, TheServerLetsGoOfItsLocksWhoeverHoldsIt) {
  Reset();
  dorvdbquery::DefaultTransaction transaction(session_.session());
  ASSERT_TRUE(Rename(queue_, 2, "B"));
  {
    const NetworkCalls calls({"recv", ENOMEM}, 1);
    EXPECT_EQ(queue_.Count({}), -1);
  }
  raw_.Run("SET lock_timeout = '5s'; UPDATE download_queue SET filename = 'C' WHERE task_id = 2");
  EXPECT_EQ(raw_.Value(kState), "3 C 1 1");
  EXPECT_FALSE(transaction.Commit());
}

TEST_F(BrokenSessionTest, AFailureThatTheServerSentDoesNotBreakIt) {
  Reset();
  Task duplicate;
  duplicate.set_primary_key(1);
  EXPECT_FALSE(queue_.Create(duplicate, ""));
  EXPECT_FALSE(queue_.GetSession().ClientSideLOExport(77, folder_.Path("target")));
  EXPECT_TRUE(session_.session().Good());
  EXPECT_EQ(queue_.Count({}), kTasks);
}

TEST_F(BrokenSessionTest, GoodSurvivesASignal) {
  EXPECT_TRUE(session_.session().Good());
  const NetworkCalls calls({"poll", EINTR}, 1);
  EXPECT_TRUE(session_.session().Good());
  EXPECT_TRUE(calls.HasFailed());
}

}  // namespace
}  // namespace dorvdl::db
