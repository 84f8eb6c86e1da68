// Tasks that are created, and the source files that are stored with them.
#include <gtest/gtest.h>

#include <string>

#include "integration/db/download_queue_test.h"
#include "support/temporary_folder.h"

namespace dorvdl::db {
namespace {

using record::Task;

class DownloadQueueFileTest : public DownloadQueueTest {
 protected:
  std::string StoredObjects() { return raw_.Value("SELECT count(*) FROM pg_largeobject_metadata"); }

  test_support::TemporaryFolder folder_;
};

TEST_F(DownloadQueueFileTest, CreateWithoutAFileInsertsThePresentFields) {
  Task task;
  task.mutable_proto().set_username("alice");
  task.mutable_proto().set_total_size(1LL << 40);
  EXPECT_TRUE(QueueOf("bob").Create(task, "")) << "creating is not confined to the user";
  EXPECT_TRUE(task.IsValid());
  EXPECT_EQ(
      raw_.Run("SELECT task_id, username, total_size, file_oid, extra_data FROM download_queue"),
      (Rows{std::to_string(task.primary_key()) + "|alice|1099511627776|0|NULL"}));
}

TEST_F(DownloadQueueFileTest, CreateKeepsAKeyThatIsSet) {
  Task task;
  task.set_primary_key(77);
  EXPECT_TRUE(QueueOf("").Create(task, ""));
  EXPECT_EQ(task.primary_key(), 77);
  EXPECT_EQ(raw_.Value("SELECT task_id FROM download_queue"), "77");
}

TEST_F(DownloadQueueFileTest, CreateStoresTheSourceFileWithTheTask) {
  const std::string content = std::string("d8:announce\0\xff", 13) + std::string(700000, 'x');
  Task task;
  ASSERT_TRUE(QueueOf("").Create(task, folder_.Write("a.torrent", content)));
  EXPECT_NE(task.proto().file_oid(), 0);
  EXPECT_EQ(raw_.Value("SELECT file_oid FROM download_queue"),
            std::to_string(task.proto().file_oid()));
  EXPECT_EQ(StoredObjects(), "1");
  ASSERT_TRUE(QueueOf("").LoExport(task.primary_key(), folder_.Path("out")));
  EXPECT_EQ(folder_.Read("out"), content);
}

TEST_F(DownloadQueueFileTest, AnEmptySourceFileIsAFile) {
  Task task;
  ASSERT_TRUE(QueueOf("").Create(task, folder_.Write("empty.nzb", "")));
  ASSERT_TRUE(QueueOf("").LoExport(task.primary_key(), folder_.Path("out")));
  EXPECT_EQ(folder_.Read("out"), "");
}

TEST_F(DownloadQueueFileTest, CreateFromSomethingThatIsNoReadableFileInsertsNothing) {
  folder_.MakeFifo("fifo");
  for (const std::string& path :
       {folder_.Path("missing"), folder_.Path(""), folder_.Path("fifo"), std::string("/dev/zero"),
        folder_.Path(std::string("missing\0x", 9))}) {
    Task task;
    task.mutable_proto().set_filename("kept");
    EXPECT_FALSE(QueueOf("").Create(task, path)) << path;
    EXPECT_FALSE(task.proto().has_task_id());
    EXPECT_FALSE(task.proto().has_file_oid());
  }
  EXPECT_EQ(raw_.Value("SELECT count(*) FROM download_queue"), "0");
  EXPECT_EQ(StoredObjects(), "0");
}

TEST_F(DownloadQueueFileTest, AFailedCreateTakesItsFileBackAndLeavesTheRecordAsItWas) {
  Insert("task_id", "5");
  Task task;
  task.set_primary_key(5);
  const std::string before = task.proto().SerializeAsString();
  EXPECT_FALSE(QueueOf("").Create(task, folder_.Write("a.torrent", "content")));
  EXPECT_EQ(task.proto().SerializeAsString(), before);
  EXPECT_EQ(StoredObjects(), "0");
  EXPECT_EQ(QueueOf("").Count({}), 1) << "the session goes on";
}

TEST_F(DownloadQueueFileTest, ImportGivesATaskItsFileAndKeepsTheOldObject) {
  const int id = Insert("username", "'alice'");
  ASSERT_TRUE(QueueOf("alice").LoImport(id, folder_.Write("1", "first")));
  ASSERT_TRUE(QueueOf("alice").LoImport(id, folder_.Write("2", "second")));
  EXPECT_EQ(StoredObjects(), "2");
  ASSERT_TRUE(QueueOf("alice").LoExport(id, folder_.Path("out")));
  EXPECT_EQ(folder_.Read("out"), "second");
}

TEST_F(DownloadQueueFileTest, DeleteKeepsTheStoredFile) {
  Task task;
  ASSERT_TRUE(QueueOf("").Create(task, folder_.Write("f", "x")));
  ASSERT_TRUE(QueueOf("").Delete({task.primary_key()}));
  EXPECT_EQ(StoredObjects(), "1");
}

TEST_F(DownloadQueueFileTest, CreateTakesAFileIdThatTheRecordCarries) {
  Task task;
  task.mutable_proto().set_file_oid(77);
  EXPECT_TRUE(QueueOf("alice").Create(task, ""));
  EXPECT_EQ(raw_.Value("SELECT file_oid FROM download_queue"), "77");
}

TEST_F(DownloadQueueFileTest, ImportForATaskThatIsNotTheUsersStoresNothing) {
  const int id = Insert("username", "'bob'");
  EXPECT_FALSE(QueueOf("alice").LoImport(id, folder_.Write("f", "x")));
  EXPECT_FALSE(QueueOf("").LoImport(id + 1, folder_.Write("f", "x")));
  EXPECT_FALSE(QueueOf("").LoImport(id, folder_.Path("missing")));
  EXPECT_EQ(StoredObjects(), "0");
  EXPECT_EQ(raw_.Value("SELECT file_oid FROM download_queue"), "0");
}

TEST_F(DownloadQueueFileTest, ExportNeedsATaskOfTheUserWithAFile) {
  Task task;
  task.mutable_proto().set_username("bob");
  ASSERT_TRUE(QueueOf("").Create(task, folder_.Write("f", "x")));
  const int without_file = Insert("username", "'alice'");
  EXPECT_FALSE(QueueOf("alice").LoExport(task.primary_key(), folder_.Path("out")));
  EXPECT_FALSE(QueueOf("alice").LoExport(without_file, folder_.Path("out")));
  EXPECT_FALSE(QueueOf("").LoExport(9999, folder_.Path("out")));
  EXPECT_FALSE(folder_.Exists("out"));
  EXPECT_TRUE(QueueOf("BOB").LoExport(task.primary_key(), folder_.Path("out")));
}

TEST_F(DownloadQueueFileTest, ObjectIdsAboveTheSignedRangeSurvive) {
  raw_.Run("SELECT lo_from_bytea(4000000000, 'high')");
  const int id = Insert("file_oid", std::to_string(static_cast<int>(4000000000U)));
  EXPECT_LT(QueueOf("").Get(id).proto().file_oid(), 0);
  ASSERT_TRUE(QueueOf("").LoExport(id, folder_.Path("out")));
  EXPECT_EQ(folder_.Read("out"), "high");
}

}  // namespace
}  // namespace dorvdl::db
