// Scopes end in order when memory is short, whatever else the program then does.
#include <gtest/gtest.h>

#include <optional>
#include <utility>

#include "integration/dbquery/query_test.h"
#include "support/short_memory.h"

namespace dorvdbquery {
namespace {

class ShortMemoryTest : public QueryTest {
 protected:
  // Ends two scopes, one in the other, neither of them committed.
  void EndScopesWithoutMemory() {
    std::optional<DefaultTransaction> outer(std::in_place, session_);
    std::optional<DefaultTransaction> inner(std::in_place, session_);
    ASSERT_TRUE(Insert(1));
    if (is_lost_) {
      test_support::TerminateOtherSessions(raw_);
    }
    const test_support::ShortMemory memory;
    inner.reset();
    outer.reset();
    if (!is_lost_) {  // else there are lines in the log, which the test keeps
      EXPECT_EQ(memory.Refusals(), 0);
    }
  }

  bool is_lost_ = false;
};

TEST_F(ShortMemoryTest, ScopesRollBack) {
  EndScopesWithoutMemory();
  EXPECT_TRUE(Insert(2));
  EXPECT_EQ(Stored(), Rows{"2"});
}

TEST_F(ShortMemoryTest, ScopesEndOnALostConnection) {
  is_lost_ = true;
  EndScopesWithoutMemory();
  EXPECT_FALSE(session_.Good());
  EXPECT_EQ(Stored(), Rows{});
}

TEST_F(ShortMemoryTest, AScopeCanBeMadeAndIsCommitted) {
  ASSERT_TRUE(Insert(1));
  {
    const test_support::ShortMemory memory;
    DefaultTransaction outer(session_);
    DefaultTransaction inner(session_);
    EXPECT_TRUE(inner.Commit());
    EXPECT_TRUE(outer.Commit());
  }
  EXPECT_EQ(Stored(), Rows{"1"});
}

}  // namespace
}  // namespace dorvdbquery
