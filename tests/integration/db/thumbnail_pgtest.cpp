// Preview pictures.
#include <dorvdl/db/thumbnail.h>
#include <gtest/gtest.h>
#include <soci/soci.h>

#include <algorithm>

#include "integration/db/table_test.h"
#include "support/sql_matchers.h"

namespace dorvdl::db {
namespace {

using control::option::thumbnail::ListOption;
using test_support::kError;
using test_support::Show;
using test_support::TakeLog;

class ThumbnailTest : public TableTest {
 protected:
  // A row for each (task_id, file_index), with ids that count from 1.
  void Insert(const std::string& rows) {
    raw_.Run("INSERT INTO thumbnail (task_id, file_index) VALUES " + rows);
  }

  Thumbnail Thumbnails() { return Thumbnail(Session()); }
};

TEST_F(ThumbnailTest, TheConditionIsTheTaskAndThenTheFile) {
  ListOption option;
  EXPECT_TRUE(Thumbnails().GetCondition(option).IsNull());
  option.file_index = 0;
  EXPECT_EQ(Show(Thumbnails().GetCondition(option)), "file_index = $1 [$1=0]");
  option.task_id = 5;
  option.common.limit = 1;
  EXPECT_EQ(Show(Thumbnails().GetCondition(option)),
            "task_id = $1 AND file_index = $2 [$1=5] [$2=0]");
  option.file_index = boost::none;
  EXPECT_EQ(Show(Thumbnails().GetCondition(option)), "task_id = $1 [$1=5]");
}

TEST_F(ThumbnailTest, ThumbnailsAreListedAndCountedByTaskAndFile) {
  Insert("(1, 0), (1, 1), (2, 1), (1, 1)");
  ListOption option;
  EXPECT_EQ(KeysOf(Thumbnails().List(option)), (Ids{1, 2, 3, 4}));
  option.task_id = 1;
  EXPECT_EQ(KeysOf(Thumbnails().List(option)), (Ids{1, 2, 4}));
  option.file_index = 1;
  option.common.sort_by = "thumbnail_id";
  option.common.ascending = false;
  EXPECT_EQ(KeysOf(Thumbnails().List(option)), (Ids{4, 2}));
  option.common.limit = 1;
  option.common.offset = 1;
  EXPECT_EQ(KeysOf(Thumbnails().List(option)), Ids{2});
  EXPECT_EQ(Thumbnails().Count(option), 2) << "a count is not paged";
}

TEST_F(ThumbnailTest, ATasksFileIndexesAreGivenOnceEach) {
  Insert("(1, 4), (1, -2147483648), (2, 9), (1, 4), (1, 4)");
  Ids indexes = Thumbnails().ListFileIndexByTaskID(1);
  std::sort(indexes.begin(), indexes.end());  // they come in the database's order
  EXPECT_EQ(indexes, (Ids{-2147483647 - 1, 4}));
  EXPECT_EQ(Thumbnails().ListFileIndexByTaskID(2), Ids{9});
}

TEST_F(ThumbnailTest, ATaskWithoutThumbnailsHasNoFileIndexes) {
  Insert("(1, 4)");
  EXPECT_EQ(Thumbnails().ListFileIndexByTaskID(2), Ids{});
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(ThumbnailTest, AFailedListOfFileIndexesIsEmptyAndLogged) {
  Thumbnail thumbnails(LostSession());
  EXPECT_EQ(thumbnails.ListFileIndexByTaskID(1), Ids{});
  EXPECT_EQ(TakeLog(),
            (Lines{Lost("SELECT DISTINCT(file_index) FROM \"thumbnail\" WHERE task_id = $1"),
                   {kError, "db/thumbnail", "Failed to execute list operation"}}));
}

TEST_F(ThumbnailTest, AFileIndexThatIsNullIsThrown) {
  Insert("(1, NULL)");
  EXPECT_THROW(Thumbnails().ListFileIndexByTaskID(1), soci::soci_error);
  EXPECT_EQ(TakeLog(), Lines{});
  EXPECT_EQ(Thumbnails().Count({}), 1) << "the session goes on";
}

}  // namespace
}  // namespace dorvdl::db
