// VolumePathParseEx and dorvfstool on mounts of the test's own.
#include <dorv/exec.h>
#include <dorv/volume.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "support/mount_namespace.h"

namespace test_support {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kSize = 1048576;

class VolumeRootTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    EnterMountNamespace();
    MountTmpfs("/mnt", kSize);
  }

  static std::string NewFolder(const std::string& path) {
    fs::create_directories(path);
    return path;
  }

  // The volume of a path; empty when it cannot be told.
  static std::string VolumeOf(const std::string& path) {
    DorvVolumeInfo info = {};
    return VolumePathParseEx(path.c_str(), &info) == 0 ? info.path : "";
  }

  static int ToolStatus(const std::string& path) {
    return VLIBCExec(DORVDL_TEST_BINARY_DIR "/platform/dorvfstool", "--check-volume-writable",
                     path.c_str(), nullptr, nullptr);
  }
};

TEST_F(VolumeRootTest, TheInnermostMountIsTheVolume) {
  MountTmpfs(NewFolder("/mnt/outer/inner"), kSize);
  NewFolder("/mnt/outer/inner/folder");
  NewFolder("/mnt/outer/inner2");
  EXPECT_EQ(VolumeOf("/mnt/outer/inner/folder"), "/mnt/outer/inner");
  EXPECT_EQ(VolumeOf("/mnt/outer/inner"), "/mnt/outer/inner");
  EXPECT_EQ(VolumeOf("/mnt/outer/inner2"), "/mnt");
}

TEST_F(VolumeRootTest, NamesWithBlanksComeBackAsTheyAre) {
  MountTmpfs(NewFolder("/mnt/my volume\t\\ 1"), kSize);
  EXPECT_EQ(VolumeOf("/mnt/my volume\t\\ 1"), "/mnt/my volume\t\\ 1");
}

TEST_F(VolumeRootTest, AMountHiddenBelowALaterOneIsNotMistakenForIt) {
  MountTmpfs(NewFolder("/mnt/hiding/volume"), kSize);
  MountTmpfs("/mnt/hiding", kSize);
  EXPECT_EQ(VolumeOf(NewFolder("/mnt/hiding/volume/folder")), "/mnt/hiding");
}

TEST_F(VolumeRootTest, AMountPointTooLongForTheRecordFails) {
  const fs::path before = fs::current_path();
  const std::string name(250, 'd');
  ASSERT_EQ(chdir(NewFolder("/mnt/deep").c_str()), 0);
  for (int depth = 0; depth < 17; ++depth) {
    ASSERT_EQ(mkdir(name.c_str(), 0755), 0);
    ASSERT_EQ(chdir(name.c_str()), 0);
  }
  ASSERT_EQ(mkdir("volume", 0755), 0);
  EXPECT_EQ(VolumeOf("volume"), "/mnt");
  MountTmpfs("volume", kSize);
  EXPECT_EQ(VolumeOf("volume"), "");
  fs::current_path(before);
}

TEST_F(VolumeRootTest, TheToolTellsAReadOnlyVolume) {
  MountTmpfs(NewFolder("/mnt/fixed"), kSize);
  NewFolder("/mnt/fixed/folder");
  EXPECT_EQ(ToolStatus("/mnt/fixed/folder"), 1);
  MakeReadOnly("/mnt/fixed");
  EXPECT_EQ(ToolStatus("/mnt/fixed/folder"), 0);
}

}  // namespace
}  // namespace test_support
