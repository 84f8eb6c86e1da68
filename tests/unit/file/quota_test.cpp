// DORVDLQuotaCheck, in a process that is root already or has no way to become it.
#include <dorvdl/file.h>

#include <cerrno>
#include <climits>

#include "unit/file/file_test.h"

namespace test_support {
namespace {

class QuotaCheckTest : public FileTest {};

TEST_F(QuotaCheckTest, AnAdministratorIsNotAskedAbout) {
  platform_.is_admin = 1;
  platform_.quota_is_enough = 0;
  EXPECT_EQ(DORVDLQuotaCheck(1026, "/volume1", 5), 0);
  EXPECT_EQ(platform_.TakeCalls(), Calls{"VLIBGroupIsAdminGroupMemByUid(1026, 1)"});
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(QuotaCheckTest, AUserOfWhomNothingIsKnownHasNoQuota) {
  platform_.is_admin = -1;
  EXPECT_EQ(DORVDLQuotaCheck(1026, "/volume1", 5), -1);
  EXPECT_EQ(platform_.TakeCalls(), Calls{"VLIBGroupIsAdminGroupMemByUid(1026, 1)"});
  EXPECT_EQ(TakeLog(), Log{Error("Failed to check if uid 1026 is admingroup")});
}

TEST_F(QuotaCheckTest, TheQuotaServiceGetsTheArgumentsUnchanged) {
  EXPECT_EQ(DORVDLQuotaCheck(1026, "/volume1/a b", ULLONG_MAX), 0);
  EXPECT_EQ(platform_.TakeCalls(),
            (Calls{"VLIBGroupIsAdminGroupMemByUid(1026, 1)",
                   "DORVQuotaIsEnough(1026, \"/volume1/a b\", 18446744073709551615)"}));
  EXPECT_EQ(DORVDLQuotaCheck(1026, nullptr, 0), 0);
  EXPECT_EQ(platform_.TakeCalls().back(), "DORVQuotaIsEnough(1026, nullptr, 0)");
}

TEST_F(QuotaCheckTest, AnyOtherAnswerAboutAdministratorsGoesOnToTheQuotaService) {
  for (const int answer : {0, 2, -2}) {
    platform_.is_admin = answer;
    platform_.quota_is_enough = 1;
    EXPECT_EQ(DORVDLQuotaCheck(1026, "/volume1", 5), 0);
    platform_.quota_is_enough = 0;
    EXPECT_EQ(DORVDLQuotaCheck(1026, "/volume1", 5), -1);
  }
}

TEST_F(QuotaCheckTest, OnlyTheAnswerOneMeansEnough) {
  for (const int answer : {0, -1, 2}) {
    platform_.quota_is_enough = answer;
    EXPECT_EQ(DORVDLQuotaCheck(1026, "/volume1", 5), -1) << answer;
  }
}

}  // namespace
}  // namespace test_support
