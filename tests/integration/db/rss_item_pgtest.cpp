// Items of feeds: every criterion, and the two statements about all items of a feed.
#include <dorvdl/db/rss_item.h>
#include <gtest/gtest.h>
#include <soci/soci.h>

#include "integration/db/table_test.h"
#include "support/sql_matchers.h"

namespace dorvdl::db {
namespace {

using control::option::rss_item::ListOption;
using test_support::kError;
using test_support::LogLine;
using test_support::Show;
using test_support::TakeLog;

const LogLine kListFailed{kError, "db/operator", "Failed to execute list operation"};

// An option with one criterion.
template <typename T, typename Value>
ListOption With(T ListOption::*criterion, const Value& value) {
  ListOption option;
  option.*criterion = value;
  return option;
}

class RssItemTest : public TableTest {
 protected:
  int Insert(const std::string& columns, const std::string& values) {
    return std::stoi(
        raw_.Value("INSERT INTO rss_item (" + columns + ") VALUES (" + values + ") RETURNING id"));
  }

  RssItem Items() { return RssItem(Session()); }

  Ids Listed(const ListOption& option) {
    Ids keys = KeysOf(Items().List(option));
    EXPECT_EQ(Items().Count(option), static_cast<int>(keys.size())) << "both take one condition";
    return keys;
  }
};

TEST_F(RssItemTest, TheConditionJoinsItsTermsInOrder) {
  ListOption option;
  option.date = 8;
  option.url = "u";
  option.title_not_regex = "nr";
  option.title_regex = "r";
  option.title_not_like = "nl%";
  option.title_like = "l_";
  option.is_new = true;
  option.feed_id = -1;
  option.common.limit = 1;
  option.common.sort_by = "date";
  EXPECT_EQ(Show(Items().GetCondition(option)),
            "feed_id = $1 AND is_new = $2 AND title ILIKE $3 AND NOT (title ILIKE $4) AND "
            "title ~ $5 AND NOT (title ~ $6) AND url = $7 AND date = $8 "
            "[$1=-1] [$2=1] [$3=l_] [$4=nl%] [$5=r] [$6=nr] [$7=u] [$8=8]");
}

TEST_F(RssItemTest, EachCriterionIsATermOfItsOwn) {
  const struct {
    ListOption option;
    const char* condition;
  } kCases[] = {
      {With(&ListOption::feed_id, 3), "feed_id = $1 [$1=3]"},
      {With(&ListOption::is_new, true), "is_new = $1 [$1=1]"},
      {With(&ListOption::is_new, false), "is_new = $1 [$1=0]"},
      {With(&ListOption::title_like, ""), "title ILIKE $1 [$1=]"},
      {With(&ListOption::title_not_like, "a"), "NOT (title ILIKE $1) [$1=a]"},
      {With(&ListOption::title_regex, "a"), "title ~ $1 [$1=a]"},
      {With(&ListOption::title_not_regex, "a"), "NOT (title ~ $1) [$1=a]"},
      {With(&ListOption::url, "a"), "url = $1 [$1=a]"},
      {With(&ListOption::date, 0), "date = $1 [$1=0]"},
  };
  for (const auto& [option, condition] : kCases) {
    EXPECT_EQ(Show(Items().GetCondition(option)), condition);
  }
  EXPECT_TRUE(Items().GetCondition({}).IsNull());
}

TEST_F(RssItemTest, WithoutCriteriaEveryItemOfEveryFeedIsListed) {
  const int first = Insert("feed_id", "1");
  const int second = Insert("feed_id, is_new", "2, 1");
  EXPECT_EQ(Listed({}), (Ids{first, second}));
}

TEST_F(RssItemTest, LikeIgnoresCaseAndTakesTheCallersWildcards) {
  const int some = Insert("title", "'Some Linux.iso'");
  const int other = Insert("title", "'100% other'");
  EXPECT_EQ(Listed(With(&ListOption::title_like, "%LINUX%")), Ids{some});
  EXPECT_EQ(Listed(With(&ListOption::title_like, "linux")), Ids{});
  EXPECT_EQ(Listed(With(&ListOption::title_like, "100_ OTHER")), Ids{other});
  EXPECT_EQ(Listed(With(&ListOption::title_like, "%\\%%")), Ids{other});
  EXPECT_EQ(Listed(With(&ListOption::title_not_like, "%LINUX%")), Ids{other});
  ListOption both = With(&ListOption::title_like, "%o%");
  both.title_not_like = "%ISO";
  EXPECT_EQ(Listed(both), Ids{other});
}

TEST_F(RssItemTest, RegularExpressionsMindTheCase) {
  const int upper = Insert("title", "'Season 12'");
  const int lower = Insert("title", "'season x'");
  EXPECT_EQ(Listed(With(&ListOption::title_regex, "^Sea.*[0-9]+$")), Ids{upper});
  EXPECT_EQ(Listed(With(&ListOption::title_regex, "season")), Ids{lower});
  EXPECT_EQ(Listed(With(&ListOption::title_not_regex, "^S")), Ids{lower});
}

TEST_F(RssItemTest, FeedNoveltyUrlAndDateAreCompared) {
  const int first = Insert("feed_id, is_new, url, date", "1, 1, 'http://x/a', 1000");
  const int second = Insert("feed_id, is_new, url, date", "2, 0, 'http://x/A', 1001");
  EXPECT_EQ(Listed(With(&ListOption::feed_id, 2)), Ids{second});
  EXPECT_EQ(Listed(With(&ListOption::is_new, true)), Ids{first});
  EXPECT_EQ(Listed(With(&ListOption::is_new, false)), Ids{second});
  EXPECT_EQ(Listed(With(&ListOption::url, "http://x/a")), Ids{first});
  EXPECT_EQ(Listed(With(&ListOption::date, 1000)), Ids{first}) << "the very second, no range";
  EXPECT_EQ(Listed(With(&ListOption::date, 999)), Ids{});
}

TEST_F(RssItemTest, AListIsOrderedAndPaged) {
  Insert("title", "'b'");
  const int a = Insert("title", "'a'");
  const int c = Insert("title", "'c'");
  ListOption option;
  option.common.sort_by = "title";
  option.common.ascending = false;
  option.common.limit = 1;
  EXPECT_EQ(KeysOf(Items().List(option)), Ids{c});
  option.common.offset = 2;
  EXPECT_EQ(KeysOf(Items().List(option)), Ids{a});
}

TEST_F(RssItemTest, AnInvalidRegularExpressionGivesAnEmptyListAndIsLogged) {
  Insert("title", "'a'");
  EXPECT_TRUE(Items().List(With(&ListOption::title_regex, "secret(")).empty());
  EXPECT_EQ(TakeLog(), (Lines{{kError, "dbquery/query",
                               "Failed to execute statement: [2201B] invalid value: SELECT * FROM "
                               "\"rss_item\" WHERE title ~ $1"},
                              kListFailed}));
  EXPECT_EQ(Items().Count(With(&ListOption::title_not_regex, "[")), -1);
  EXPECT_EQ(Listed({}).size(), 1U) << "the session goes on";
}

TEST_F(RssItemTest, APatternThatBacktracksBadlyIsEndedByTheServersTimeout) {
  Insert("title", "repeat('a', 301)");
  *Session().session().handle() << "SET statement_timeout = 200";
  EXPECT_TRUE(Items()
                  .List(With(&ListOption::title_regex, "^(a*)(a*)(a*)(a*)(a*)\\1\\2\\3\\4\\5$"))
                  .empty());
  EXPECT_EQ(TakeLog(), (Lines{{kError, "dbquery/query",
                               "Failed to execute statement: [57014] canceling statement due to "
                               "statement timeout: SELECT * FROM \"rss_item\" WHERE title ~ $1"},
                              kListFailed}));
  EXPECT_EQ(Listed({}).size(), 1U) << "the session goes on";
}

TEST_F(RssItemTest, DeleteByFeedIdDeletesTheItemsOfThatFeed) {
  const int before = Insert("feed_id", "1");
  Insert("feed_id", "2");
  Insert("feed_id", "2");
  const int after = Insert("feed_id", "3");
  EXPECT_TRUE(Items().DeleteByFeedId(2));
  EXPECT_EQ(Listed({}), (Ids{before, after}));
  EXPECT_TRUE(Items().DeleteByFeedId(2)) << "a feed without items";
  EXPECT_EQ(Listed({}), (Ids{before, after}));
}

TEST_F(RssItemTest, UpdateAllNewMarksEveryItemOfThatFeed) {
  for (const char* values : {"2, 0", "2, 1", "2, NULL", "1, 0", "3, 1"}) {
    Insert("feed_id, is_new", values);
  }
  const auto marks = [this] { return raw_.Run("SELECT is_new FROM rss_item ORDER BY id"); };
  EXPECT_TRUE(Items().UpdateAllNew(2, true));
  EXPECT_EQ(marks(), (Rows{"1", "1", "1", "0", "1"}));
  EXPECT_TRUE(Items().UpdateAllNew(2, false));
  EXPECT_EQ(marks(), (Rows{"0", "0", "0", "0", "1"}));
}

TEST_F(RssItemTest, UpdateAllNewOfAFeedWithoutItemsIsASuccess) {
  Insert("feed_id, is_new", "2, 1");
  EXPECT_TRUE(Items().UpdateAllNew(1, false));
  EXPECT_EQ(raw_.Value("SELECT is_new FROM rss_item"), "1");
}

TEST_F(RssItemTest, TheStatementsOnAFeedsItemsLogNothingOfTheirOwn) {
  RssItem items(LostSession());
  EXPECT_FALSE(items.DeleteByFeedId(1));
  EXPECT_FALSE(items.UpdateAllNew(1, true));
  EXPECT_EQ(TakeLog(), (Lines{Lost("DELETE FROM \"rss_item\" WHERE feed_id = $1"),
                              Lost("UPDATE \"rss_item\" SET \"is_new\" = $1 WHERE feed_id = $2")}));
}

}  // namespace
}  // namespace dorvdl::db
