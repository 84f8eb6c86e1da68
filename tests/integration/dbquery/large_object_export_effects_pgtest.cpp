// What an export asks of the machine: that its file reaches the disk, and nothing that it keeps.
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <future>
#include <string>
#include <vector>

#include "integration/dbquery/large_object_test.h"

namespace {

thread_local std::vector<std::string> synced;  // what fsync() was called for
thread_local int refused_sync = 0;             // the call that fails, counted from 1

}  // namespace

// Stands in for the C library's.
extern "C" __attribute__((visibility("default"))) int fsync(int descriptor) {
  synced.push_back(
      std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor)).string());
  if (static_cast<int>(synced.size()) == refused_sync) {
    errno = EDQUOT;
    return -1;
  }
  return static_cast<int>(syscall(SYS_fsync, descriptor));
}

namespace dorvdbquery {
namespace {

using test_support::TakeLog;

class ExportEffectsTest : public LargeObjectTest {
 protected:
  ExportEffectsTest() { synced.clear(); }
  ~ExportEffectsTest() override { refused_sync = 0; }

  std::string Folder() const { return std::filesystem::path(folder_.Path("x")).parent_path(); }
};

TEST_F(ExportEffectsTest, TheFileReachesTheDiskBeforeItsNameDoes) {
  ASSERT_TRUE(session_.ClientSideLOExport(Store("new"), folder_.Path("out")));
  ASSERT_EQ(synced.size(), 2U);
  EXPECT_EQ(synced[0].rfind(Folder() + "/.dorvdl-", 0), 0U) << synced[0];
  EXPECT_EQ(synced[1], Folder());
}

TEST_F(ExportEffectsTest, AContentThatDoesNotReachTheDiskKeepsTheFile) {
  folder_.Write("out", "old");
  refused_sync = 1;
  EXPECT_FALSE(session_.ClientSideLOExport(Store("new"), folder_.Path("out")));
  EXPECT_EQ(TakeLog(), Lines{FileFailure("Failed to complete file [" + folder_.Path("out") +
                                         "]: Disk quota exceeded")});
  EXPECT_EQ(folder_.Read("out"), "old");
  EXPECT_EQ(Files(), Names{"out"});
}

TEST_F(ExportEffectsTest, ANameThatMayNotReachTheDiskIsReplacedAllTheSame) {
  refused_sync = 2;
  EXPECT_TRUE(session_.ClientSideLOExport(Store("new"), folder_.Path("out")));
  EXPECT_EQ(folder_.Read("out"), "new");
}

TEST_F(ExportEffectsTest, NoDescriptorStaysOpen) {
  const auto descriptors = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  };
  const unsigned oid = Store("x");
  folder_.Write("file", "old");
  folder_.MakeFifo("fifo");
  std::filesystem::create_symlink("nothing", folder_.Path("dangling"));
  std::filesystem::create_symlink("file", folder_.Path("link"));
  std::filesystem::create_symlink("circle", folder_.Path("circle"));
  const auto before = descriptors();
  for (const std::string name : {"file", "new", "link", "dangling", "circle", "fifo", "no/file",
                                 "file/file", "file/", "/../x/y", ""}) {
    session_.ClientSideLOExport(oid, folder_.Path(name));
    session_.ClientSideLOExport(12345, folder_.Path(name));
    session_.ClientSideLOImport(folder_.Path(name));
    EXPECT_EQ(descriptors(), before) << name;
  }
}

TEST_F(ExportEffectsTest, TwoAtOnceReplaceTheFileOneAfterTheOther) {
  const std::string contents[] = {Content(300 << 10), std::string(300 << 10, 'x')};
  const auto export_often = [&](const std::string& name) {
    Session session = Connect();
    const unsigned oid = session.ClientSideLOImport(folder_.Path(name));
    bool good = true;
    for (int time = 0; time < 20; ++time) {
      good = session.ClientSideLOExport(oid, folder_.Path("out")) && good;
    }
    return good;
  };
  folder_.Write("one", contents[0]);
  folder_.Write("two", contents[1]);
  auto one = std::async(std::launch::async, export_often, "one");
  EXPECT_TRUE(export_often("two"));
  EXPECT_TRUE(one.get());
  const std::string content = folder_.Read("out");
  EXPECT_TRUE(content == contents[0] || content == contents[1]);
  EXPECT_EQ(Files(), (Names{"one", "out", "two"}));
}

}  // namespace
}  // namespace dorvdbquery
