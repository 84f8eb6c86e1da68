#include <dorv/volume.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

TEST(VolumePathParseExTest, GivesMountPointAndDevice) {
  DorvVolumeInfo info = {};
  ASSERT_EQ(VolumePathParseEx("/proc/self/status", &info), 0);
  EXPECT_STREQ(info.path, "/proc");
  EXPECT_STREQ(info.device, "proc");
}

TEST(VolumePathParseExTest, FollowsLinksAndRelativePaths) {
  const auto link = std::filesystem::path(testing::TempDir()) / "link_to_proc";
  std::filesystem::remove(link);
  std::filesystem::create_symlink("/proc/self", link);
  DorvVolumeInfo info = {};
  EXPECT_EQ(VolumePathParseEx(link.c_str(), &info), 0);
  EXPECT_STREQ(info.path, "/proc");
  std::filesystem::remove(link);

  const auto before = std::filesystem::current_path();
  std::filesystem::current_path("/proc");
  DorvVolumeInfo relative = {};
  EXPECT_EQ(VolumePathParseEx("self", &relative), 0);
  EXPECT_STREQ(relative.path, "/proc");
  std::filesystem::current_path(before);
}

TEST(VolumePathParseExTest, FailsForWhatDoesNotExist) {
  DorvVolumeInfo info = {};
  EXPECT_EQ(VolumePathParseEx("/nonexistent/x", &info), -1);
  EXPECT_EQ(VolumePathParseEx("", &info), -1);
  EXPECT_EQ(VolumePathParseEx(("/" + std::string(5000, 'x')).c_str(), &info), -1);
}

}  // namespace
