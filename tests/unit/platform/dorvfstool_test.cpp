#include <dorv/exec.h>
#include <gtest/gtest.h>

namespace {

constexpr char kTool[] = DORVDL_TEST_BINARY_DIR "/platform/dorvfstool";
constexpr char kQuestion[] = "--check-volume-writable";

int Tool(const char* a1 = nullptr, const char* a2 = nullptr, const char* a3 = nullptr,
         const char* a4 = nullptr) {
  return VLIBCExec(kTool, a1, a2, a3, a4);
}

TEST(DorvFsToolTest, AnswersOneForAWritableVolume) {
  EXPECT_EQ(Tool(kQuestion, DORVDL_TEST_BINARY_DIR), 1);
  EXPECT_EQ(Tool("--check-volume-writable=" DORVDL_TEST_BINARY_DIR), 1);
}

TEST(DorvFsToolTest, AnswersZeroForAPathThatDoesNotExist) {
  EXPECT_EQ(Tool(kQuestion, "/nonexistent"), 0);
  EXPECT_EQ(Tool(kQuestion, "/nonexistent,[\"a\" 'b'] %x"), 0);
}

TEST(DorvFsToolTest, HelpIsNoQuestion) {
  EXPECT_EQ(Tool("--help"), 0);
  EXPECT_EQ(Tool("-h"), 0);
}

TEST(DorvFsToolTest, WrongUsageNeverAnswersOne) {
  EXPECT_EQ(Tool(), 2);
  EXPECT_EQ(Tool(kQuestion), 2);
  EXPECT_EQ(Tool("/tmp"), 2);
  EXPECT_EQ(Tool("--unknown", "/tmp"), 2);
  EXPECT_EQ(Tool(kQuestion, "/tmp", "/tmp"), 2);
  EXPECT_EQ(Tool(kQuestion, "/tmp", kQuestion, "/tmp"), 2);
}

}  // namespace
