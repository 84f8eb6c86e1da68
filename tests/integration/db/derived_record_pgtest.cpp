// A class derived from one of the library's records: its hooks must be called, so its rows and
// values go through SOCI. And records used with SOCI directly.
#include <dorvdl/control/controller.h>
#include <dorvdl/db/operator.h>
#include <dorvdl/record/task.h>
#include <gtest/gtest.h>

#include "support/database.h"
#include "support/syslog_capture.h"

namespace dorvdl::db {
namespace {

using dorvdbquery::Condition;
using record::Task;

// Reads and writes more than a task does.
class MarkedTask : public Task {
 public:
  int reads = 0;

  void soci_FromBase(const soci::values& values) override {
    Task::soci_FromBase(values);
    ++reads;
    mutable_proto().set_url("read: " + proto().url());
  }
  void soci_ToBase(soci::values& values, soci::indicator& indicator) const override {
    Task::soci_ToBase(values, indicator);
    values.set("url", "written: " + proto().url());
  }
};

template <typename Record>
class Queue : public DBOperator<Record> {
 public:
  using DBOperator<Record>::DBOperator;
  const char* GetTableName() override { return "download_queue"; }
  const char* GetPrimaryKeyName() override { return "task_id"; }
};

class DerivedRecordTest : public test_support::DatabaseTest {
 protected:
  soci::session& Soci() { return *controller_.db_session().session().handle(); }

  control::Controller controller_;
};

TEST_F(DerivedRecordTest, ItsOwnHooksReadAndWriteItsRows) {
  Queue<MarkedTask> queue(controller_.db_session());
  MarkedTask task;
  task.mutable_proto().set_url("u");
  ASSERT_TRUE(queue.Create(task));
  EXPECT_EQ(raw_.Value("SELECT url FROM download_queue"), "written: u");
  EXPECT_EQ(task.proto().url(), "u");
  const MarkedTask read = queue.Get(task.primary_key(), Condition::Null());
  EXPECT_EQ(read.reads, 1);
  EXPECT_EQ(read.proto().url(), "read: written: u");
  const std::vector<MarkedTask> listed = queue.List({}, Condition::Null());
  ASSERT_EQ(listed.size(), 1U);
  EXPECT_EQ(listed[0].proto().url(), "read: written: u");
}

TEST_F(DerivedRecordTest, SociReadsAndWritesATaskByItself) {
  Task written;
  written.mutable_proto().set_username("alice");
  written.mutable_proto().set_total_size(1LL << 40);
  const Task& constant = written;
  Soci() << "INSERT INTO download_queue (username, total_size) VALUES (:username, :total_size)",
      soci::use(constant);
  EXPECT_EQ(raw_.Run("SELECT username, total_size FROM download_queue"),
            std::vector<std::string>{"alice|1099511627776"});
  Task read;
  Soci() << "SELECT * FROM download_queue", soci::into(read);
  EXPECT_EQ(read.primary_key(), 1);
  EXPECT_EQ(read.proto().username(), "alice");
}

// SOCI reads a record that it may change back after the statement. The column's text is quoted
// whenever it is read, so a task used like that is not what it was.
TEST_F(DerivedRecordTest, SociReadsATaskBackAfterAUseThatMayChangeIt) {
  raw_.Run("INSERT INTO download_queue (extra_data) VALUES ('{\"a\":1}')");
  Task task;
  Soci() << "SELECT * FROM download_queue", soci::into(task);
  EXPECT_EQ(task.proto().extra_data(), R"("{\"a\":1}")");
  const Task& constant = task;
  const std::string update = "UPDATE download_queue SET extra_data = :extra_data";
  Soci() << update, soci::use(constant);
  EXPECT_EQ(task.proto().extra_data(), R"("{\"a\":1}")");
  EXPECT_EQ(raw_.Value("SELECT extra_data FROM download_queue"), R"("{\"a\":1}")");
  Soci() << update, soci::use(task);
  EXPECT_EQ(task.proto().extra_data(), R"("\"{\\\"a\\\":1}\"")");
  EXPECT_EQ(raw_.Value("SELECT extra_data FROM download_queue"), R"("{\"a\":1}")");
}

TEST_F(DerivedRecordTest, SociRefusesToReadATaskBackThatLacksAColumn) {
  Task task;
  task.mutable_proto().set_username("alice");
  EXPECT_THROW(
      (Soci() << "INSERT INTO download_queue (username) VALUES (:username)", soci::use(task)),
      soci::soci_error);
  EXPECT_EQ(raw_.Value("SELECT username FROM download_queue"), "alice") << "the row is there";
}

}  // namespace
}  // namespace dorvdl::db
