// Shared folders below the real root of the links, with accounts of the test's own.
#include <dorv/share_path.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "support/mount_namespace.h"

namespace dorvdl::common {
namespace {

namespace fs = std::filesystem;

constexpr char kLinks[] = "/var/services/share/";
constexpr uid_t kAlice = 2001;
constexpr gid_t kAlices = 2001;
constexpr gid_t kMedia = 3000;  // Bob's second group

// The shared folder "media" on /var/volume1, which all may read, with the folder "films".
class SharePathTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    test_support::EnterMountNamespace();
    test_support::MakeExtendable("/var");
    fs::create_directories(kLinks);
  }

  SharePathTest() {
    test_support::ReplaceFile("/etc/passwd",
                              "root:x:0:0::/root:/bin/sh\n"
                              "alice:x:2001:2001::/:/bin/sh\n"
                              "bob:x:2002:2002::/:/bin/sh\n"
                              "admin:x:0:0::/:/bin/sh\n");
    test_support::ReplaceFile("/etc/group", "alice:x:2001:\nbob:x:2002:\nmedia:x:3000:bob\n");
    fs::create_directories("/var/volume1/media/films");
    fs::create_directory_symlink("/var/volume1/media", kLinks + std::string("media"));
  }
  ~SharePathTest() override {
    fs::remove_all("/var/volume1");
    fs::remove_all(kLinks);
    fs::create_directory(kLinks);
  }

  static void Give(const std::string& path, mode_t mode, uid_t owner, gid_t group) {
    ASSERT_EQ(chown(path.c_str(), owner, group), 0);
    ASSERT_EQ(chmod(path.c_str(), mode), 0);
  }
};

constexpr char kMediaFolder[] = "/var/volume1/media";
constexpr char kFilms[] = "/var/volume1/media/films";

TEST_F(SharePathTest, GivesTheRealPath) {
  EXPECT_EQ(GetRealPathFromSharePath("media/films", "alice"), kFilms);
  EXPECT_EQ(GetRealPathFromSharePath("/media/films", "alice"), kFilms);
  EXPECT_EQ(GetRealPathFromSharePath("media//films/", "alice"), kFilms);
  EXPECT_EQ(GetRealPathFromSharePath("media", "alice"), kMediaFolder);
}

TEST_F(SharePathTest, AShareMayBeTheWholeMachine) {
  fs::create_directory_symlink("/", kLinks + std::string("all"));
  EXPECT_EQ(GetRealPathFromSharePath("all/var/volume1", "alice"), "/var/volume1");
  EXPECT_EQ(GetRealPathFromSharePath("all", "alice"), "/");
}

TEST_F(SharePathTest, UnknownNamesHaveNoPath) {
  EXPECT_EQ(GetRealPathFromSharePath("music", "alice"), "");
  EXPECT_EQ(GetRealPathFromSharePath("media/none", "alice"), "");
  EXPECT_EQ(GetRealPathFromSharePath("media/films", "carol"), "");
  EXPECT_EQ(GetRealPathFromSharePath("media/films", ""), "");
  EXPECT_EQ(GetRealPathFromSharePath("", "alice"), "");
  EXPECT_EQ(GetRealPathFromSharePath("//", "alice"), "");
}

TEST_F(SharePathTest, DotsAreRefusedAlsoWhereTheyWouldStayInside) {
  EXPECT_EQ(GetRealPathFromSharePath("media/films/..", "root"), "");
  EXPECT_EQ(GetRealPathFromSharePath("media/./films", "root"), "");
  EXPECT_EQ(GetRealPathFromSharePath("../share/media", "root"), "");
  EXPECT_EQ(GetRealPathFromSharePath(".", "root"), "");
  fs::create_directory(kFilms + std::string("/..."));
  EXPECT_EQ(GetRealPathFromSharePath("media/films/...", "root"), kFilms + std::string("/..."));
}

TEST_F(SharePathTest, AnEmbeddedNulIsRefused) {
  EXPECT_EQ(GetRealPathFromSharePath(std::string("media\0x", 7), "alice"), "");
  EXPECT_EQ(GetRealPathFromSharePath("media", std::string("alice\0x", 7)), "");
}

TEST_F(SharePathTest, LinksAreFollowedInsideTheShareOnly) {
  fs::create_directories("/var/volume1/media2");
  fs::create_directory_symlink("films", "/var/volume1/media/inside");
  fs::create_directory_symlink("/var/volume1/media2", "/var/volume1/media/beside");
  fs::create_directory_symlink("..", "/var/volume1/media/above");
  fs::create_directory_symlink("/etc", "/var/volume1/media/outside");
  EXPECT_EQ(GetRealPathFromSharePath("media/inside", "alice"), kFilms);
  EXPECT_EQ(GetRealPathFromSharePath("media/above/media/films", "alice"), kFilms);
  EXPECT_EQ(GetRealPathFromSharePath("media/beside", "root"), "");
  EXPECT_EQ(GetRealPathFromSharePath("media/above", "root"), "");
  EXPECT_EQ(GetRealPathFromSharePath("media/outside", "root"), "");
}

TEST_F(SharePathTest, AFileIsNoFolder) {
  std::ofstream(kFilms + std::string("/film.mkv")) << "x";
  Give(kFilms + std::string("/film.mkv"), 0777, kAlice, kAlices);
  EXPECT_EQ(GetRealPathFromSharePath("media/films/film.mkv", "alice"), "");
  EXPECT_EQ(GetRealPathFromSharePath("media/films/film.mkv", "root"), "");
}

TEST_F(SharePathTest, TheFolderItselfNeedsReadAndSearchPermission) {
  for (const mode_t mode : {0700, 0701, 0704, 0703}) {
    Give(kFilms, mode, 0, 0);
    EXPECT_EQ(GetRealPathFromSharePath("media/films", "alice"), "") << std::oct << mode;
  }
  Give(kFilms, 0705, 0, 0);
  EXPECT_EQ(GetRealPathFromSharePath("media/films", "alice"), kFilms);
}

TEST_F(SharePathTest, FoldersOnTheWayNeedSearchPermission) {
  Give(kMediaFolder, 0701, 0, 0);
  EXPECT_EQ(GetRealPathFromSharePath("media/films", "alice"), kFilms);
  EXPECT_EQ(GetRealPathFromSharePath("media", "alice"), "");
  Give(kMediaFolder, 0706, 0, 0);
  EXPECT_EQ(GetRealPathFromSharePath("media/films", "alice"), "");
  Give(kMediaFolder, 0755, 0, 0);
  Give("/var/volume1", 0700, 0, 0);
  EXPECT_EQ(GetRealPathFromSharePath("media/films", "alice"), "");
}

TEST_F(SharePathTest, TheFolderAtTheTopCountsToo) {
  struct stat before {};
  ASSERT_EQ(stat("/var", &before), 0);
  ASSERT_EQ(chmod("/var", 0700), 0);
  EXPECT_EQ(GetRealPathFromSharePath("media/films", "alice"), "");
  ASSERT_EQ(chmod("/var", before.st_mode & 07777U), 0);
}

TEST_F(SharePathTest, TheOwnersBitsDecideForTheOwner) {
  Give(kFilms, 0500, kAlice, 0);
  EXPECT_EQ(GetRealPathFromSharePath("media/films", "alice"), kFilms);
  Give(kFilms, 0277, kAlice, kAlices);
  EXPECT_EQ(GetRealPathFromSharePath("media/films", "alice"), "");
}

TEST_F(SharePathTest, TheGroupsBitsDecideForItsMembers) {
  Give(kFilms, 0050, 0, kMedia);
  EXPECT_EQ(GetRealPathFromSharePath("media/films", "bob"), kFilms);
  EXPECT_EQ(GetRealPathFromSharePath("media/films", "alice"), "");
  Give(kFilms, 0050, 0, kAlices);
  EXPECT_EQ(GetRealPathFromSharePath("media/films", "alice"), kFilms);
  EXPECT_EQ(GetRealPathFromSharePath("media/films", "bob"), "");
  Give(kFilms, 0705, 0, kMedia);
  EXPECT_EQ(GetRealPathFromSharePath("media/films", "bob"), "");
}

TEST_F(SharePathTest, RootNeedsNoPermission) {
  Give(kFilms, 0, kAlice, kAlices);
  Give(kMediaFolder, 0, kAlice, kAlices);
  EXPECT_EQ(GetRealPathFromSharePath("media/films", "root"), kFilms);
  EXPECT_EQ(GetRealPathFromSharePath("media/films", "admin"), kFilms);
}

TEST_F(SharePathTest, AnAccountWithManyGroupsKeepsItsLastOne) {
  std::string groups = "bob:x:2002:\n";
  for (int id = 4000; id < 4100; ++id) {
    groups += "g" + std::to_string(id) + ":x:" + std::to_string(id) + ":bob\n";
  }
  test_support::ReplaceFile("/etc/group", groups);
  Give(kFilms, 0050, 0, 4099);
  EXPECT_EQ(GetRealPathFromSharePath("media/films", "bob"), kFilms);
}

TEST_F(SharePathTest, AnAccountEntryOfAnyLengthIsRead) {
  test_support::ReplaceFile("/etc/passwd",
                            "dora:x:2003:2003:" + std::string(5000, 'd') + ":/:/bin/sh\n");
  EXPECT_EQ(GetRealPathFromSharePath("media/films", "dora"), kFilms);
}

}  // namespace
}  // namespace dorvdl::common
