// Filters of feeds, and trying a filter's pattern on a text.
#include <dorvdl/db/rss_filter.h>
#include <gtest/gtest.h>
#include <soci/soci.h>

#include "integration/db/table_test.h"
#include "support/sql_matchers.h"

namespace dorvdl::db {
namespace {

using control::option::rss_filter::ListOption;
using test_support::kError;
using test_support::LogLine;
using test_support::Show;
using test_support::TakeLog;

const LogLine kLikeFailed{kError, "db/rss_filter", "Failed to execute test ilike operation"};
const LogLine kRegexpFailed{kError, "db/rss_filter", "Failed to execute test regexp operation"};
const LogLine kRefusedNul{kError, "dbquery/query",
                          "Failed to execute statement: a text value has an embedded NUL"};

class RssFilterTest : public TableTest {
 protected:
  RssFilter Filters() { return RssFilter(Session()); }
  bool Like(const std::string& subject, const std::string& pattern) {
    return Filters().TestLike(subject, pattern);
  }
  bool Regexp(const std::string& subject, const std::string& pattern) {
    return Filters().TestRegexp(subject, pattern);
  }
};

TEST_F(RssFilterTest, TheOnlyCriterionIsTheFeed) {
  ListOption option;
  option.common.sort_by = "name";
  option.common.offset = 1;
  EXPECT_TRUE(Filters().GetCondition(option).IsNull());
  option.feed_id = 7;
  EXPECT_EQ(Show(Filters().GetCondition(option)), "feed_id = $1 [$1=7]");
}

TEST_F(RssFilterTest, FiltersAreListedAndCountedByFeed) {
  raw_.Run(
      "INSERT INTO rss_filter (id, feed_id, name) VALUES (1, 1, 'b'), (2, 1, 'a'), (3, 2, '')");
  ListOption option;
  EXPECT_EQ(KeysOf(Filters().List(option)), (Ids{1, 2, 3}));
  EXPECT_EQ(Filters().Count(option), 3);
  option.feed_id = 1;
  option.common.sort_by = "name";
  EXPECT_EQ(KeysOf(Filters().List(option)), (Ids{2, 1}));
  option.common.limit = 1;
  option.common.ascending = false;
  EXPECT_EQ(KeysOf(Filters().List(option)), (Ids{1}));
  EXPECT_EQ(Filters().Count(option), 2) << "a count is not paged";
}

TEST_F(RssFilterTest, LikeMatchesTheWholeTextInAnyCase) {
  EXPECT_TRUE(Like("Some Linux.iso", "%LINUX%"));
  EXPECT_TRUE(Like("abc", "A_c"));
  EXPECT_FALSE(Like("abc", "b"));
  EXPECT_TRUE(Like("Ägir", "äG%"));
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(RssFilterTest, RegexpMatchesAnywhereAndMindsTheCase) {
  EXPECT_TRUE(Regexp("Season 12", "[0-9]+$"));
  EXPECT_FALSE(Regexp("Season 12", "season"));
  EXPECT_TRUE(Regexp("Ägir", "^Ä...$"));
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(RssFilterTest, WildcardsInTheSubjectArePlainCharacters) {
  EXPECT_FALSE(Like("a%", "abc"));
  EXPECT_FALSE(Like("a_c", "abc"));
  EXPECT_TRUE(Like("100%_\\", "100\\%\\_\\\\"));
  EXPECT_TRUE(Regexp("a.c", "^a\\.c$"));
  EXPECT_FALSE(Regexp("a.c", "abc"));
}

TEST_F(RssFilterTest, TheSubjectIsATextOrOneStringLiteral) {
  const struct {
    std::string subject, text;
  } kCases[] = {
      {"plain text", "plain text"},
      {"", ""},
      {"title", "title"},
      {"one", "one"},
      {"NULL", "NULL"},
      {"$1", "$1"},
      {":name", ":name"},
      {"it's", "it's"},
      {"'it''s'", "it's"},
      {"'quoted'", "quoted"},
      {"''", ""},
      {"''''", "'"},
      {"''''''", "''"},
      {"'back\\slash'", "back\\slash"},
      {"'Ägir'", "Ägir"},
      {"'a' || 'b'", "'a' || 'b'"},
      {"'a'b'", "'a'b'"},
      {"'a''", "'a''"},
      {"''a'", "''a'"},
      {"'", "'"},
      {"'''", "'''"},
      {"'''''", "'''''"},
      {"'open", "'open"},
      {"open'", "open'"},
      {" 'a'", " 'a'"},
      {"E'a'", "E'a'"},
      {"\"a\"", "\"a\""},
      {"'x'); DROP TABLE rss_filter; --'", "'x'); DROP TABLE rss_filter; --'"},
      {"1 = 1 OR true", "1 = 1 OR true"},
      {"(SELECT username FROM download_queue)", "(SELECT username FROM download_queue)"},
  };
  for (const auto& [subject, text] : kCases) {
    std::string literal_pattern;
    for (const char c : text) {
      literal_pattern.append(c == '\\' || c == '_' || c == '%' ? "\\" : "").append(1, c);
    }
    EXPECT_TRUE(Like(subject, literal_pattern)) << subject;
    EXPECT_TRUE(Regexp(subject, "***=" + text)) << subject;
    EXPECT_FALSE(Like(subject, literal_pattern + "_")) << subject;
    EXPECT_FALSE(Regexp(subject, "^.{" + std::to_string(text.size() + 1) + "}")) << subject;
  }
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(RssFilterTest, NeitherTextBecomesAPartOfTheStatement) {
  RssFilter filters(LostSession());
  EXPECT_FALSE(filters.TestLike("subject' OR true --", "pattern' --"));
  EXPECT_FALSE(filters.TestRegexp("subject' OR true --", "pattern' --"));
  EXPECT_EQ(TakeLog(),
            (Lines{Lost("SELECT one FROM \"test_filter_view\" WHERE $1 ILIKE $2"), kLikeFailed,
                   Lost("SELECT one FROM \"test_filter_view\" WHERE $1 ~ $2"), kRegexpFailed}));
  EXPECT_TRUE(Like("a", "A")) << "a new accessor gets a new connection";
}

TEST_F(RssFilterTest, APatternThatCannotBeUsedIsFalseAndLogged) {
  EXPECT_FALSE(Regexp("secret", "("));
  EXPECT_EQ(TakeLog(), (Lines{{kError, "dbquery/query",
                               "Failed to execute statement: [2201B] invalid value: SELECT one "
                               "FROM \"test_filter_view\" WHERE $1 ~ $2"},
                              kRegexpFailed}));
  EXPECT_FALSE(Like("secret", "\\"));
  EXPECT_EQ(TakeLog(), (Lines{{kError, "dbquery/query",
                               "Failed to execute statement: [22025] invalid value: SELECT one "
                               "FROM \"test_filter_view\" WHERE $1 ILIKE $2"},
                              kLikeFailed}));
  EXPECT_TRUE(Regexp("secret", "secret")) << "the session goes on";
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(RssFilterTest, AnEmbeddedNulIsRefused) {
  const std::string cut("a\0b", 3);
  EXPECT_FALSE(Like(cut, "a"));
  EXPECT_FALSE(Like("'" + cut + "'", "a"));
  EXPECT_FALSE(Like("a", cut));
  EXPECT_EQ(TakeLog(),
            (Lines{kRefusedNul, kLikeFailed, kRefusedNul, kLikeFailed, kRefusedNul, kLikeFailed}));
  EXPECT_FALSE(Regexp(cut, "a"));
  EXPECT_FALSE(Regexp("a", cut));
  EXPECT_EQ(TakeLog(), (Lines{kRefusedNul, kRegexpFailed, kRefusedNul, kRegexpFailed}));
}

TEST_F(RssFilterTest, APatternThatBacktracksBadlyIsEndedByTheServersTimeout) {
  *Session().session().handle() << "SET statement_timeout = 200";
  EXPECT_FALSE(Regexp(std::string(301, 'a'), "^(a*)(a*)(a*)(a*)(a*)\\1\\2\\3\\4\\5$"));
  EXPECT_EQ(TakeLog(), (Lines{{kError, "dbquery/query",
                               "Failed to execute statement: [57014] canceling statement due to "
                               "statement timeout: SELECT one FROM \"test_filter_view\" WHERE "
                               "$1 ~ $2"},
                              kRegexpFailed}));
  EXPECT_TRUE(Regexp("a", "a")) << "the session goes on";
}

TEST_F(RssFilterTest, AnyRowOfTheViewIsAMatchWhateverOneHolds) {
  for (const char* const rows : {"(0), (7)", "(NULL::integer)", "('text')", "(NULL), ('text')",
                                 "(1::bigint << 40)", "(0.5)", "(point(1, 2))"}) {
    raw_.Run("DROP VIEW test_filter_view; CREATE VIEW test_filter_view AS SELECT * FROM (VALUES " +
             std::string(rows) + ") v (one)");
    EXPECT_TRUE(Like("a", "a")) << rows;
    EXPECT_FALSE(Like("a", "b")) << rows;
    EXPECT_TRUE(Regexp("a", "a")) << rows;
    EXPECT_FALSE(Regexp("a", "b")) << rows;
  }
  raw_.Run("DROP VIEW test_filter_view; CREATE VIEW test_filter_view AS SELECT 1 AS one");
}

}  // namespace
}  // namespace dorvdl::db
