#include "contract/platform_contract.h"

#include <dorv/cgi.h>
#include <dorv/exec.h>
#include <dorv/notification.h>
#include <dorv/quota.h>
#include <dorv/user.h>
#include <dorv/volume.h>

#include <cerrno>
#include <cstddef>
#include <vector>

namespace test_support {
namespace {

TEST_P(PlatformContractTest, AMapKeepsTheLastValueOfEachKey) {
  VLIBSZHASH* hash = VLIBCSzHashAlloc(16);
  ASSERT_NE(hash, nullptr);
  EXPECT_EQ(subject_->Contents(hash), "{}");
  EXPECT_NE(VLIBCSzHashSetValue(&hash, "%B%", "first"), -1);
  EXPECT_NE(VLIBCSzHashSetValue(&hash, "%A%", ""), -1);
  EXPECT_NE(VLIBCSzHashSetValue(&hash, "%B%", "second"), -1);
  EXPECT_EQ(subject_->Contents(hash), R"({"%A%": "", "%B%": "second"})");
  VLIBCSzHashFree(hash);
}

TEST_P(PlatformContractTest, AMapCopiesItsTexts) {
  VLIBSZHASH* hash = VLIBCSzHashAlloc(0);
  char key[] = "key";
  char value[] = "value";
  EXPECT_NE(VLIBCSzHashSetValue(&hash, key, value), -1);
  key[0] = value[0] = 'x';
  EXPECT_EQ(subject_->Contents(hash), R"({"key": "value"})");
  VLIBCSzHashFree(hash);
}

TEST_P(PlatformContractTest, AMapGrowsBeyondItsSize) {
  VLIBSZHASH* hash = VLIBCSzHashAlloc(1);
  const std::string large(100000, 'v');
  EXPECT_NE(VLIBCSzHashSetValue(&hash, "key", large.c_str()), -1);
  EXPECT_EQ(subject_->Contents(hash), "{\"key\": \"" + large + "\"}");
  VLIBCSzHashFree(hash);
}

TEST_P(PlatformContractTest, NullArgumentsLeaveMapAndHandleAsTheyWere) {
  VLIBSZHASH* hash = VLIBCSzHashAlloc(0);
  EXPECT_NE(VLIBCSzHashSetValue(&hash, "key", "value"), -1);
  VLIBSZHASH* const before = hash;
  EXPECT_EQ(VLIBCSzHashSetValue(&hash, nullptr, "value"), -1);
  EXPECT_EQ(VLIBCSzHashSetValue(&hash, "key", nullptr), -1);
  EXPECT_EQ(VLIBCSzHashSetValue(nullptr, "key", "value"), -1);
  VLIBSZHASH* none = nullptr;
  EXPECT_EQ(VLIBCSzHashSetValue(&none, "key", "value"), -1);
  EXPECT_EQ(none, nullptr);
  EXPECT_EQ(hash, before);
  EXPECT_EQ(subject_->Contents(hash), R"({"key": "value"})");
  VLIBCSzHashFree(hash);
}

TEST_P(PlatformContractTest, ReleasingNoMapIsHarmless) { VLIBCSzHashFree(nullptr); }

TEST_P(PlatformContractTest, AMapThatWasSentIsTheCallersAndAsItWas) {
  VLIBSZHASH* hash = VLIBCSzHashAlloc(0);
  EXPECT_NE(VLIBCSzHashSetValue(&hash, "key", "value"), -1);
  const std::string nobody = subject_->Nobody();
  EXPECT_EQ(DORVSendPersonalNotifiction("Event", nobody.c_str(), "Application", hash), ESRCH);
  EXPECT_EQ(subject_->Contents(hash), R"({"key": "value"})");
  VLIBCSzHashFree(hash);
}

TEST_P(PlatformContractTest, ARealNameIsWrittenWithItsZeroAndNothingBeyond) {
  const std::string user = subject_->User();
  std::vector<char> name(user.size() + 2, '#');
  EXPECT_EQ(VLIBUserRealNameGet(user.c_str(), name.data(), static_cast<int>(user.size() + 1)), 0);
  EXPECT_STREQ(name.data(), user.c_str());
  EXPECT_EQ(name.back(), '#');
}

TEST_P(PlatformContractTest, ARealNameIsTheDatabasesSpelling) {
  const std::string user = subject_->User();
  const std::string other = subject_->UserInAnotherCase();
  ASSERT_NE(other, user);
  std::vector<char> name(user.size() + 1, '#');
  EXPECT_EQ(VLIBUserRealNameGet(other.c_str(), name.data(), static_cast<int>(name.size())), 0);
  EXPECT_STREQ(name.data(), user.c_str());
}

TEST_P(PlatformContractTest, ARealNameThatDoesNotFitFails) {
  const std::string user = subject_->User();
  std::vector<char> name(user.size() + 1, '#');
  for (const int size : {static_cast<int>(user.size()), 1, 0, -1}) {
    EXPECT_NE(VLIBUserRealNameGet(user.c_str(), name.data(), size), 0) << size;
    EXPECT_EQ(name.back(), '#');
  }
}

TEST_P(PlatformContractTest, NobodyHasARealName) {
  char name[100] = {};
  EXPECT_NE(VLIBUserRealNameGet(subject_->Nobody().c_str(), name, sizeof name), 0);
}

TEST_P(PlatformContractTest, AnAdministratorIsToldFromNobody) {
  EXPECT_EQ(VLIBGroupIsAdminGroupMemByUid(subject_->Administrator(), 1), 1);
  EXPECT_EQ(VLIBGroupIsAdminGroupMemByUid(subject_->NobodysId(), 1), -1);
}

TEST_P(PlatformContractTest, AVolumeIsToldWithItsDeviceAndWithoutADiskNoQuotaIsSet) {
  DorvVolumeInfo volume = {};
  EXPECT_EQ(VolumePathParseEx("/proc/self", &volume), 0);
  EXPECT_EQ(volume.path[0], '/');
  EXPECT_STRNE(volume.device, "");
  EXPECT_EQ(DORVQuotaIsEnough(0, "/proc/self", 1), 1);
}

TEST_P(PlatformContractTest, OfAPathThatDoesNotExistNeitherVolumeNorQuotaIsTold) {
  const std::string path = subject_->MissingPath();
  DorvVolumeInfo volume = {};
  EXPECT_EQ(VolumePathParseEx(path.c_str(), &volume), -1);
  EXPECT_EQ(DORVQuotaIsEnough(0, path.c_str(), 0), -1);
}

TEST_P(PlatformContractTest, AProgramThatSucceedsIsToldFromOneThatCannotBeRun) {
  EXPECT_EQ(VLIBCExec("/bin/true", nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(VLIBCExecl("/bin/true", 0, nullptr), 0);
  const std::string missing = subject_->MissingPath();
  EXPECT_EQ(VLIBCExec(missing.c_str(), nullptr, nullptr, nullptr, nullptr), -1);
  EXPECT_EQ(VLIBCExecl(missing.c_str(), 0, nullptr), -1);
}

TEST_P(PlatformContractTest, TextsAreThoseOfLoadedSections) {
  const std::string folder = subject_->FolderWithTexts({{"key", "text"}});
  DorvCgiContext context = {};
  ASSERT_NE(DorvCgiInit(folder.c_str(), &context), 0);
  EXPECT_STREQ(DorvCgiGetText(&context, "key", "default"), "default");
  ASSERT_NE(DorvCgiLoadText(&context, "section", 0), 0);
  EXPECT_STREQ(DorvCgiGetText(&context, "key", "default"), "text");
  DorvCgiFree(&context);
}

TEST_P(PlatformContractTest, TheDefaultComesBackAsItIs) {
  const std::string folder = subject_->FolderWithTexts({{"key", "text"}});
  DorvCgiContext context = {};
  ASSERT_NE(DorvCgiInit(folder.c_str(), &context), 0);
  ASSERT_NE(DorvCgiLoadText(&context, "section", 0), 0);
  const char def[] = "default";
  EXPECT_EQ(DorvCgiGetText(&context, "other", def), def);
  EXPECT_EQ(DorvCgiGetText(&context, "other", nullptr), nullptr);
  DorvCgiFree(&context);
}

TEST_P(PlatformContractTest, ASectionThatIsNotThereLoadsNothing) {
  const std::string folder = subject_->FolderWithTexts({{"key", "text"}});
  DorvCgiContext context = {};
  ASSERT_NE(DorvCgiInit(folder.c_str(), &context), 0);
  EXPECT_EQ(DorvCgiLoadText(&context, subject_->UnknownSection().c_str(), 0), 0);
  EXPECT_EQ(DorvCgiGetText(&context, "key", nullptr), nullptr);
  DorvCgiFree(&context);
}

TEST_P(PlatformContractTest, WithoutTextsTheLoaderStaysEmpty) {
  DorvCgiContext context = {};
  EXPECT_EQ(DorvCgiInit(subject_->FolderWithoutTexts().c_str(), &context), 0);
  EXPECT_EQ(context.texts, nullptr);
  EXPECT_EQ(DorvCgiLoadText(&context, "section", 0), 0);
  EXPECT_EQ(DorvCgiGetText(&context, "key", nullptr), nullptr);
  DorvCgiFree(&context);
}

TEST_P(PlatformContractTest, ReleasingALoaderZeroesIt) {
  const std::string folder = subject_->FolderWithTexts({{"key", "text"}});
  DorvCgiContext context = {};
  ASSERT_NE(DorvCgiInit(folder.c_str(), &context), 0);
  EXPECT_NE(context.texts, nullptr);
  for (int time = 0; time < 2; ++time) {
    DorvCgiFree(&context);
    EXPECT_EQ(context.texts, nullptr);
  }
}

TEST_P(PlatformContractTest, ALoaderCanBeUsedAgainAfterItsRelease) {
  const std::string folder = subject_->FolderWithTexts({{"key", "text"}});
  DorvCgiContext context = {};
  for (int time = 0; time < 2; ++time) {
    ASSERT_NE(DorvCgiInit(folder.c_str(), &context), 0);
    EXPECT_EQ(DorvCgiGetText(&context, "key", nullptr), nullptr);
    ASSERT_NE(DorvCgiLoadText(&context, "section", 0), 0);
    EXPECT_STREQ(DorvCgiGetText(&context, "key", nullptr), "text");
    DorvCgiFree(&context);
  }
}

}  // namespace
}  // namespace test_support
