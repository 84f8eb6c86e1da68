// Writing large objects to files.
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include "integration/dbquery/large_object_test.h"
#include "support/child.h"
#include "support/identity.h"
#include "support/server_proxy.h"

namespace dorvdbquery {
namespace {

using test_support::TakeLog;

class ExportTest : public LargeObjectTest {
 protected:
  static mode_t ModeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0);
    return status.st_mode;
  }
};

TEST_F(ExportTest, AnExistingFileIsReplacedAsAWhole) {
  const unsigned oid = Store("new");
  folder_.Write("out", "a much longer old content");
  ASSERT_TRUE(session_.ClientSideLOExport(oid, folder_.Path("out")));
  EXPECT_EQ(folder_.Read("out"), "new");
  EXPECT_EQ(Files(), Names{"out"});
}

TEST_F(ExportTest, AReplacedFileKeepsItsPermissions) {
  const unsigned oid = Store("new");
  for (const mode_t mode : {0600U, 0640U, 0666U}) {
    folder_.Write("out", "old");
    ASSERT_EQ(chmod(folder_.Path("out").c_str(), mode), 0);
    ASSERT_TRUE(session_.ClientSideLOExport(oid, folder_.Path("out")));
    EXPECT_EQ(ModeOf(folder_.Path("out")), S_IFREG | mode);
  }
}

TEST_F(ExportTest, AReplacedFileKeepsItsOwnerWhereTheCallerMayGiveFilesAway) {
  const unsigned oid = Store("new");
  folder_.Write("out", "old");
  ASSERT_EQ(chown(folder_.Path("out").c_str(), 1000, 1001), 0);
  ASSERT_EQ(chmod(folder_.Path("out").c_str(), 0640), 0);
  ASSERT_TRUE(session_.ClientSideLOExport(oid, folder_.Path("out")));
  struct stat status {};
  ASSERT_EQ(stat(folder_.Path("out").c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 1000U);
  EXPECT_EQ(status.st_gid, 1001U);
  EXPECT_EQ(status.st_mode, S_IFREG | 0640U);
  ASSERT_EQ(chmod(folder_.Path("").c_str(), 0777), 0);
  test_support::RunInChild([&] {
    session_ = Connect();
    test_support::BecomeIds({0, 1002, 0}, {0, 1002, 0});
    EXPECT_TRUE(session_.ClientSideLOExport(oid, folder_.Path("out")));
    return std::string();
  });
  EXPECT_EQ(ModeOf(folder_.Path("out")), S_IFREG | 0600U) << "its group is another one";
}

TEST_F(ExportTest, ANewFileHasTheCallersUsualPermissions) {
  const mode_t old_mask = umask(027);
  EXPECT_TRUE(session_.ClientSideLOExport(Store("x"), folder_.Path("out")));
  umask(old_mask);
  EXPECT_EQ(ModeOf(folder_.Path("out")), S_IFREG | 0640U);
}

TEST_F(ExportTest, AMissingObjectKeepsTheFile) {
  folder_.Write("out", "old");
  EXPECT_FALSE(session_.ClientSideLOExport(12345, folder_.Path("out")));
  EXPECT_FALSE(session_.ClientSideLOExport(12345, folder_.Path("new")));
  EXPECT_FALSE(session_.ClientSideLOExport(0, folder_.Path("new")));
  EXPECT_EQ(folder_.Read("out"), "old");
  EXPECT_EQ(Files(), Names{"out"});
  const Lines lines = TakeLog();
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0], ObjectFailure("Failed to read large object: ERROR:  large object 12345 does "
                                    "not exist"));
  EXPECT_TRUE(IsIdle());
}

TEST_F(ExportTest, ALossOnTheWayKeepsTheFile) {
  const unsigned oid = session_.ClientSideLOImport(folder_.Write("in", Content(3 << 20)));
  folder_.Write("out", "old");
  test_support::ServerProxy proxy;
  session_ = Connect();
  proxy.BreakAfterFromServer(1 << 20);
  EXPECT_FALSE(session_.ClientSideLOExport(oid, folder_.Path("out")));
  EXPECT_EQ(folder_.Read("out"), "old");
  EXPECT_EQ(Files(), (Names{"in", "out"}));
  const Lines lines = TakeLog();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].source, "dbquery/large_object");
  EXPECT_EQ(lines[1], Failed("[08006] the connection to the server is lost: ROLLBACK"));
}

TEST_F(ExportTest, OnALostConnectionTheFileIsKept) {
  folder_.Write("out", "old");
  test_support::TerminateOtherSessions(raw_);
  for (int time = 0; time < 2; ++time) {
    EXPECT_FALSE(session_.ClientSideLOExport(1, folder_.Path("out")));
    EXPECT_EQ(TakeLog().size(), 1U);
  }
  EXPECT_EQ(folder_.Read("out"), "old");
  EXPECT_EQ(Files(), Names{"out"});
}

TEST_F(ExportTest, AFullDiskKeepsTheFile) {
  const unsigned oid = session_.ClientSideLOImport(folder_.Write("in", Content(1 << 20)));
  std::filesystem::create_directory(folder_.Path("small"));
  test_support::RunInChild([&] {
    EXPECT_EQ(unshare(CLONE_NEWNS), 0);
    EXPECT_EQ(mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), 0);
    EXPECT_EQ(mount("tmpfs", folder_.Path("small").c_str(), "tmpfs", 0, "size=64k"), 0);
    folder_.Write("small/out", "old");
    session_ = Connect();
    TakeLog();
    EXPECT_FALSE(session_.ClientSideLOExport(oid, folder_.Path("small/out")));
    const Lines lines = TakeLog();
    EXPECT_EQ(lines.size(), 1U);
    EXPECT_NE(lines.at(0).text.find("]: No space left on device"), std::string::npos);
    EXPECT_EQ(folder_.Read("small/out"), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.Path("small")), {}), 1);
    return std::string();
  });
}

TEST_F(ExportTest, NothingButARegularFileIsReplaced) {
  const unsigned oid = Store("x");
  folder_.MakeFifo("fifo");
  std::filesystem::create_directory(folder_.Path("folder"));
  ASSERT_EQ(mknod(folder_.Path("device").c_str(), S_IFCHR | 0600, makedev(1, 3)), 0);
  std::filesystem::create_symlink("fifo", folder_.Path("link"));
  std::filesystem::create_symlink("nothing", folder_.Path("dangling"));
  const Names before = Files();
  for (const std::string& path :
       {folder_.Path("fifo"), folder_.Path("folder"), folder_.Path("device"), folder_.Path("link"),
        folder_.Path("dangling"), folder_.Path("folder/."), folder_.Path("")}) {
    EXPECT_FALSE(session_.ClientSideLOExport(oid, path)) << path;
    EXPECT_EQ(TakeLog(),
              Lines{FileFailure("Failed to open file [" + path + "]: not a regular file")});
  }
  EXPECT_EQ(Files(), before);
  EXPECT_TRUE(S_ISFIFO(ModeOf(folder_.Path("fifo"))));
  EXPECT_TRUE(S_ISCHR(ModeOf(folder_.Path("device"))));
}

TEST_F(ExportTest, PathsThatNameNoFileAreRefused) {
  const unsigned oid = Store("x");
  folder_.Write("file", "kept");
  for (const std::string& path :
       {std::string(), folder_.Path("missing/out"), folder_.Path("file/out"), folder_.Path("file/"),
        folder_.Path("new/"), folder_.Path(std::string("out\0x", 5)),
        folder_.Path(std::string(256, 'n'))}) {
    EXPECT_FALSE(session_.ClientSideLOExport(oid, path)) << path;
    EXPECT_EQ(TakeLog().size(), 1U) << path;
  }
  EXPECT_EQ(Files(), Names{"file"});
  EXPECT_EQ(folder_.Read("file"), "kept");
}

TEST_F(ExportTest, TheLongestFileNameIsNoObstacle) {
  const std::string name(255, 'n');
  EXPECT_TRUE(session_.ClientSideLOExport(Store("x"), folder_.Path(name)));
  EXPECT_EQ(Files(), Names{name});
}

TEST_F(ExportTest, ALinkStaysAndTheFileBehindItIsReplaced) {
  std::filesystem::create_directory(folder_.Path("elsewhere"));
  folder_.Write("elsewhere/target", "old");
  std::filesystem::create_symlink("elsewhere/target", folder_.Path("link"));
  ASSERT_TRUE(session_.ClientSideLOExport(Store("new"), folder_.Path("link")));
  EXPECT_TRUE(S_ISLNK(ModeOf(folder_.Path("link"))));
  EXPECT_EQ(folder_.Read("elsewhere/target"), "new");
  EXPECT_EQ(Files(), (Names{"elsewhere", "link"}));
}

TEST_F(ExportTest, AFolderThatTheCallerMayNotWriteIsRefused) {
  const unsigned oid = Store("x");
  ASSERT_EQ(chmod(folder_.Path("").c_str(), 0755), 0);
  const std::string line = test_support::RunInChild([&] {
    session_ = Connect();
    TakeLog();
    test_support::BecomeIds({0, 1000, 0}, {0, 1000, 0});
    EXPECT_FALSE(session_.ClientSideLOExport(oid, folder_.Path("out")));
    const Lines lines = TakeLog();
    EXPECT_EQ(lines.size(), 1U);
    return lines.at(0).text;
  });
  EXPECT_NE(line.find("]: Permission denied"), std::string::npos) << line;
  EXPECT_EQ(Files(), Names{});
}

TEST_F(ExportTest, ARelativePathIsTakenFromTheWorkingFolder) {
  const unsigned oid = Store("x");
  test_support::RunInChild([&] {
    EXPECT_EQ(chdir(folder_.Path("").c_str()), 0);
    session_ = Connect();
    EXPECT_TRUE(session_.ClientSideLOExport(oid, "out"));
    EXPECT_TRUE(session_.ClientSideLOExport(oid, "./out"));
    return std::string();
  });
  EXPECT_EQ(Files(), Names{"out"});
}

TEST_F(ExportTest, ObjectIdsUseAll32BitsAndNoMore) {
  raw_.Run("SELECT lo_from_bytea(4000000000, 'high'), lo_from_bytea(4294967295, 'highest')");
  const auto exported = [this](unsigned long long oid) {
    EXPECT_TRUE(session_.ClientSideLOExport(oid, folder_.Path("out")));
    return folder_.Read("out");
  };
  EXPECT_EQ(exported(4000000000ULL), "high");
  EXPECT_EQ(exported(static_cast<unsigned long long>(static_cast<int>(4000000000U))), "high");
  EXPECT_EQ(exported(static_cast<unsigned long long>(-1)), "highest");
}

TEST_F(ExportTest, InsideATransactionItSeesWhatThatOneHasStored) {
  DefaultTransaction transaction(session_);
  const unsigned oid = session_.ClientSideLOImport(folder_.Write("in", "own"));
  EXPECT_TRUE(session_.ClientSideLOExport(oid, folder_.Path("out")));
  EXPECT_EQ(folder_.Read("out"), "own");
  EXPECT_FALSE(IsIdle());
  EXPECT_TRUE(transaction.Commit());
}

}  // namespace
}  // namespace dorvdbquery
