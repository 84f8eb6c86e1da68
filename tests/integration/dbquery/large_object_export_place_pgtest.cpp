// Where an export's file ends up: in the folder that its path leads to, whoever changes the path.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <functional>
#include <thread>

#include "integration/dbquery/large_object_test.h"
#include "support/child.h"
#include "support/identity.h"

namespace dorvdbquery {
namespace {

using test_support::TakeLog;

constexpr uid_t kOther = 65534;

class ExportPlaceTest : public LargeObjectTest {
 protected:
  // "own", which belongs to the caller, and "theirs", which belongs to another user.
  ExportPlaceTest() {
    chmod(folder_.Path("").c_str(), 0711);
    MakeFolder("own");
    MakeFolder("theirs", kOther);
  }

  void MakeFolder(const std::string& name, uid_t owner = 0) const {
    std::filesystem::create_directory(folder_.Path(name));
    Give(name, owner);
  }

  void MakeLink(const std::string& target, const std::string& name, uid_t owner) const {
    std::filesystem::create_symlink(target, folder_.Path(name));
    Give(name, owner);
  }

  void Give(const std::string& name, uid_t owner) const {
    EXPECT_EQ(lchown(folder_.Path(name).c_str(), owner, owner), 0);
  }

  bool Export(unsigned oid, const std::string& name) {
    return session_.ClientSideLOExport(oid, folder_.Path(name));
  }

  bool Refuses(unsigned oid, const std::string& name) {
    EXPECT_FALSE(Export(oid, name)) << name;
    return TakeLog() == Lines{FileFailure("Failed to create file [" + folder_.Path(name) +
                                          "]: Permission denied")};
  }

  // Exports to the path while another user changes it again and again, until that has succeeded
  // many times; false when it does not. Failures are fast, and come in rows.
  bool ExportWhileChanging(const std::string& name, const std::function<void()>& change) {
    const unsigned oid = Store("new");
    std::atomic<bool> over{false};
    std::thread other([&] {
      // This thread only: the C library's call would switch all of them.
      EXPECT_EQ(syscall(SYS_setresuid, kOther, kOther, kOther), 0);
      while (!over) {
        change();
      }
    });
    int successes = 0;
    for (int time = 0; time < 500000 && successes < 30; ++time) {
      successes += Export(oid, name) ? 1 : 0;
    }
    over = true;
    other.join();
    TakeLog();
    return successes == 30;
  }
};

TEST_F(ExportPlaceTest, AFolderThatIsExchangedForALinkLeadsNowhereElse) {
  folder_.Write("own/out", "kept");
  MakeFolder("theirs/folder", kOther);
  MakeLink("../own", "theirs/link", kOther);
  const std::string folder = folder_.Path("theirs/folder");
  const std::string link = folder_.Path("theirs/link");
  const auto exchange = [&] {
    EXPECT_EQ(renameat2(AT_FDCWD, folder.c_str(), AT_FDCWD, link.c_str(), RENAME_EXCHANGE), 0);
  };
  EXPECT_TRUE(ExportWhileChanging("theirs/folder/out", exchange));
  EXPECT_EQ(folder_.Read("own/out"), "kept");
  EXPECT_EQ(Files("own"), Names{"out"});
  EXPECT_EQ(Files(std::filesystem::is_symlink(link) ? "theirs/folder" : "theirs/link"),
            Names{"out"});
}

TEST_F(ExportPlaceTest, AFileThatIsExchangedForALinkLeadsNowhereElse) {
  folder_.Write("own/out", "kept");
  const std::string out = folder_.Path("theirs/out");
  const std::string next = folder_.Path("theirs/next");
  const auto exchange = [&] {
    EXPECT_EQ(symlink("../own/out", next.c_str()), 0);
    EXPECT_EQ(rename(next.c_str(), out.c_str()), 0);
    EXPECT_EQ(mknod(next.c_str(), S_IFREG | 0600, 0), 0);
    EXPECT_EQ(rename(next.c_str(), out.c_str()), 0);
  };
  EXPECT_TRUE(ExportWhileChanging("theirs/out", exchange));
  EXPECT_EQ(folder_.Read("own/out"), "kept");
  EXPECT_EQ(Files("own"), Names{"out"});
  EXPECT_EQ(Files("theirs"), Names{"out"});
}

TEST_F(ExportPlaceTest, AFolderThatIsMovedOnTheWayLeadsBackToWhereItWas) {
  MakeFolder("shared");
  chmod(folder_.Path("shared").c_str(), 01777);
  folder_.Write("shared/out", "kept");
  MakeFolder("theirs/folder", kOther);
  const std::string here = folder_.Path("theirs/folder");
  const std::string there = folder_.Path("shared/folder");
  const auto move = [&] {
    EXPECT_EQ(rename(here.c_str(), there.c_str()), 0);
    EXPECT_EQ(rename(there.c_str(), here.c_str()), 0);
  };
  EXPECT_TRUE(ExportWhileChanging("theirs/folder/../out", move));
  EXPECT_EQ(folder_.Read("shared/out"), "kept");
  EXPECT_EQ(Files("theirs"), (Names{"folder", "out"}));
}

TEST_F(ExportPlaceTest, AnotherUsersLinkIsFollowedIntoTheirOwnFoldersOnly) {
  const unsigned oid = Store("new");
  folder_.Write("own/out", "kept");
  MakeFolder("theirs/folder", kOther);
  folder_.Write("theirs/folder/out", "old");
  MakeLink(folder_.Path("own"), "theirs/to_own_folder", kOther);
  MakeLink("../own/out", "theirs/to_own_file", kOther);
  MakeLink("folder", "theirs/to_their_folder", kOther);
  MakeLink("folder/out", "theirs/to_their_file", kOther);
  EXPECT_TRUE(Refuses(oid, "theirs/to_own_folder/out"));
  EXPECT_TRUE(Refuses(oid, "theirs/to_own_folder/new"));
  EXPECT_TRUE(Refuses(oid, "theirs/to_own_file"));
  EXPECT_EQ(folder_.Read("own/out"), "kept");
  EXPECT_EQ(Files("own"), Names{"out"});
  EXPECT_TRUE(Export(oid, "theirs/to_their_folder/new"));
  EXPECT_TRUE(Export(oid, "theirs/to_their_file"));
  EXPECT_EQ(folder_.Read("theirs/folder/out"), "new");
  EXPECT_EQ(Files("theirs/folder"), (Names{"new", "out"}));
}

TEST_F(ExportPlaceTest, LinksOfTwoOtherUsersLeadToNeither) {
  MakeLink("folder", "theirs/link", kOther);
  MakeFolder("theirs/folder", kOther);
  MakeLink("theirs/link", "link", kOther - 1);
  EXPECT_TRUE(Refuses(Store("x"), "link/out"));
  Give("theirs/folder", kOther - 1);
  EXPECT_TRUE(Refuses(Store("x"), "link/out"));
  EXPECT_EQ(Files("theirs/folder"), Names{});
}

TEST_F(ExportPlaceTest, AnotherUsersLinkToAnOpenFileIsNotFollowed) {
  const int descriptor = open(folder_.Path("own").c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  ASSERT_GE(descriptor, 0);
  MakeLink("/proc/self/fd/" + std::to_string(descriptor), "theirs/link", kOther);
  EXPECT_TRUE(Refuses(Store("x"), "theirs/link"));
  EXPECT_EQ(lseek(descriptor, 0, SEEK_END), 0);
  EXPECT_EQ(fchown(descriptor, kOther, kOther), 0);
  EXPECT_TRUE(Export(Store("x"), "theirs/link"));
  EXPECT_EQ(lseek(descriptor, 0, SEEK_END), 1);
  close(descriptor);
}

TEST_F(ExportPlaceTest, ASecondNameOfALinkIsTrustedInTheCallersOwnFolderOnly) {
  const unsigned oid = Store("new");
  MakeLink(folder_.Path("own"), "link", 0);
  std::filesystem::create_hard_link(folder_.Path("link"), folder_.Path("theirs/link"));
  EXPECT_TRUE(Refuses(oid, "theirs/link/out"));
  EXPECT_TRUE(Export(oid, "link/out"));
  chmod(folder_.Path("").c_str(), 01777);
  EXPECT_TRUE(Refuses(oid, "link/out"));
  std::filesystem::remove(folder_.Path("theirs/link"));
  EXPECT_TRUE(Export(oid, "link/out"));
}

TEST_F(ExportPlaceTest, RootAndTheCallerAreTrusted) {
  const unsigned oid = Store("new");
  chmod(folder_.Path("own").c_str(), 0777);
  MakeLink("own", "root", 0);
  MakeLink("own", "caller", kOther);
  MakeLink("own", "other", kOther - 1);
  test_support::RunInChild([&] {
    session_ = Connect();
    test_support::BecomeIds({0, kOther, 0}, {0, kOther, 0});
    EXPECT_TRUE(Export(oid, "root/a"));
    EXPECT_TRUE(Export(oid, "caller/b"));
    EXPECT_FALSE(Export(oid, "other/c"));
    return std::string();
  });
  EXPECT_EQ(Files("own"), (Names{"a", "b"}));
}

TEST_F(ExportPlaceTest, AFolderThatIsMovedMeanwhileGetsTheFile) {
  const unsigned oid = Store("new");
  const auto move = [this] {
    std::filesystem::rename(folder_.Path("theirs"), folder_.Path("moved"));
    MakeLink("own", "theirs", kOther);
  };
  EXPECT_TRUE(Interrupt([&] { return Export(oid, "theirs/out"); }, move));
  EXPECT_EQ(folder_.Read("moved/out"), "new");
  EXPECT_EQ(Files("own"), Names{});
}

TEST_F(ExportPlaceTest, AFolderThatIsMovedMeanwhileIsLeftAsItWasOnFailure) {
  EXPECT_FALSE(
      Interrupt([&] { return Export(12345, "theirs/out"); },
                [&] { std::filesystem::rename(folder_.Path("theirs"), folder_.Path("moved")); }));
  EXPECT_EQ(Files("moved"), Names{});
}

TEST_F(ExportPlaceTest, WhatIsNoLongerARegularFileIsNotReplaced) {
  const unsigned oid = Store("new");
  folder_.Write("own/out", "old");
  const auto exchange = [this] {
    std::filesystem::remove(folder_.Path("own/out"));
    folder_.MakeFifo("own/out");
  };
  EXPECT_FALSE(Interrupt([&] { return Export(oid, "own/out"); }, exchange));
  EXPECT_EQ(TakeLog(), Lines{FileFailure("Failed to complete file [" + folder_.Path("own/out") +
                                         "]: File exists")});
  EXPECT_TRUE(std::filesystem::is_fifo(folder_.Path("own/out")));
  EXPECT_EQ(Files("own"), Names{"out"});
}

TEST_F(ExportPlaceTest, ThePathIsReadAsTheKernelDoes) {
  const unsigned oid = Store("new");
  MakeFolder("own/folder");
  MakeFolder("own/folder/inner");
  folder_.Write("own/file", "old");
  MakeLink("own//folder/inner/", "inner", 0);
  MakeLink(folder_.Path("file2"), "file1", 0);
  MakeLink("own/folder/../file", "file2", 0);
  const int descriptor = open(folder_.Path("own/folder").c_str(), O_PATH | O_CLOEXEC);
  const std::string opened = "/proc/self/fd/" + std::to_string(descriptor);
  EXPECT_TRUE(Export(oid, "inner/a"));
  EXPECT_TRUE(Export(oid, "inner/../b"));
  EXPECT_TRUE(Export(oid, "//own/./folder/.././c"));
  EXPECT_TRUE(Export(oid, "file1"));
  EXPECT_TRUE(session_.ClientSideLOExport(oid, "/../" + folder_.Path("d")));
  EXPECT_TRUE(session_.ClientSideLOExport(oid, opened + "/e"));
  EXPECT_TRUE(session_.ClientSideLOExport(oid, opened + "/../f"));
  test_support::RunInChild([&] {
    EXPECT_EQ(chdir(folder_.Path("own/folder").c_str()), 0);
    session_ = Connect();
    EXPECT_TRUE(session_.ClientSideLOExport(oid, "inner/../../g"));
    EXPECT_TRUE(session_.ClientSideLOExport(oid, "../h"));
    EXPECT_TRUE(session_.ClientSideLOExport(oid, "../../own/folder/inner/../../j"));
    EXPECT_FALSE(session_.ClientSideLOExport(oid, "../file/../k"));
    EXPECT_TRUE(session_.ClientSideLOExport(oid, "/proc/self/cwd/i"));
    return std::string();
  });
  close(descriptor);
  EXPECT_EQ(Files("own/folder/inner"), Names{"a"});
  EXPECT_EQ(Files("own/folder"), (Names{"b", "e", "i", "inner"}));
  EXPECT_EQ(Files("own"), (Names{"c", "f", "file", "folder", "g", "h", "j"}));
  EXPECT_EQ(folder_.Read("own/file"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(folder_.Path("file1")));
  EXPECT_EQ(Files(), (Names{"d", "file1", "file2", "inner", "own", "theirs"}));
}

TEST_F(ExportPlaceTest, LinksThatLeadInACircleAreRefused) {
  MakeLink("two", "one", 0);
  MakeLink("one", "two", 0);
  EXPECT_FALSE(Export(Store("x"), "one"));
  EXPECT_FALSE(Export(Store("x"), "one/out"));
  EXPECT_EQ(TakeLog().size(), 2U);
}

}  // namespace
}  // namespace dorvdbquery
