#include <dorv/hash.h>
#include <gmock/gmock.h>
#include <sys/resource.h>

#include <string>

#include "hash_map.h"
#include "support/child.h"

namespace test_support {
namespace {

using testing::ElementsAre;
using testing::Pair;

class HashTest : public testing::Test {
 protected:
  ~HashTest() override { VLIBCSzHashFree(hash_); }

  VLIBSZHASH* hash_ = VLIBCSzHashAlloc(0);
};

TEST_F(HashTest, TheSizeIsAHint) {
  for (const int size : {-2147483647, -1, 1, 2147483647}) {
    VLIBSZHASH* hash = VLIBCSzHashAlloc(size);
    EXPECT_EQ(VLIBCSzHashSetValue(&hash, "%KEY%", std::string(10000, 'v').c_str()), 0);
    VLIBCSzHashFree(hash);
  }
}

TEST_F(HashTest, NullArgumentsFailAndChangeNothing) {
  ASSERT_EQ(VLIBCSzHashSetValue(&hash_, "%KEY%", "value"), 0);
  VLIBSZHASH* none = nullptr;
  EXPECT_EQ(VLIBCSzHashSetValue(nullptr, "%KEY%", "x"), -1);
  EXPECT_EQ(VLIBCSzHashSetValue(&none, "%KEY%", "x"), -1);
  EXPECT_EQ(VLIBCSzHashSetValue(&hash_, nullptr, "x"), -1);
  EXPECT_EQ(VLIBCSzHashSetValue(&hash_, "%KEY%", nullptr), -1);
  EXPECT_THAT(hash_->pairs, ElementsAre(Pair("%KEY%", "value")));
}

#if !defined(__SANITIZE_ADDRESS__) && \
    !defined(__SANITIZE_THREAD__)  // their memory has no such limit
TEST_F(HashTest, AMapIsUnchangedWhenMemoryIsShort) {
  ASSERT_EQ(VLIBCSzHashSetValue(&hash_, "old", "value"), 0);
  RunInChild([this] {
    const std::string large(std::size_t{256} << 20, 'v');
    const rlimit limit{std::size_t{300} << 20, RLIM_INFINITY};
    EXPECT_EQ(setrlimit(RLIMIT_AS, &limit), 0);
    EXPECT_EQ(VLIBCSzHashSetValue(&hash_, "old", large.c_str()), -1);
    EXPECT_EQ(VLIBCSzHashSetValue(&hash_, "new", large.c_str()), -1);
    EXPECT_EQ(VLIBCSzHashSetValue(&hash_, large.c_str(), "value"), -1);
    EXPECT_THAT(hash_->pairs, ElementsAre(Pair("old", "value")));
    EXPECT_EQ(VLIBCSzHashSetValue(&hash_, "new", "small"), 0);
    return "";
  });
}
#endif

}  // namespace
}  // namespace test_support
