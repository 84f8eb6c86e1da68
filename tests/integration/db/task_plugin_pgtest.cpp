// The states of plug-ins.
#include <dorvdl/db/task_plugin.h>
#include <gtest/gtest.h>

#include "integration/db/table_test.h"

namespace dorvdl::db {
namespace {

using test_support::kError;
using test_support::TakeLog;

class TaskPluginTest : public TableTest {
 protected:
  TaskPlugin Plugins() { return TaskPlugin(Session()); }
};

TEST_F(TaskPluginTest, ActiveOnesHaveAProcess) {
  raw_.Run("INSERT INTO task_plugin (task_id, pid) VALUES (1, 0), (2, 1), (3, -1), (4, 99)");
  EXPECT_EQ(KeysOf(Plugins().ListActivePlugin()), (Ids{2, 4}));
}

TEST_F(TaskPluginTest, AProcessThatIsNullIsNone) {
  raw_.Run("INSERT INTO task_plugin (task_id, pid) VALUES (1, NULL)");
  EXPECT_EQ(KeysOf(Plugins().ListActivePlugin()), Ids{});
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(TaskPluginTest, TheListIsNeitherOrderedNorPaged) {
  TaskPlugin plugins(LostSession());
  EXPECT_EQ(KeysOf(plugins.ListActivePlugin()), Ids{});
  EXPECT_EQ(TakeLog(), (Lines{Lost("SELECT * FROM \"task_plugin\" WHERE pid > $1"),
                              {kError, "db/operator", "Failed to execute list operation"}}));
}

TEST_F(TaskPluginTest, ATaskHasOneRowAtMost) {
  record::Plugin plugin;
  plugin.set_primary_key(8);
  EXPECT_TRUE(Plugins().Create(plugin));
  EXPECT_FALSE(Plugins().Create(plugin));
  EXPECT_EQ(raw_.Run("SELECT task_id FROM task_plugin"), Rows{"8"});
}

}  // namespace
}  // namespace dorvdl::db
