// A class derived from one of the library's records: its hooks must be called, so its rows and
// values go through SOCI. And records used with SOCI directly.
#include <dorvdl/control/controller.h>
#include <dorvdl/control/task_control.h>
#include <dorvdl/db/download_queue.h>
#include <dorvdl/db/operator.h>
#include <dorvdl/record/task.h>
#include <gtest/gtest.h>

#include "support/database.h"
#include "support/temporary_folder.h"

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

// A task like any other to who does not know it, but which columns it writes is its own affair.
class OwnColumnsTask : public Task {
 public:
  std::vector<std::string> GetInsertFields() const override {
    std::vector<std::string> fields = {"referer", "username"};
    if (proto().has_file_oid()) {
      fields.emplace_back("file_oid");
    }
    return fields;
  }
  void soci_ToBase(soci::values& values, soci::indicator& indicator) const override {
    Task::soci_ToBase(values, indicator);
    values.set("referer", "of " + proto().url());
  }
  void BindUpdateField(dorvdbquery::UpdateQuery& query) const override {
    query.SetFactory<std::string>("referer", "now of " + proto().url());
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

TEST_F(DerivedRecordTest, ATasksOwnColumnsAndValuesAreWrittenWhateverItIsCalled) {
  OwnColumnsTask own;
  own.mutable_proto().set_username("alice");
  own.mutable_proto().set_url("u");
  Task& task = own;
  const test_support::TemporaryFolder folder;
  const std::string source = folder.Write("a.torrent", "data");
  const auto stored = [this] {
    return raw_.Run("SELECT username, referer, url FROM download_queue ORDER BY task_id");
  };
  const std::vector<std::string> one = {"alice|of u|"};
  const auto expect_stored = [&] {
    EXPECT_EQ(stored(), one);
    EXPECT_EQ(raw_.Value("DELETE FROM download_queue RETURNING task_id"),
              std::to_string(task.primary_key()));
    EXPECT_EQ(task.proto().username(), "alice");
    task.mutable_proto().clear_task_id();
  };

  Queue<Task> queue(controller_.db_session());
  ASSERT_TRUE(queue.Create(task));
  expect_stored();
  DownloadQueue downloads(controller_.db_session(), "alice");
  ASSERT_TRUE(downloads.Create(task, ""));
  expect_stored();
  ASSERT_TRUE(control::TaskControl(controller_).Create(task, source));
  EXPECT_EQ(raw_.Value("SELECT file_oid FROM download_queue"),
            std::to_string(task.proto().file_oid()));
  EXPECT_GT(task.proto().file_oid(), 0);

  ASSERT_TRUE(downloads.Update(task));
  EXPECT_EQ(stored(), std::vector<std::string>{"alice|now of u|"});
}

// Its values would not fit the columns.
TEST_F(DerivedRecordTest, ATaskWithAColumnAndNoValueIsRefusedAndLeftAsItWas) {
  class WithoutValue : public Task {
    std::vector<std::string> GetInsertFields() const override { return {"url", "username"}; }
  } own;
  own.mutable_proto().set_url("u");
  own.mutable_proto().set_file_oid(3);
  Task& task = own;
  const std::string before = task.proto().ShortDebugString();
  const test_support::TemporaryFolder folder;
  DownloadQueue downloads(controller_.db_session(), "");
  EXPECT_THROW(downloads.Create(task, folder.Write("a.torrent", "data")), soci::soci_error);
  EXPECT_EQ(task.proto().ShortDebugString(), before);
  EXPECT_EQ(raw_.Value("SELECT count(*) FROM download_queue"), "0");
  EXPECT_EQ(raw_.Value("SELECT count(*) FROM pg_largeobject_metadata"), "0");
}

// Only a key that lasts is the task's.
TEST_F(DerivedRecordTest, ATaskIsToldItsKeyOnceItIsCreated) {
  class Told : public Task {
   public:
    std::vector<int> keys;
    void set_primary_key(int key) override {
      Task::set_primary_key(key);
      keys.push_back(key);
    }
  } told;
  Task& task = told;
  DownloadQueue downloads(controller_.db_session(), "");
  ASSERT_TRUE(downloads.Create(task, ""));
  EXPECT_EQ(told.keys, std::vector<int>{task.primary_key()});

  raw_.Run(
      "CREATE FUNCTION refuse() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN RAISE; END';"
      "CREATE CONSTRAINT TRIGGER at_commit AFTER INSERT ON download_queue "
      "DEFERRABLE INITIALLY DEFERRED FOR EACH ROW EXECUTE FUNCTION refuse()");
  EXPECT_FALSE(downloads.Create(task, ""));
  raw_.Run("DROP TRIGGER at_commit ON download_queue; DROP FUNCTION refuse()");
  EXPECT_EQ(told.keys.size(), 1U);
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
