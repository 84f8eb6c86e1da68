// Quotas as the system could answer, for a volume that names a device of the test's own.
#include <dorv/exec.h>
#include <dorv/quota.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/quota.h>

#include <cerrno>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <limits>
#include <string>

#include "support/identity.h"
#include "support/mount_namespace.h"

namespace {

// What the system answers, and what it was asked.
dqblk answer{};
int answer_error = 0;
std::string asked;

}  // namespace

extern "C" __attribute__((visibility("default"))) int quotactl(int command, const char* device,
                                                               int id, caddr_t to) noexcept {
  EXPECT_EQ(command, static_cast<int>(QCMD(Q_GETQUOTA, USRQUOTA)));
  asked = device + (" " + std::to_string(static_cast<uid_t>(id)));
  if (answer_error != 0) {
    errno = answer_error;
    return -1;
  }
  *reinterpret_cast<dqblk*>(to) = answer;
  return 0;
}

namespace test_support {
namespace {

constexpr uid_t kAlice = 2001;
constexpr char kVolume[] = "/mnt/volume";
constexpr char kOther[] = "/mnt/other";
constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t kKibibyte = 1024;

class QuotaTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    EnterMountNamespace();
    MountTmpfs("/mnt", 1048576);
    std::filesystem::create_directory(kVolume);
    std::filesystem::create_directory(kOther);
    ASSERT_EQ(mount("/dev/volume", kVolume, "tmpfs", 0, "size=65536"), 0);
    std::filesystem::create_directory(kVolume + std::string("/folder"));
  }

  QuotaTest() {
    answer = {};
    answer_error = 0;
    asked.clear();
  }

  static int Ask(unsigned long long bytes, const std::string& path = kVolume) {
    return DORVQuotaIsEnough(kAlice, path.c_str(), bytes);
  }
};

TEST_F(QuotaTest, AsksForTheUserAtTheDeviceOfTheVolume) {
  EXPECT_EQ(DORVQuotaIsEnough(kAlice, "/mnt/volume/folder", 1), 1);
  EXPECT_EQ(asked, "/dev/volume 2001");
  EXPECT_EQ(DORVQuotaIsEnough(4000000000U, kVolume, 1), 1);
  EXPECT_EQ(asked, "/dev/volume 4000000000");
}

TEST_F(QuotaTest, WithoutLimitsEverythingFits) {
  answer.dqb_curspace = kMost;
  EXPECT_EQ(Ask(0), 1);
  EXPECT_EQ(Ask(kMost), 1);
}

TEST_F(QuotaTest, TheHardLimitCanBeReachedButNotExceeded) {
  answer.dqb_bhardlimit = 10;
  answer.dqb_curspace = 4 * kKibibyte;
  EXPECT_EQ(Ask(0), 1);
  EXPECT_EQ(Ask(6 * kKibibyte), 1);
  EXPECT_EQ(Ask(6 * kKibibyte + 1), 0);
  EXPECT_EQ(Ask(kMost), 0);
}

TEST_F(QuotaTest, NothingFitsAboveTheHardLimit) {
  answer.dqb_bhardlimit = 10;
  answer.dqb_curspace = 10 * kKibibyte;
  EXPECT_EQ(Ask(0), 1);
  EXPECT_EQ(Ask(1), 0);
  answer.dqb_curspace = 10 * kKibibyte + 1;
  EXPECT_EQ(Ask(0), 0);
  EXPECT_EQ(Ask(kMost), 0);
}

TEST_F(QuotaTest, TheSoftLimitCanBeExceededWhileItsTimeLasts) {
  answer.dqb_bsoftlimit = 10;
  answer.dqb_curspace = 4 * kKibibyte;
  EXPECT_EQ(Ask(7 * kKibibyte), 1);
  answer.dqb_curspace = 11 * kKibibyte;
  answer.dqb_btime = static_cast<std::uint64_t>(std::time(nullptr)) + 3600;
  EXPECT_EQ(Ask(7 * kKibibyte), 1);
}

TEST_F(QuotaTest, TheSoftLimitHoldsWhenItsTimeIsUp) {
  answer.dqb_bsoftlimit = 10;
  answer.dqb_curspace = 11 * kKibibyte;
  for (const std::uint64_t time :
       {std::uint64_t{1}, static_cast<std::uint64_t>(std::time(nullptr))}) {
    answer.dqb_btime = time;
    EXPECT_EQ(Ask(1), 0);
    EXPECT_EQ(Ask(kMost), 0);
  }
  answer.dqb_curspace = 4 * kKibibyte;
  EXPECT_EQ(Ask(6 * kKibibyte), 1);
  EXPECT_EQ(Ask(6 * kKibibyte + 1), 0);
}

TEST_F(QuotaTest, TheHardLimitHoldsWhileTheSoftOnesTimeLasts) {
  answer.dqb_bsoftlimit = 10;
  answer.dqb_bhardlimit = 12;
  answer.dqb_curspace = 11 * kKibibyte;
  answer.dqb_btime = static_cast<std::uint64_t>(std::time(nullptr)) + 3600;
  EXPECT_EQ(Ask(kKibibyte), 1);
  EXPECT_EQ(Ask(kKibibyte + 1), 0);
}

TEST_F(QuotaTest, LimitsOfAnySizeAreUnderstood) {
  for (const std::uint64_t blocks : {kMost / kKibibyte, kMost / kKibibyte + 1, kMost}) {
    answer.dqb_bhardlimit = blocks;
    EXPECT_EQ(Ask(kMost / kKibibyte * kKibibyte), 1) << blocks;
    answer.dqb_curspace = kKibibyte;
    EXPECT_EQ(Ask(kMost / kKibibyte * kKibibyte), 0) << blocks;
    answer.dqb_curspace = 0;
  }
}

TEST_F(QuotaTest, TheNumberOfFilesIsNoMatterOfSpace) {
  answer.dqb_ihardlimit = 1;
  answer.dqb_curinodes = 2;
  EXPECT_EQ(Ask(kMost), 1);
}

TEST_F(QuotaTest, VolumesWithoutQuotasAreEnough) {
  for (const int error : {ESRCH, EINVAL, EOPNOTSUPP, ENODEV, ENOTBLK, ENOSYS}) {
    answer_error = error;
    EXPECT_EQ(Ask(kMost), 1) << error;
  }
}

TEST_F(QuotaTest, AVolumeWithoutADeviceIsNotAskedFor) {
  answer_error = EPERM;
  EXPECT_EQ(Ask(kMost, "/mnt"), 1);
  for (const char* const source : {"tank/data", "//server/share", "server:/export", "none"}) {
    ASSERT_EQ(mount(source, kOther, "tmpfs", 0, "size=65536"), 0);
    EXPECT_EQ(Ask(kMost, kOther), 1) << source;
    umount(kOther);
  }
  EXPECT_EQ(asked, "");
}

// Pools and folders of the network can be called like a file that there is not.
TEST_F(QuotaTest, AVolumeThatIsNotOnABlockDeviceHasNoQuotas) {
  answer_error = ENOENT;
  EXPECT_EQ(Ask(kMost), 1);
}

// A file system on a block device called /mnt/disk.
class DiskQuotaTest : public QuotaTest {
 protected:
  void SetUp() override {
    const char* const script =
        "truncate -s 512K /mnt/image && /usr/sbin/mkfs.ext4 -q -F -O ^has_journal /mnt/image &&"
        "loop=$(/usr/sbin/losetup --find --show /mnt/image) && cp -a $loop /mnt/disk &&"
        "mount /mnt/disk /mnt/other && /usr/sbin/losetup --detach $loop";
    if (VLIBCExec("/bin/sh", "-c", script, nullptr, nullptr) != 0) {
      GTEST_SKIP() << "there are no loop devices here";
    }
  }
  ~DiskQuotaTest() override {
    umount(kOther);
    std::filesystem::remove("/mnt/disk");
    std::filesystem::remove("/mnt/image");
  }
};

TEST_F(DiskQuotaTest, AUserWhomTheFileSystemDoesNotKnowHasNoLimit) {
  for (const int error : {ENOENT, ESRCH}) {
    answer_error = error;
    EXPECT_EQ(Ask(kMost, kOther), 1) << error;
  }
  EXPECT_EQ(asked, "/mnt/disk 2001");
}

TEST_F(DiskQuotaTest, WithoutTheFileOfTheDeviceItIsNotEnough) {
  answer_error = ENOENT;
  std::filesystem::remove("/mnt/disk");
  EXPECT_EQ(Ask(0, kOther), -1);
}

TEST_F(QuotaTest, WithoutAnAnswerItIsNotEnough) {
  for (const int error : {EPERM, EACCES, EFAULT, EIO, ENOMEM}) {
    answer_error = error;
    EXPECT_EQ(Ask(0), -1) << error;
  }
}

TEST_F(QuotaTest, APathThatDoesNotExistHasNoAnswer) {
  EXPECT_EQ(Ask(0, "/mnt/volume/none"), -1);
  EXPECT_EQ(Ask(0, ""), -1);
  EXPECT_EQ(Ask(0, std::string(10000, 'p')), -1);
  EXPECT_EQ(asked, "");
}

TEST_F(QuotaTest, SwitchesNoIds) {
  TakeIdCalls();
  EXPECT_EQ(Ask(1), 1);
  EXPECT_TRUE(TakeIdCalls().empty());
}

}  // namespace
}  // namespace test_support
