// The free-form data of tasks that were read from the table.
#include <dorvdl/db/download_queue.h>
#include <dorvdl/db/session.h>
#include <gtest/gtest.h>
#include <json/value.h>

#include <string>
#include <vector>

#include "support/database.h"
#include "support/syslog_capture.h"

namespace dorvdl::record {
namespace {

using test_support::LogLine;
using test_support::TakeLog;

class ExtraDataTest : public test_support::DatabaseTest {
 protected:
  // The parsed data of a row whose column holds @p expression.
  Json::Value Read(const std::string& expression) {
    raw_.Run(
        "DELETE FROM download_queue; INSERT INTO download_queue (task_id, extra_data) VALUES (7, " +
        expression + ")");
    const Task task = db::DownloadQueue(session_, "").Get(7);
    EXPECT_TRUE(task.IsValid()) << expression;
    TakeLog();
    Json::Value value = task.extra_data();
    EXPECT_EQ(TakeLog(), std::vector<LogLine>{}) << expression;
    return value;
  }

  db::DBSession session_;
};

TEST_F(ExtraDataTest, AnObjectIsReadAsOne) {
  Json::Value expected;
  expected["a"] = 1;
  EXPECT_EQ(Read("'{\"a\":1}'"), expected);
}

TEST_F(ExtraDataTest, AnEmptyObjectIsReadAsOne) {
  EXPECT_EQ(Read("'{}'"), Json::Value(Json::objectValue));
}

TEST_F(ExtraDataTest, NullIsReadAsNull) { EXPECT_EQ(Read("NULL"), Json::Value()); }

}  // namespace
}  // namespace dorvdl::record
