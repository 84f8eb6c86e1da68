// GetTmpDownloadDirVol and TmpVolumeSpaceCheck.
#include <dorvdl/file.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <string_view>

#include "unit/file/file_test.h"

namespace test_support {
namespace {

class TmpDownloadDirVolTest : public FileTest {};

TEST_F(TmpDownloadDirVolTest, GivesTheVolumeOfTheFolder) {
  std::array<char, 16> buffer{};
  EXPECT_EQ(GetTmpDownloadDirVol(buffer.data(), buffer.size()), 0);
  EXPECT_STREQ(buffer.data(), "/volume1");
  EXPECT_EQ(files_.readlink_size, 4096U);
  EXPECT_EQ(platform_.TakeCalls(),
            (Calls{ToolCall(), "VolumePathParseEx(\"/volume1/download\", {})"}));
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(TmpDownloadDirVolTest, AShortBufferGetsAsMuchAsFits) {
  std::array<char, 16> buffer{};
  buffer.fill('x');
  EXPECT_EQ(GetTmpDownloadDirVol(buffer.data(), 5), 0);
  EXPECT_EQ(std::string_view(buffer.data(), 6), std::string_view("/vol\0x", 6));
  EXPECT_EQ(GetTmpDownloadDirVol(nullptr, 0), 0);
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(TmpDownloadDirVolTest, FailsInSilenceWhenThePathCannotBeFormatted) {
  files_.formatting_fails = true;
  std::array<char, 16> buffer{};
  EXPECT_EQ(GetTmpDownloadDirVol(buffer.data(), buffer.size()), -1);
  files_.formatting_fails = false;
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(TmpDownloadDirVolTest, AsksForNoVolumeWithoutAFolder) {
  files_.readlink_error = EACCES;
  std::array<char, 16> buffer{"before"};
  EXPECT_EQ(GetTmpDownloadDirVol(buffer.data(), buffer.size()), -1);
  EXPECT_EQ(errno, EACCES);
  EXPECT_EQ(TakeLog(), Log{Error("Failed to get download temporary directory")});
  EXPECT_EQ(platform_.TakeCalls(), Calls());
  EXPECT_STREQ(buffer.data(), "before");
}

TEST_F(TmpDownloadDirVolTest, AnyNegativeAnswerMeansThatTheVolumeIsUnknown) {
  std::array<char, 16> buffer{};
  for (const int answer : {-1, -2}) {
    platform_.parse_volume = answer;
    EXPECT_EQ(GetTmpDownloadDirVol(buffer.data(), buffer.size()), -1);
    EXPECT_EQ(TakeLog(), Log{Error("Failed to parse path [/volume1/download] for volume info")});
  }
  platform_.parse_volume = 1;
  EXPECT_EQ(GetTmpDownloadDirVol(buffer.data(), buffer.size()), 0);
}

TEST_F(TmpDownloadDirVolTest, ATargetThatFillsItsBufferStaysWithinIt) {
  files_.target = "/" + std::string(4095, 'a');
  std::array<char, 16> buffer{};
  EXPECT_EQ(GetTmpDownloadDirVol(buffer.data(), buffer.size()), 0);
  EXPECT_EQ(platform_.TakeCalls().front(), ToolCall());
}

class TmpVolumeSpaceCheckTest : public FileTest {
 protected:
  int CheckWith(std::uint64_t blocks, std::int64_t block_size) {
    files_.file_system.f_bavail = blocks;
    files_.file_system.f_bsize = static_cast<decltype(files_.file_system.f_bsize)>(block_size);
    return TmpVolumeSpaceCheck();
  }
};

TEST_F(TmpVolumeSpaceCheckTest, OneMebibyteIsEnoughAndOneByteLessIsNot) {
  EXPECT_EQ(CheckWith(256, 4096), 0);
  EXPECT_EQ(CheckWith(255, 4096), 1);
  EXPECT_EQ(CheckWith(1048576, 1), 0);
  EXPECT_EQ(CheckWith(1048575, 1), 1);
  EXPECT_EQ(CheckWith(0, 4096), 1);
  EXPECT_EQ(files_.readlink_size, 1024U);
  EXPECT_EQ(platform_.TakeCalls(), Calls(5, ToolCall()));
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(TmpVolumeSpaceCheckTest, CountsWhatOrdinaryUsersMayUseInBlocksOfTheFileSystem) {
  files_.file_system.f_blocks = 1000000;
  files_.file_system.f_bfree = 1000000;
  files_.file_system.f_frsize = 1048576;
  EXPECT_EQ(CheckWith(255, 4096), 1);
  files_.file_system.f_bfree = 0;
  files_.file_system.f_frsize = 1;
  EXPECT_EQ(CheckWith(256, 4096), 0);
}

TEST_F(TmpVolumeSpaceCheckTest, LargeVolumesTakeSixtyFourBits) {
  EXPECT_EQ(CheckWith(std::uint64_t{1} << 32U, 1), 0);
  EXPECT_EQ(CheckWith(std::uint64_t{1} << 20U, 4096), 0);
  EXPECT_EQ(CheckWith(std::uint64_t{1} << 40U, 4096), 0);
}

TEST_F(TmpVolumeSpaceCheckTest, TheBlockSizeIsASigned32BitNumber) {
  EXPECT_EQ(CheckWith(1000, std::int64_t{1} << 30U), 0);
  EXPECT_EQ(CheckWith(1000, std::int64_t{1} << 31U), 1);           // -2147483648
  EXPECT_EQ(CheckWith(1000, (std::int64_t{1} << 32U) + 1), 1);     // 1
  EXPECT_EQ(CheckWith(1000, (std::int64_t{1} << 32U) + 4096), 0);  // 4096
}

TEST_F(TmpVolumeSpaceCheckTest, AProductBeyond64BitsWrapsAround) {
  EXPECT_EQ(CheckWith(std::uint64_t{1} << 52U, 4096), 1);                            // 0
  EXPECT_EQ(CheckWith(std::numeric_limits<std::uint64_t>::max() - 1048575, -1), 0);  // 1048576
}

TEST_F(TmpVolumeSpaceCheckTest, AnEmptyPathHasEnoughSpace) {
  files_.target.clear();
  EXPECT_EQ(CheckWith(0, 4096), 0);
  EXPECT_EQ(files_.statfses, 0);
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(TmpVolumeSpaceCheckTest, WithoutAFolderItFailsInsteadOfCallingTheVolumeFull) {
  files_.readlink_error = EACCES;
  EXPECT_EQ(TmpVolumeSpaceCheck(), -1);
  EXPECT_EQ(errno, EACCES);
  EXPECT_EQ(TakeLog(), Log{Error("Failed to get TmpDownloadDir.")});

  files_.readlink_error = 0;
  platform_.exec = 0;  // a volume that is read-only
  EXPECT_EQ(CheckWith(0, 4096), -1);
  EXPECT_EQ(TakeLog(), Log{Error("Failed to get TmpDownloadDir.")});
  EXPECT_EQ(files_.statfses, 0);
}

TEST_F(TmpVolumeSpaceCheckTest, FailsWhenTheFileSystemCannotBeAsked) {
  files_.statfs_error = EIO;
  EXPECT_EQ(TmpVolumeSpaceCheck(), -1);
  EXPECT_EQ(errno, EIO);
  EXPECT_EQ(TakeLog(), Log{Error("statfs() failed [/volume1/download]")});
}

TEST_F(TmpVolumeSpaceCheckTest, ATargetThatFillsItsBufferStaysWithinIt) {
  files_.target = "/" + std::string(1023, 'a');
  EXPECT_EQ(TmpVolumeSpaceCheck(), 0);
  EXPECT_EQ(platform_.TakeCalls(), Calls{ToolCall()});
}

}  // namespace
}  // namespace test_support
