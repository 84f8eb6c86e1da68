// GetTmpDownloadDirRealPath and GetTmpDownloadDir.
#include <dorvdl/file.h>

#include <array>
#include <cerrno>
#include <string_view>

#include "unit/file/file_test.h"

namespace test_support {
namespace {

class TmpDownloadDirRealPathTest : public FileTest {};
class TmpDownloadDirTest : public FileTest {};

TEST_F(TmpDownloadDirRealPathTest, CopiesTheTargetAndZeroesTheRest) {
  std::array<char, 64> buffer{};
  buffer.fill('x');
  EXPECT_EQ(GetTmpDownloadDirRealPath(buffer.data(), 60), 0);
  EXPECT_EQ(std::string_view(buffer.data(), 60), "/volume1/download" + std::string(43, '\0'));
  EXPECT_EQ(std::string_view(buffer.data() + 60, 4), "xxxx");
  EXPECT_EQ(files_.readlink_size, 60U);
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(TmpDownloadDirRealPathTest, LooksAtNothingButTheLink) {
  files_.stat_error = ENOENT;
  platform_.exec = 0;
  std::array<char, 64> buffer{};
  EXPECT_EQ(GetTmpDownloadDirRealPath(buffer.data(), 64), 0);
  EXPECT_EQ(files_.stats, 0);
  EXPECT_EQ(platform_.TakeCalls(), Calls());
}

TEST_F(TmpDownloadDirRealPathTest, ATargetThatFillsTheBufferHasNoTerminator) {
  files_.target = "/volume1";
  std::array<char, 12> buffer{};
  buffer.fill('x');
  EXPECT_EQ(GetTmpDownloadDirRealPath(buffer.data(), 8), 0);
  EXPECT_EQ(std::string_view(buffer.data(), 12), "/volume1xxxx");
  buffer.fill('x');
  EXPECT_EQ(GetTmpDownloadDirRealPath(buffer.data(), 5), 0);
  EXPECT_EQ(std::string_view(buffer.data(), 12), "/voluxxxxxxx");
  EXPECT_EQ(GetTmpDownloadDirRealPath(buffer.data(), 9), 0);
  EXPECT_EQ(buffer[8], '\0');
}

TEST_F(TmpDownloadDirRealPathTest, ANullBufferOrANegativeSizeIsABadParameter) {
  std::array<char, 4> buffer{"abc"};
  EXPECT_EQ(GetTmpDownloadDirRealPath(nullptr, 4), -1);
  EXPECT_EQ(TakeLog(), Log{Error("Bad parameters")});
  EXPECT_EQ(GetTmpDownloadDirRealPath(buffer.data(), -1), -1);
  EXPECT_EQ(TakeLog(), Log{Error("Bad parameters")});
  EXPECT_STREQ(buffer.data(), "abc");
  EXPECT_EQ(files_.readlink_size, 0U);
}

TEST_F(TmpDownloadDirRealPathTest, ASizeOfZeroIsWhatTheSystemMakesOfIt) {
  std::array<char, 4> buffer{"abc"};
  errno = 0;
  EXPECT_EQ(GetTmpDownloadDirRealPath(buffer.data(), 0), -1);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_STREQ(buffer.data(), "abc");
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(TmpDownloadDirRealPathTest, AMissingLinkFailsInSilenceWithAZeroedBuffer) {
  files_.readlink_error = ENOENT;
  std::array<char, 4> buffer{"abc"};
  EXPECT_EQ(GetTmpDownloadDirRealPath(buffer.data(), 4), -1);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(std::string_view(buffer.data(), 4), std::string(4, '\0'));
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(TmpDownloadDirTest, GivesAFolderThatTheToolCallsWritable) {
  std::array<char, 64> buffer{};
  EXPECT_EQ(GetTmpDownloadDir(buffer.data(), 64), 0);
  EXPECT_STREQ(buffer.data(), "/volume1/download");
  EXPECT_EQ(files_.readlink_size, 64U);
  EXPECT_EQ(platform_.TakeCalls(), Calls{ToolCall()});
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(TmpDownloadDirTest, OnlyTheStatusOneMeansWritable) {
  std::array<char, 64> buffer{};
  for (const int status : {-1, 0, 2, 127, 255, 257}) {
    platform_.exec = status;
    EXPECT_EQ(GetTmpDownloadDir(buffer.data(), 64), -1) << status;
    EXPECT_EQ(platform_.TakeCalls(), Calls{ToolCall()});
  }
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(TmpDownloadDirTest, RunsNoToolForADanglingLink) {
  files_.stat_error = ENOTDIR;
  std::array<char, 64> buffer{};
  EXPECT_EQ(GetTmpDownloadDir(buffer.data(), 64), -1);
  EXPECT_EQ(errno, ENOTDIR);
  EXPECT_EQ(platform_.TakeCalls(), Calls());
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(TmpDownloadDirTest, RunsNoToolForWhatIsNoFolder) {
  std::array<char, 64> buffer{};
  for (const mode_t type : {S_IFREG, S_IFBLK, S_IFSOCK, S_IFCHR, S_IFIFO}) {
    files_.mode = type | 0777U;
    EXPECT_EQ(GetTmpDownloadDir(buffer.data(), 64), -1) << type;
  }
  EXPECT_EQ(files_.stats, 5);
  EXPECT_EQ(platform_.TakeCalls(), Calls());
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(TmpDownloadDirTest, AMissingLinkStopsBeforeAnythingElse) {
  files_.readlink_error = EACCES;
  std::array<char, 64> buffer{};
  EXPECT_EQ(GetTmpDownloadDir(buffer.data(), 64), -1);
  EXPECT_EQ(errno, EACCES);
  EXPECT_EQ(files_.stats, 0);
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(TmpDownloadDirTest, ABadParameterIsLoggedOnce) {
  EXPECT_EQ(GetTmpDownloadDir(nullptr, 64), -1);
  EXPECT_EQ(TakeLog(), Log{Error("Bad parameters")});
}

}  // namespace
}  // namespace test_support
