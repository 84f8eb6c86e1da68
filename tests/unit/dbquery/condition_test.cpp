#include <dorvdl/dbquery/condition.h>
#include <dorvdl/dbquery/select_query.h>
#include <gtest/gtest.h>

#include "support/sql_matchers.h"

namespace dorvdbquery {
namespace {

using test_support::Show;

const Condition kPid = Condition::ConditionFactory<int>("pid", ">", 0);
const Condition kName = Condition::ConditionFactory<std::string>("lower(username)", "=", "alice");

TEST(ConditionTest, AComparisonBindsItsValue) {
  EXPECT_EQ(Show(kPid), "pid > $1 [$1=0]");
  EXPECT_EQ(Show(Condition::ConditionFactory<std::string>("title", "ILIKE", "%'; DROP")),
            "title ILIKE $1 [$1=%'; DROP]");
  EXPECT_EQ(Show(Condition::ConditionFactory<int>("(task_flags&4)", "!=", -2147483647 - 1)),
            "(task_flags&4) != $1 [$1=-2147483648]");
}

TEST(ConditionTest, AnOperatorMustBeOne) {
  for (const char* op : {"", "= 1 OR 1 =", "=;", "= '", "--", "/*", "= $1 AND"}) {
    EXPECT_EQ(Show(Condition::ConditionFactory<int>("pid", op, 1)),
              "refused: a comparison has no valid operator")
        << op;
  }
}

TEST(ConditionTest, ConjunctionKeepsTheOrderAndNumbersThePlaceholders) {
  EXPECT_EQ(Show(kPid && kName), "pid > $1 AND lower(username) = $2 [$1=0] [$2=alice]");
  EXPECT_EQ(Show(kName && (kPid && kName)),
            "lower(username) = $1 AND pid > $2 AND lower(username) = $3 [$1=alice] [$2=0] "
            "[$3=alice]");
}

TEST(ConditionTest, RowsOfAnotherTableAreASubselect) {
  EXPECT_EQ(
      Show(Condition::InRows("feed_id", "rss_feed", "id", kName)),
      "\"feed_id\" IN (SELECT \"id\" FROM \"rss_feed\" WHERE lower(username) = $1) [$1=alice]");
  EXPECT_EQ(Show(Condition::InRows("feed_id", "rss_feed", "id", Condition::Null())),
            "\"feed_id\" IN (SELECT \"id\" FROM \"rss_feed\")");
  EXPECT_EQ(Show(kPid && Condition::HasRow("rss_feed", kName)),
            "pid > $1 AND EXISTS (SELECT 1 FROM \"rss_feed\" WHERE lower(username) = $2) [$1=0] "
            "[$2=alice]");
  EXPECT_EQ(Show(Condition::InRows("feed_id", "rss feed", "id", kName)),
            "refused: a table or column name is no plain identifier");
}

TEST(ConditionTest, NegationIsParenthesised) {
  EXPECT_EQ(Show(!kPid), "NOT (pid > $1) [$1=0]");
  EXPECT_EQ(Show(!(kPid && kName) && kPid),
            "NOT (pid > $1 AND lower(username) = $2) AND pid > $3 [$1=0] [$2=alice] [$3=0]");
  EXPECT_EQ(Show(!!kPid), "NOT (NOT (pid > $1)) [$1=0]");
}

// What `expression = 2` goes out as beside another condition.
std::string Combined(const std::string& expression) {
  return Show(Condition::ConditionFactory<int>(expression, "=", 2) && kPid);
}

TEST(ConditionTest, AComparisonWithAnOrAtItsTopIsOneOperand) {
  for (const std::string& expression : std::vector<std::string>{
           "a = 1 OR b", "a = 1 or b", "a = 1\nOr\tb", "(a)OR(b)", "a OR(b)", "'x'OR b",
           "a = 'it''s' OR b", "a = '\\' OR b", "a = E'\\'' OR b", "a = e'x' OR b",
           "\"a\"\"b\" OR c", "a /* ( */ OR b", "a /* /* */ ( */ OR b", "a -- '\nOR b",
           "a = $$'$$ OR b", "a = $x$ $$ ( $x$ OR b", "(a OR b) OR (c)", "a[1] OR b",
           "a = $1 OR b"}) {
    EXPECT_EQ(Combined(expression), "(" + expression + " = $1) AND pid > $2 [$1=2] [$2=0]");
  }
  EXPECT_EQ(Show(kPid && Condition::ConditionFactory<int>("a = 1 OR b", "=", 2)),
            "pid > $1 AND (a = 1 OR b = $2) [$1=0] [$2=2]");
  EXPECT_EQ(Show(Condition::ConditionFactory<int>("a", "= b OR c =", 2) && kPid),
            "(a = b OR c = $1) AND pid > $2 [$1=2] [$2=0]");
}

TEST(ConditionTest, AnyOtherComparisonGoesOutAsItStands) {
  for (const std::string& expression : std::vector<std::string>{"pid",
                                                                "COUNT(*)",
                                                                "DISTINCT(id)",
                                                                "lower(username)",
                                                                "(task_flags&4)",
                                                                "a AND b",
                                                                "(a = 1 OR b)",
                                                                "((a) OR (b))",
                                                                "f(a OR b)",
                                                                "a[b OR c]",
                                                                "a = ' OR ' || b",
                                                                "a = ' '' OR '' ' || b",
                                                                "a = E'\\' OR ' || b",
                                                                "\" OR \"",
                                                                "\"a\"\" OR \"",
                                                                "a /* OR */",
                                                                "a /* /* */ OR */",
                                                                "a -- OR\n",
                                                                "$$ OR $$",
                                                                "$x$ $$ OR $x$",
                                                                "or_",
                                                                "_or",
                                                                "or1",
                                                                "a$or",
                                                                "colour",
                                                                "ORDER",
                                                                "for",
                                                                "fOR",
                                                                "oré",
                                                                "éor",
                                                                "o r"}) {
    EXPECT_EQ(Combined(expression), expression + " = $1 AND pid > $2 [$1=2] [$2=0]");
  }
}

TEST(ConditionTest, NullYieldsTheOtherOperand) {
  EXPECT_TRUE(Condition::Null().IsNull());
  EXPECT_TRUE((Condition::Null() && Condition::Null()).IsNull());
  EXPECT_EQ(Show(Condition::Null() && kPid), Show(kPid));
  EXPECT_EQ(Show(kPid && Condition::Null()), Show(kPid));
}

TEST(ConditionTest, TheNegationOfNullIsFalse) {
  EXPECT_EQ(Show(!Condition::Null()), "FALSE");
  EXPECT_EQ(Show(!!Condition::Null()), "NOT (FALSE)");
}

TEST(ConditionTest, CombiningLeavesTheOperandsAsTheyWere) {
  const Condition copy = kPid;
  const Condition combined = !copy && kName;
  EXPECT_EQ(Show(copy), "pid > $1 [$1=0]");
  EXPECT_EQ(Show(combined), Show(combined));
}

TEST(ConditionTest, InBindsAllItsValuesAsOneArray) {
  EXPECT_EQ(Show(Condition::In<int>("status", {1, -2, 101})),
            "\"status\" = ANY($1) [$1={1,-2,101}]");
  EXPECT_EQ(Show(!Condition::In<int>("status", {5})), "NOT (\"status\" = ANY($1)) [$1={5}]");
}

TEST(ConditionTest, InOfNoValuesIsFalse) {
  EXPECT_EQ(Show(Condition::In<int>("status", {})), "FALSE");
  EXPECT_EQ(Show(!Condition::In<int>("status", {})), "NOT (FALSE)");
}

TEST(ConditionTest, SubstringBindsItsTextAsItIs) {
  EXPECT_EQ(Show(Condition::HasSubstring("filename", "100%_\\")),
            "strpos(\"filename\", $1) > 0 [$1=100%_\\]");
}

TEST(ConditionTest, ColumnsOfInAndSubstringAreCheckedIdentifiers) {
  const std::string refused = "refused: a table or column name is no plain identifier";
  EXPECT_EQ(Show(Condition::In<int>("id) OR (1", {1})), refused);
  EXPECT_EQ(Show(Condition::HasSubstring("a\"b", "x")), refused);
}

TEST(ConditionTest, AnEmbeddedNulIsRefused) {
  EXPECT_EQ(Show(Condition::HasSubstring("filename", std::string("a\0b", 3))),
            "refused: a text value has an embedded NUL");
}

}  // namespace
}  // namespace dorvdbquery
