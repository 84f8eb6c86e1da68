// What every record does with its columns, without a server.
#include <dorvdl/dbquery/update_query.h>
#include <dorvdl/record/task.h>
#include <gtest/gtest.h>

#include <type_traits>

#include "support/sql_matchers.h"

namespace dorvdl::record {
namespace {

using dorvdbquery::Session;
using dorvdbquery::UpdateQuery;
using test_support::Show;

std::string ShownUpdate(const dorvdbquery::Updatable& record) {
  const Session session;
  UpdateQuery query(session, "t");
  record.BindUpdateField(query);
  return Show(query);
}

Task SomeTask() {
  Task task;
  task.set_primary_key(17);
  task.mutable_proto().set_file_oid(-1);
  task.mutable_proto().set_filename("");
  task.mutable_proto().set_total_size(1LL << 40);
  return task;
}

TEST(MappingTest, ADefaultRecordCarriesNothing) {
  const Task task;
  EXPECT_FALSE(task.IsValid());
  EXPECT_EQ(task.primary_key(), 0);
  EXPECT_TRUE(task.GetInsertFields().empty());
  EXPECT_EQ(ShownUpdate(task), "");
  soci::values values;
  soci::indicator indicator = soci::i_null;
  task.soci_ToBase(values, indicator);
  EXPECT_EQ(indicator, soci::i_ok);
  EXPECT_THROW(values.get<int>("task_id"), soci::soci_error);
}

TEST(MappingTest, AKeyOfZeroOrLessIsPresentButNotValid) {
  Task task;
  for (const int key : {0, -1}) {
    task.set_primary_key(key);
    EXPECT_EQ(task.primary_key(), key);
    EXPECT_EQ(task.GetInsertFields(), std::vector<std::string>{"task_id"});
    EXPECT_FALSE(task.IsValid());
  }
  task.set_primary_key(1);
  EXPECT_TRUE(task.IsValid());
}

TEST(MappingTest, TheKeyIsNeverUpdated) {
  Task task;
  task.set_primary_key(17);
  EXPECT_EQ(ShownUpdate(task), "");
}

TEST(MappingTest, InsertAndUpdateNamePresentColumnsInTableOrder) {
  const Task task = SomeTask();
  EXPECT_EQ(task.GetInsertFields(),
            (std::vector<std::string>{"task_id", "filename", "total_size", "file_oid"}));
  EXPECT_EQ(ShownUpdate(task),
            "UPDATE \"t\" SET \"filename\" = $1, \"total_size\" = $2, \"file_oid\" = $3 "
            "[$1=] [$2=1099511627776] [$3=-1]");
}

TEST(MappingTest, BothBasesReachTheRecordsOwnOperations) {
  const Task task = SomeTask();
  const dorvdbquery::Insertable& insertable = task;
  const dorvdbquery::Updatable& updatable = task;
  const RecordBase& record = task;
  EXPECT_EQ(insertable.GetInsertFields(), task.GetInsertFields());
  EXPECT_EQ(ShownUpdate(updatable), ShownUpdate(task));
  EXPECT_EQ(record.primary_key(), 17);
}

TEST(MappingTest, ValuesAreSetByColumnNameWithTheirTypes) {
  // SOCI frees the content of values through a statement only, so this must not be a leak: without
  // a server there is no statement.
  static soci::values& values = *new soci::values;
  soci::indicator indicator = soci::i_null;
  SomeTask().soci_ToBase(values, indicator);
  EXPECT_EQ(indicator, soci::i_ok);
  EXPECT_EQ(values.get<int>("task_id"), 17);
  EXPECT_EQ(values.get<std::string>("filename"), "");
  EXPECT_EQ(values.get<long long>("total_size"), 1LL << 40);
  EXPECT_EQ(values.get<int>("file_oid"), -1);
  EXPECT_THROW(values.get<int>("pid"), soci::soci_error);
}

TEST(MappingTest, TheConstructorFromAMessageCopiesPresence) {
  proto::Task message;
  message.set_pid(0);
  const Task task(message);
  message.set_pid(5);
  EXPECT_EQ(task.GetInsertFields(), std::vector<std::string>{"pid"});
  EXPECT_EQ(task.proto().pid(), 0);
}

TEST(MappingTest, CopiesAreIndependent) {
  Task task = SomeTask();
  Task copy = task;
  copy.set_primary_key(18);
  task = copy;
  copy.set_primary_key(19);
  EXPECT_EQ(task.primary_key(), 18);
}

// A class derived from a record may override the hooks, so its rows must come through them.
struct DerivedTask : Task {};
static_assert(kIsMessageRecord<Task>);
static_assert(!kIsMessageRecord<DerivedTask>);
static_assert(!kIsMessageRecord<RecordBase>);

static_assert(std::is_same_v<soci::type_conversion<Task>::base_type, soci::values>);
static_assert(std::is_base_of_v<dorvdbquery::Updatable, RecordBase>);
static_assert(std::is_base_of_v<dorvdbquery::Insertable, RecordBase>);

}  // namespace
}  // namespace dorvdl::record
