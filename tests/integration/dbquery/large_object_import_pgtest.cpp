// Storing files as large objects.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "integration/dbquery/large_object_test.h"
#include "support/server_proxy.h"

namespace dorvdbquery {
namespace {

using test_support::LogLine;
using test_support::TakeLog;

using ImportTest = LargeObjectTest;

class SizeTest : public LargeObjectTest, public testing::WithParamInterface<std::size_t> {
 protected:
  // As the server shows bytes.
  static std::string Hexadecimal(const std::string& content) {
    std::string text = "\\x";
    for (const char byte : content) {
      text += "0123456789abcdef"[static_cast<unsigned char>(byte) >> 4U];
      text += "0123456789abcdef"[static_cast<unsigned char>(byte) & 15U];
    }
    return text;
  }
};

TEST_P(SizeTest, ComesBackByteForByte) {
  const std::string content = Content(GetParam());
  const unsigned oid = session_.ClientSideLOImport(folder_.Write("in", content));
  ASSERT_NE(oid, 0U);
  EXPECT_TRUE(IsIdle());
  EXPECT_EQ(raw_.Value("SELECT lo_get(" + std::to_string(oid) + ")"), Hexadecimal(content));
  ASSERT_TRUE(session_.ClientSideLOExport(oid, folder_.Path("out")));
  EXPECT_TRUE(IsIdle());
  EXPECT_EQ(folder_.Read("out"), content);
  EXPECT_EQ(Files(), (Names{"in", "out"}));
  EXPECT_EQ(TakeLog(), Lines{});
}

INSTANTIATE_TEST_SUITE_P(LargeObject, SizeTest,
                         testing::Values(0, 1, (256 << 10) - 1, 256 << 10, (256 << 10) + 1,
                                         3 << 20));

TEST_F(ImportTest, AFileWhoseSizeIsNotKnownBeforehandIsReadToItsEnd) {
  const unsigned oid = session_.ClientSideLOImport("/proc/version");
  ASSERT_NE(oid, 0U);
  EXPECT_NE(raw_.Value("SELECT length(lo_get(" + std::to_string(oid) + "))"), "0");
}

TEST_F(ImportTest, InsideATransactionItIsPartOfThatOne) {
  const std::string path = folder_.Write("in", "content");
  {
    const DefaultTransaction transaction(session_);
    EXPECT_NE(session_.ClientSideLOImport(path), 0U);
    EXPECT_EQ(StoredObjects(), "0");
  }
  EXPECT_EQ(StoredObjects(), "0");
  DefaultTransaction transaction(session_);
  EXPECT_NE(session_.ClientSideLOImport(path), 0U);
  EXPECT_TRUE(transaction.Commit());
  EXPECT_EQ(StoredObjects(), "1");
}

TEST_F(ImportTest, AFileThatCannotBeReadLeavesTheTransactionUsable) {
  DefaultTransaction transaction(session_);
  EXPECT_EQ(session_.ClientSideLOImport(folder_.Path("missing")), 0U);
  // Opens, is a regular file, and cannot be read at its beginning.
  EXPECT_EQ(session_.ClientSideLOImport("/proc/self/mem"), 0U);
  EXPECT_TRUE(Insert(1));
  EXPECT_TRUE(transaction.Commit());
  EXPECT_EQ(Stored(), Rows{"1"});
  EXPECT_EQ(StoredObjects(), "0");
  EXPECT_EQ(TakeLog(),
            (Lines{FileFailure("Failed to open file [" + folder_.Path("missing") +
                               "]: No such file or directory"),
                   FileFailure("Failed to read file [/proc/self/mem]: Input/output error")}));
}

TEST_F(ImportTest, InAFailedTransactionItIsRefused) {
  const DefaultTransaction transaction(session_);
  ASSERT_TRUE(Insert(1));
  EXPECT_FALSE(Insert(1));
  TakeLog();
  EXPECT_EQ(session_.ClientSideLOImport(folder_.Write("in", "x")), 0U);
  EXPECT_EQ(TakeLog().size(), 1U);
}

TEST_F(ImportTest, OnlyRegularFilesAreTakenAndNothingIsWaitedFor) {
  folder_.MakeFifo("fifo");
  std::filesystem::create_directory(folder_.Path("folder"));
  std::filesystem::create_symlink("fifo", folder_.Path("link"));
  for (const std::string& path :
       {folder_.Path("fifo"), folder_.Path("folder"), folder_.Path("link"),
        std::string("/dev/zero"), std::string("/dev/tty0"), folder_.Path("")}) {
    EXPECT_EQ(session_.ClientSideLOImport(path), 0U);
    EXPECT_EQ(TakeLog(),
              Lines{FileFailure("Failed to open file [" + path + "]: not a regular file")});
  }
  EXPECT_EQ(StoredObjects(), "0");
}

TEST_F(ImportTest, ASocketAndAnEmptyPathAreRefused) {
  const int socket_file = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{AF_UNIX, {}};
  folder_.Path("socket").copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(socket_file, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(session_.ClientSideLOImport(folder_.Path("socket")), 0U);
  EXPECT_EQ(session_.ClientSideLOImport(""), 0U);
  EXPECT_EQ(TakeLog().size(), 2U);
  close(socket_file);
}

TEST_F(ImportTest, ALinkToARegularFileIsFollowed) {
  folder_.Write("target", "content");
  std::filesystem::create_symlink("target", folder_.Path("link"));
  EXPECT_NE(session_.ClientSideLOImport(folder_.Path("link")), 0U);
}

TEST_F(ImportTest, APathWithAnEmbeddedNulIsRefused) {
  folder_.Write("in", "x");
  EXPECT_EQ(session_.ClientSideLOImport(folder_.Path(std::string("in\0.torrent", 11))), 0U);
  EXPECT_EQ(TakeLog(), Lines{FileFailure("Failed to open file: the path has an embedded NUL")});
  EXPECT_EQ(StoredObjects(), "0");
}

TEST_F(ImportTest, OnALostConnectionItFailsAndIsLogged) {
  test_support::TerminateOtherSessions(raw_);
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(session_.ClientSideLOImport(folder_.Write("in", "x")), 0U);
    EXPECT_EQ(TakeLog().size(), 1U);
  }
  EXPECT_EQ(StoredObjects(), "0");
}

TEST_F(ImportTest, ALossOnTheWayStoresNothing) {
  test_support::ServerProxy proxy;
  session_ = Connect();
  proxy.BreakAfterFromClient(1 << 20);
  EXPECT_EQ(session_.ClientSideLOImport(folder_.Write("in", Content(3 << 20))), 0U);
  const Lines lines = TakeLog();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].source, "dbquery/large_object");
  EXPECT_EQ(lines[1], Failed("[08006] the connection to the server is lost: ROLLBACK"));
  EXPECT_FALSE(session_.Good());
  EXPECT_EQ(StoredObjects(), "0");
}

}  // namespace
}  // namespace dorvdbquery
