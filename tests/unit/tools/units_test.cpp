#include "rendering/units.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <limits>

namespace dorvdl::ctl {
namespace {

constexpr std::int64_t kGreatest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

TEST(UnitsTest, SizesArePowersOf1024) {
  EXPECT_EQ(Size(0), "0 B");
  EXPECT_EQ(Size(1023), "1023 B");
  EXPECT_EQ(Size(1024), "1.0 KiB");
  EXPECT_EQ(Size(1536LL * 1024 * 1024), "1.5 GiB");
  EXPECT_EQ(Size(kGreatest), "8.0 EiB");
  EXPECT_EQ(Size(-5), "-5 B");
}

TEST(UnitsTest, ASizeThatWouldRoundUpTo1024TakesTheNextUnit) {
  EXPECT_EQ(Size(1024 * 1024 - 1), "1.0 MiB");
  EXPECT_EQ(Size(1024LL * 1023), "1023.0 KiB");
}

TEST(UnitsTest, ARateIsASizePerSecond) {
  EXPECT_EQ(Rate(1536), "1.5 KiB/s");
  EXPECT_EQ(Rate(0), "-");
}

TEST(UnitsTest, DurationsHaveTheirTwoGreatestUnits) {
  EXPECT_EQ(Duration(0), "0s");
  EXPECT_EQ(Duration(59), "59s");
  EXPECT_EQ(Duration(60), "1m 0s");
  EXPECT_EQ(Duration(3599), "59m 59s");
  EXPECT_EQ(Duration(2 * 3600 + 5 * 60 + 59), "2h 5m");
  EXPECT_EQ(Duration(3 * 86400 + 4 * 3600 + 59), "3d 4h");
}

TEST(UnitsTest, TimesAreThoseOfTheTimeZone) {
  setenv("TZ", "XYZ-01:30", 1);
  tzset();
  EXPECT_EQ(LocalTime(86400), "1970-01-02 01:30:00 +0130");
  unsetenv("TZ");
  tzset();
  EXPECT_EQ(LocalTime(0), "-");
}

TEST(UnitsTest, PercentIsRoundedDown) {
  EXPECT_EQ(Percent(1, 3), 33);
  EXPECT_EQ(Percent(999, 1000), 99);
  EXPECT_EQ(Percent(1000, 1000), 100);
  EXPECT_EQ(Percent(kGreatest - 1, kGreatest), 99);
}

TEST(UnitsTest, PercentStaysWithinItsBounds) {
  EXPECT_EQ(Percent(5, 0), 0);
  EXPECT_EQ(Percent(2, 1), 100);
  EXPECT_EQ(Percent(-1, 10), 0);
  EXPECT_EQ(Percent(kLeast, kLeast), 0);
}

TEST(UnitsTest, TheBarGrowsWithThePercentage) {
  EXPECT_EQ(ProgressBar(0), "[----------]   0%");
  EXPECT_EQ(ProgressBar(59), "[#####-----]  59%");
  EXPECT_EQ(ProgressBar(100), "[##########] 100%");
}

}  // namespace
}  // namespace dorvdl::ctl
