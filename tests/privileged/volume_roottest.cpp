// VolumePathParseEx and dorvfstool on mounts of the test's own.
#include <dlfcn.h>
#include <dorv/exec.h>
#include <dorv/volume.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "support/child.h"
#include "support/identity.h"
#include "support/mount_namespace.h"

namespace {
bool kernel_tells_mount_ids = true;
}  // namespace

extern "C" __attribute__((visibility("default"))) int statx(int folder, const char* path, int flags,
                                                            unsigned mask,
                                                            struct statx* to) noexcept {
  const auto real =
      reinterpret_cast<int (*)(int, const char*, int, unsigned, void*)>(dlsym(RTLD_NEXT, "statx"));
  const int result = real(folder, path, flags, mask, to);
  if (!kernel_tells_mount_ids) {
    to->stx_mask &= ~STATX_MNT_ID;
    to->stx_mnt_id = 0;
  }
  return result;
}

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

// Other kernels hide the folder from a process whose ids have changed; this one has it covered.
TEST_F(VolumeRootTest, IsFoundWithOtherIdsWithoutReadingAboutOpenFiles) {
  RunInChild([] {
    EXPECT_EQ(mount("tmpfs", "/proc/self/fdinfo", "tmpfs", 0, nullptr), 0);
    EXPECT_TRUE(fs::is_empty("/proc/self/fdinfo"));
    for (const uid_t real : {0U, 1000U}) {
      BecomeIds({real, 0, 0}, {0, 0, 0});
      for (const uid_t effective : {1000U, 0U}) {
        EXPECT_EQ(seteuid(effective), 0);
        EXPECT_EQ(VolumeOf("/mnt"), "/mnt") << CurrentIds();
      }
    }
    BecomeIds({1000, 1000, 1000}, {1000, 1000, 1000});
    EXPECT_EQ(VolumeOf("/mnt"), "/mnt");
    return "";
  });
}

TEST_F(VolumeRootTest, IsFoundWhereTheKernelDoesNotTellMountIds) {
  kernel_tells_mount_ids = false;
  EXPECT_EQ(VolumeOf("/mnt"), "/mnt");
  kernel_tells_mount_ids = true;
}

TEST_F(VolumeRootTest, TheToolIsRunAlsoWithOtherIds) {
  const std::string reached = RunInChild([] {
    std::signal(SIGCHLD, SIG_IGN);
    BecomeIds({1000, 0, 0}, {1000, 0, 0});
    std::string statuses = std::to_string(ToolStatus("/mnt"));
    BecomeIds({1000, 1000, 0}, {1000, 1000, 0});
    return statuses +=
           ' ' + std::to_string(VLIBCExec("/bin/sh", "-c", "exit $(id -u)", nullptr, nullptr));
  });
  EXPECT_EQ(reached, "1 " + std::to_string(1000 % 256));
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
