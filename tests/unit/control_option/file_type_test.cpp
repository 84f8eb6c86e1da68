#include <dorvdl/control/option/task.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <utility>

namespace dorvdl::control::option::task {
namespace {

// In the documented order.
constexpr std::pair<bool FileType::*, int> kBits[] = {
    {&FileType::http, 0x200},      {&FileType::https, 0x400}, {&FileType::bt, 0x4},
    {&FileType::nzb, 0x2},         {&FileType::ftp, 0x800},   {&FileType::ftps, 0x10},
    {&FileType::sftp, 0x20},       {&FileType::emule, 0x80},  {&FileType::thunder, 0x1000},
    {&FileType::flashget, 0x2000}, {&FileType::qqdl, 0x4000},
};

FileType AllTypes() {
  FileType type;
  for (const auto& [member, bit] : kBits) {
    type.*member = true;
  }
  return type;
}

TEST(FileTypeTest, ANewOneHasNoType) {
  const FileType type;
  for (const auto& [member, bit] : kBits) {
    EXPECT_FALSE(type.*member) << bit;
  }
  EXPECT_EQ(type.ToTaskFlag(), 0);
}

TEST(FileTypeTest, EachTypeHasItsBit) {
  for (const auto& [member, bit] : kBits) {
    FileType type;
    type.*member = true;
    EXPECT_EQ(type.ToTaskFlag(), bit);
  }
}

TEST(FileTypeTest, TypesAddUp) {
  FileType type;
  type.http = true;
  type.nzb = true;
  EXPECT_EQ(type.ToTaskFlag(), 0x202);
  EXPECT_EQ(AllTypes().ToTaskFlag(), 0x7EB6);
}

TEST(FileTypeTest, ClearForgetsEveryType) {
  FileType type = AllTypes();
  type.Clear();
  EXPECT_EQ(type.ToTaskFlag(), 0);
}

TEST(FileTypeTest, MembersStandInTheDocumentedOrder) {
  const FileType type;
  for (std::size_t i = 1; i < std::size(kBits); ++i) {
    EXPECT_LT(&(type.*kBits[i - 1].first), &(type.*kBits[i].first)) << i;
  }
}

}  // namespace
}  // namespace dorvdl::control::option::task
