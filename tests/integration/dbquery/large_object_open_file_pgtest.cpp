// Writing large objects to files that are named by a descriptor.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "integration/dbquery/large_object_test.h"

namespace dorvdbquery {
namespace {

using test_support::TakeLog;

constexpr char kOld[] = "a much longer old content";

class OpenFileTest : public LargeObjectTest {
 protected:
  ~OpenFileTest() override { close(descriptor_); }
  void Open(const std::string& name) {
    folder_.Write(name, kOld);
    descriptor_ = open(folder_.Path(name).c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_GE(descriptor_, 0);
  }

  void OpenInMemory() {
    descriptor_ = memfd_create("memory", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    ASSERT_EQ(write(descriptor_, kOld, sizeof kOld - 1), static_cast<ssize_t>(sizeof kOld - 1));
  }

  std::string Path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

  std::string Content() const {
    std::string content(100, '\0');
    content.resize(static_cast<std::size_t>(pread(descriptor_, content.data(), content.size(), 0)));
    return content;
  }

  int descriptor_ = -1;
};

TEST_F(OpenFileTest, ThatHasBeenRemovedIsWritten) {
  Open("out");
  std::filesystem::remove(folder_.Path("out"));
  folder_.Write("out (deleted)", "bystander");
  ASSERT_TRUE(session_.ClientSideLOExport(Store("new"), Path()));
  EXPECT_EQ(Content(), "new");
  EXPECT_EQ(folder_.Read("out (deleted)"), "bystander");
  EXPECT_EQ(Files(), Names{"out (deleted)"});
  std::filesystem::remove(folder_.Path("out (deleted)"));
  ASSERT_TRUE(session_.ClientSideLOExport(Store("newer"), Path()));
  EXPECT_EQ(Content(), "newer");
  EXPECT_EQ(Files(), Names{});
}

TEST_F(OpenFileTest, InMemoryIsWritten) {
  OpenInMemory();
  std::filesystem::create_symlink(Path(), folder_.Path("link"));
  for (const std::string& path :
       {Path(), "/dev/fd/" + std::to_string(descriptor_), folder_.Path("link")}) {
    ASSERT_TRUE(session_.ClientSideLOExport(Store(path), path));
    EXPECT_EQ(Content(), path);
  }
  ASSERT_TRUE(session_.ClientSideLOExport(Store(""), Path()));
  EXPECT_EQ(Content(), "");
  EXPECT_EQ(Files(), Names{"link"});
}

TEST_F(OpenFileTest, WhoseNameIsGoneIsWrittenUnderItsOtherName) {
  Open("out");
  std::filesystem::create_hard_link(folder_.Path("out"), folder_.Path("other"));
  std::filesystem::remove(folder_.Path("out"));
  folder_.Write("out (deleted)", "bystander");
  ASSERT_TRUE(session_.ClientSideLOExport(Store("new"), Path()));
  EXPECT_EQ(folder_.Read("other"), "new");
  EXPECT_EQ(folder_.Read("out (deleted)"), "bystander");
  EXPECT_EQ(Files(), (Names{"other", "out (deleted)"}));
}

TEST_F(OpenFileTest, WithANameIsReplacedThereAsAWhole) {
  Open("out");
  std::filesystem::rename(folder_.Path("out"), folder_.Path("renamed"));
  ASSERT_TRUE(session_.ClientSideLOExport(Store("new"), Path()));
  EXPECT_EQ(folder_.Read("renamed"), "new");
  EXPECT_EQ(Content(), kOld);
  EXPECT_EQ(Files(), Names{"renamed"});
}

TEST_F(OpenFileTest, IsKeptWhenThereIsNoObject) {
  OpenInMemory();
  EXPECT_FALSE(session_.ClientSideLOExport(12345, Path()));
  EXPECT_EQ(Content(), kOld);
}

TEST_F(OpenFileTest, ThatCannotBeWrittenIsReported) {
  OpenInMemory();
  ASSERT_EQ(fcntl(descriptor_, F_ADD_SEALS, F_SEAL_SHRINK), 0);
  EXPECT_FALSE(session_.ClientSideLOExport(Store("short"), Path()));
  EXPECT_EQ(TakeLog(), Lines{FileFailure("Failed to complete file [" + Path() +
                                         "]: Operation not permitted")});
  ASSERT_EQ(fcntl(descriptor_, F_ADD_SEALS, F_SEAL_WRITE), 0);
  EXPECT_FALSE(session_.ClientSideLOExport(Store("short"), Path()));
  EXPECT_EQ(TakeLog(),
            Lines{FileFailure("Failed to write file [" + Path() + "]: Operation not permitted")});
}

TEST_F(OpenFileTest, ThatIsNoRegularOneIsRefused) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  descriptor_ = ends[1];
  EXPECT_FALSE(session_.ClientSideLOExport(Store("x"), Path()));
  close(ends[0]);
  EXPECT_EQ(TakeLog(),
            Lines{FileFailure("Failed to open file [" + Path() + "]: not a regular file")});
}

}  // namespace
}  // namespace dorvdbquery
