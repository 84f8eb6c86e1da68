// The C functions with the real calls, the real tool and the real paths.
#include <dorvdl/file.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/mount_namespace.h"
#include "support/syslog_capture.h"

namespace test_support {
namespace {

namespace fs = std::filesystem;

constexpr char kLink[] = "/var/services/download";
constexpr char kTool[] = "/usr/dorv/bin/dorvfstool";
constexpr char kBuiltTool[] = DORVDL_TEST_BINARY_DIR "/platform/dorvfstool";
constexpr char kVolume[] = "/var/volume";
constexpr std::size_t kMebibyte = 1048576;

using Log = std::vector<LogLine>;

LogLine Error(const std::string& text) { return {LOG_ERR, "file", text}; }

// As the rest of the machine sees a path.
fs::path Outside(const std::string& path) {
  return "/proc/" + std::to_string(getppid()) + "/root" + path;
}

// A volume of 2 MiB with the folder "tmp", and the link to it.
class FileRootTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    EnterMountNamespace();
    MakeExtendable("/var");
    MakeExtendable("/usr");
    fs::create_directories("/var/services");
    fs::create_directory(kVolume);
    fs::create_directories("/usr/dorv/bin");
    fs::create_symlink(kBuiltTool, kTool);
  }

  FileRootTest() {
    MountTmpfs(kVolume, 2 * kMebibyte);
    fs::create_directory(folder_);
    fs::create_symlink(folder_, kLink);
    TakeLog();
  }
  ~FileRootTest() override {
    fs::remove(kLink);
    EXPECT_EQ(system(("umount " + std::string(kVolume)).c_str()), 0);
  }

  static void PointLinkAt(const std::string& target) {
    fs::remove(kLink);
    fs::create_symlink(target, kLink);
  }

  static void FillVolume(std::size_t bytes) {
    std::ofstream(std::string(kVolume) + "/filling") << std::string(bytes, 'x');
  }

  static void ExpectNoFolder() {
    std::array<char, 4096> buffer{};
    EXPECT_EQ(GetTmpDownloadDir(buffer.data(), 4096), -1);
    EXPECT_EQ(TakeLog(), Log());
    EXPECT_EQ(GetTmpDownloadDirVol(buffer.data(), buffer.size()), -1);
    EXPECT_EQ(TakeLog(), Log{Error("Failed to get download temporary directory")});
    EXPECT_EQ(TmpVolumeSpaceCheck(), -1);
    EXPECT_EQ(TakeLog(), Log{Error("Failed to get TmpDownloadDir.")});
  }

  const std::string folder_ = std::string(kVolume) + "/tmp";
  std::array<char, 4096> buffer_{};
};

TEST_F(FileRootTest, FindsTheFolderAndItsVolume) {
  EXPECT_EQ(GetTmpDownloadDirRealPath(buffer_.data(), 4096), 0);
  EXPECT_EQ(buffer_.data(), folder_);
  EXPECT_EQ(GetTmpDownloadDir(buffer_.data(), 4096), 0);
  EXPECT_EQ(buffer_.data(), folder_);
  EXPECT_EQ(GetTmpDownloadDirVol(buffer_.data(), buffer_.size()), 0);
  EXPECT_STREQ(buffer_.data(), kVolume);
  EXPECT_EQ(TmpVolumeSpaceCheck(), 0);
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(FileRootTest, ASizeOfZeroFailsInSilence) {
  EXPECT_EQ(GetTmpDownloadDirRealPath(buffer_.data(), 0), -1);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(FileRootTest, ATargetAsLongAsTheBufferHasNoTerminator) {
  buffer_.fill('x');
  const auto length = static_cast<int>(folder_.size());
  EXPECT_EQ(GetTmpDownloadDirRealPath(buffer_.data(), length), 0);
  EXPECT_EQ(std::string(buffer_.data(), folder_.size() + 1), folder_ + "x");
}

TEST_F(FileRootTest, AMissingLinkFails) {
  fs::remove(kLink);
  ExpectNoFolder();
  EXPECT_EQ(GetTmpDownloadDirRealPath(buffer_.data(), 4096), -1);
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(FileRootTest, ADanglingLinkHasARealPathOnly) {
  PointLinkAt("/var/volume/gone");
  ExpectNoFolder();
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(GetTmpDownloadDirRealPath(buffer_.data(), 4096), 0);
  EXPECT_STREQ(buffer_.data(), "/var/volume/gone");
}

TEST_F(FileRootTest, ALinkToAFileFails) {
  FillVolume(1);
  PointLinkAt("/var/volume/filling");
  ExpectNoFolder();
}

TEST_F(FileRootTest, AFolderInPlaceOfTheLinkFails) {
  fs::remove(kLink);
  fs::create_directory(kLink);
  ExpectNoFolder();
  EXPECT_EQ(errno, EINVAL);
}

TEST_F(FileRootTest, AReadOnlyVolumeFailsHoweverFullItIs) {
  FillVolume(3 * kMebibyte);
  EXPECT_EQ(TmpVolumeSpaceCheck(), 1);
  MakeReadOnly(kVolume);
  ExpectNoFolder();
}

TEST_F(FileRootTest, WithoutTheToolNoVolumeIsWritable) {
  fs::rename(kTool, std::string(kTool) + ".away");
  ExpectNoFolder();
  fs::rename(std::string(kTool) + ".away", kTool);
  EXPECT_EQ(GetTmpDownloadDir(buffer_.data(), 4096), 0);
}

TEST_F(FileRootTest, OneFreeMebibyteIsEnoughAndOneBlockLessIsNot) {
  FillVolume(kMebibyte);
  EXPECT_EQ(TmpVolumeSpaceCheck(), 0);
  FillVolume(kMebibyte + 1);
  EXPECT_EQ(TmpVolumeSpaceCheck(), 1);
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(FileRootTest, RemovesWhatIsThereAndMindsNoStrangeNames) {
  const std::string path = folder_ + "/a b; $(touch x) '*";
  fs::create_directories(path + "/17");
  std::ofstream(path + "/17/17.torrent") << "x";
  for (const int flag : {0, 1}) {
    EXPECT_EQ(RemoveTaskTemp(path.c_str(), flag), 0);
    EXPECT_TRUE(fs::is_empty(folder_));
  }
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(FileRootTest, ReportsWhatCannotBeRemoved) {
  MakeReadOnly(kVolume);
  EXPECT_EQ(RemoveTaskTemp(folder_.c_str(), 0), -1);
  EXPECT_EQ(TakeLog(), Log{Error("Failed to remove path [" + folder_ + "]")});
  EXPECT_TRUE(fs::exists(folder_));
}

TEST_F(FileRootTest, TheMachineKeepsItsFolders) {
  EXPECT_NE(fs::status(Outside(kVolume)).type(), fs::file_type::directory);
  struct stat inside {
  }, outside{};
  for (const char* const folder : {"/var", "/usr"}) {
    ASSERT_EQ(stat(folder, &inside), 0);
    ASSERT_EQ(stat(Outside(folder).c_str(), &outside), 0);
    EXPECT_NE(inside.st_dev, outside.st_dev) << folder;
  }
  for (const char* const folder : {"/var/lib", "/usr/lib"}) {
    ASSERT_EQ(stat(folder, &inside), 0);
    ASSERT_EQ(stat(Outside(folder).c_str(), &outside), 0);
    EXPECT_EQ(inside.st_ino, outside.st_ino) << folder;
  }
}

}  // namespace
}  // namespace test_support
