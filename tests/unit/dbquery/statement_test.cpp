#include <dorvdl/dbquery/delete_query.h>
#include <dorvdl/dbquery/insert_query.h>
#include <dorvdl/dbquery/select_query.h>
#include <dorvdl/dbquery/update_query.h>
#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>

#include "support/sql_matchers.h"
#include "support/syslog_capture.h"

namespace dorvdbquery {
namespace {

using test_support::kError;
using test_support::LogLine;
using test_support::Show;
using test_support::TakeLog;

constexpr char kBadName[] = "refused: a table or column name is no plain identifier";

const Condition kPid = Condition::ConditionFactory<int>("pid", ">", 0);

class StatementTest : public testing::Test {
 protected:
  const Session session_;  // without a connection
};

TEST_F(StatementTest, SelectTakesAllColumnsUnlessFieldsAreNamed) {
  SelectQuery query(session_, "download_queue");
  EXPECT_EQ(Show(query), "SELECT * FROM \"download_queue\"");
  int count = 0;
  query.SelectField<int>("COUNT(*)", count);
  EXPECT_EQ(Show(query), "SELECT COUNT(*) FROM \"download_queue\"");
  query.SelectFields("task_id, username");
  EXPECT_EQ(Show(query), "SELECT COUNT(*), task_id, username FROM \"download_queue\"");
}

TEST_F(StatementTest, SelectPutsItsClausesInOrder) {
  SelectQuery query(session_, "rss_item");
  query.Offset(20);
  query.Limit(10);
  query.OrderBy("date", SelectBase::kDescending);
  query.OrderBy("id", SelectBase::kAscending);
  query.Where(kPid);
  EXPECT_EQ(Show(query),
            "SELECT * FROM \"rss_item\" WHERE pid > $1 ORDER BY \"date\" DESC, \"id\" ASC "
            "LIMIT $2 OFFSET $3 [$1=0] [$2=10] [$3=20]");
}

TEST_F(StatementTest, LimitAndOffsetAreIndependent) {
  SelectQuery offset_alone(session_, "t");
  offset_alone.Offset(3);
  EXPECT_EQ(Show(offset_alone), "SELECT * FROM \"t\" OFFSET $1 [$1=3]");
  SelectQuery limit_zero(session_, "t");
  limit_zero.Limit(0);
  EXPECT_EQ(Show(limit_zero), "SELECT * FROM \"t\" LIMIT $1 [$1=0]");
}

TEST_F(StatementTest, ASecondWhereReplacesTheFirst) {
  SelectQuery query(session_, "t");
  query.Where(kPid);
  query.Where(Condition::In<int>("id", {7}));
  EXPECT_EQ(Show(query), "SELECT * FROM \"t\" WHERE \"id\" = ANY($1) [$1={7}]");
  query.Where(Condition::Null());
  EXPECT_EQ(Show(query), "SELECT * FROM \"t\"");
}

TEST_F(StatementTest, OrderByFoldsCapitalsAsSqlDoes) {
  SelectQuery query(session_, "t");
  query.OrderBy("FileName", SelectBase::kAscending);
  EXPECT_EQ(Show(query), "SELECT * FROM \"t\" ORDER BY \"filename\" ASC");
}

TEST_F(StatementTest, OrderByRefusesAnythingButAPlainIdentifier) {
  for (const std::string& column :
       {std::string(), std::string("id; DROP TABLE t"), std::string("id\"x"), std::string("1id"),
        std::string("pg_sleep(1)"), std::string("naïve"), std::string("id\0", 3),
        std::string(64, 'a'), std::string(1 << 20, 'a')}) {
    SelectQuery query(session_, "t");
    query.OrderBy(column, SelectBase::kAscending);
    EXPECT_EQ(Show(query), kBadName) << column.substr(0, 80);
  }
  SelectQuery longest(session_, "t");
  longest.OrderBy(std::string(63, 'a'), SelectBase::kAscending);
  EXPECT_EQ(Show(longest), "SELECT * FROM \"t\" ORDER BY \"" + std::string(63, 'a') + "\" ASC");
}

static_assert(std::is_constructible_v<OrderExpression, const char (&)[8]>);
static_assert(!std::is_constructible_v<OrderExpression, char (&)[8]>);
static_assert(!std::is_constructible_v<OrderExpression, std::string>);

TEST_F(StatementTest, AnOrderExpressionGoesOutAsWritten) {
  SelectQuery query(session_, "t");
  query.OrderBy(OrderExpression("a::float/b"), SelectBase::kDescending);
  EXPECT_EQ(Show(query), "SELECT * FROM \"t\" ORDER BY a::float/b DESC");
}

TEST_F(StatementTest, InsertNamesExactlyItsColumns) {
  InsertQuery query(session_, "t");
  int id = 0;
  query.SetInsertAll({"username", "pid"});
  query.Values({ToParameter("O'Neil"), Parameter()});
  query.Returning("id", id);
  EXPECT_EQ(Show(query),
            "INSERT INTO \"t\" (\"username\", \"pid\") VALUES ($1, $2) RETURNING \"id\" "
            "[$1=O'Neil] [$2=NULL]");
}

TEST_F(StatementTest, InsertReturnsOneColumn) {
  InsertQuery query(session_, "t");
  int id = 0;
  query.Returning("pid", id);
  query.Returning("id", id);
  EXPECT_EQ(Show(query), "INSERT INTO \"t\" DEFAULT VALUES RETURNING \"id\"");
  query.Returning("", id);
  EXPECT_EQ(Show(query), kBadName);
}

TEST_F(StatementTest, InsertWithoutColumnsInsertsDefaults) {
  InsertQuery query(session_, "t");
  EXPECT_EQ(Show(query), "INSERT INTO \"t\" DEFAULT VALUES");
}

TEST_F(StatementTest, InsertRefusesColumnsWithoutValues) {
  InsertQuery query(session_, "t");
  query.SetInsertAll({"username", "pid"});
  query.Values({ToParameter(1)});
  EXPECT_EQ(Show(query), "refused: an insert's columns and values differ in number");
}

TEST_F(StatementTest, InsertAddsAndFindsColumns) {
  InsertQuery query(session_, "rss_feed");
  query.SetInsertAll({"url"});
  EXPECT_EQ(query.Find("url"), nullptr) << "it has no value yet";
  query.Values({"u"});
  query.Add("username", "alice");
  EXPECT_EQ(*query.Find("url"), "u");
  EXPECT_EQ(query.Find("title"), nullptr);
  EXPECT_EQ(Show(query),
            "INSERT INTO \"rss_feed\" (\"url\", \"username\") VALUES ($1, $2) [$1=u] [$2=alice]");
}

TEST_F(StatementTest, InsertTakesADemandIntoItsText) {
  InsertQuery query(session_, "rss_item");
  query.SetInsertAll({"feed_id", "title"});
  query.Values({"7", "t"});
  query.OnlyWhen(Condition::HasRow("rss_feed", kPid), "no feed");
  int id = 0;
  query.Returning("id", id);
  EXPECT_EQ(
      Show(query),
      "INSERT INTO \"rss_item\" (\"feed_id\", \"title\") SELECT $1, $2 WHERE EXISTS (SELECT 1 "
      "FROM \"rss_feed\" WHERE pid > $3) RETURNING \"id\" [$1=7] [$2=t] [$3=0]");
}

TEST_F(StatementTest, UpdateTakesADemandIntoItsText) {
  UpdateQuery query(session_, "rss_item");
  query.SetFactory<int>("feed_id", 7);
  query.OnlyWhen(Condition::HasRow("rss_feed", kPid), "no feed");
  EXPECT_EQ(
      Show(query),
      "WITH dorvdl_met AS (SELECT 1 WHERE EXISTS (SELECT 1 FROM \"rss_feed\" WHERE pid > $1)), "
      "dorvdl_changed AS (UPDATE \"rss_item\" SET \"feed_id\" = $2 WHERE EXISTS (SELECT 1 FROM "
      "\"dorvdl_met\")) SELECT 1 FROM dorvdl_met [$1=0] [$2=7]");
  query.Where(kPid);
  EXPECT_NE(Show(query).find("WHERE pid > $3 AND EXISTS (SELECT 1 FROM \"dorvdl_met\"))"),
            std::string::npos)
      << Show(query);
}

TEST_F(StatementTest, UpdateFindsAndDropsAssignments) {
  UpdateQuery query(session_, "rss_feed");
  query.SetFactory<std::string>("username", "alice");
  query.SetFactory<int>("is_updating", 1);
  EXPECT_EQ(*query.Find("username"), "alice");
  EXPECT_EQ(query.Find("url"), nullptr);
  query.Drop("username");
  EXPECT_EQ(query.Find("username"), nullptr);
  EXPECT_EQ(Show(query), "UPDATE \"rss_feed\" SET \"is_updating\" = $1 [$1=1]");
  query.Refuse("no");
  EXPECT_EQ(Show(query), "refused: no");
  query.Drop("is_updating");
  EXPECT_EQ(Show(query), "") << "nothing to set is no refusal";
}

TEST_F(StatementTest, ARefusedInsertHasNoStatement) {
  InsertQuery query(session_, "rss_feed");
  query.Refuse("no");
  EXPECT_EQ(Show(query), "refused: no");
}

TEST_F(StatementTest, UpdateAssignsInTheOrderOfTheCalls) {
  UpdateQuery query(session_, "t");
  query.SetFactory<int>("status", 1);
  query.SetFactory<long long>("total_size", 1LL << 40);
  query.SetFactory<std::string>("filename", "");
  query.Where(kPid);
  EXPECT_EQ(
      Show(query),
      "UPDATE \"t\" SET \"status\" = $1, \"total_size\" = $2, \"filename\" = $3 WHERE pid > $4 "
      "[$1=1] [$2=1099511627776] [$3=] [$4=0]");
}

TEST_F(StatementTest, AnUpdateWithNothingToSetHasNoStatement) {
  UpdateQuery query(session_, "t");
  query.Where(kPid);
  EXPECT_EQ(Show(query), "");
  TakeLog();
  EXPECT_FALSE(query.Execute());
  EXPECT_EQ(TakeLog(), std::vector<LogLine>{});
}

TEST_F(StatementTest, DeleteTakesItsCondition) {
  DeleteQuery query(session_, "t");
  EXPECT_EQ(Show(query), "DELETE FROM \"t\"");
  query.Where(kPid);
  EXPECT_EQ(Show(query), "DELETE FROM \"t\" WHERE pid > $1 [$1=0]");
}

TEST_F(StatementTest, TableAndColumnNamesAreChecked) {
  EXPECT_EQ(Show(SelectQuery(session_, "t t2")), kBadName);
  EXPECT_EQ(Show(DeleteQuery(session_, "t;")), kBadName);
  InsertQuery insert(session_, "t");
  insert.SetInsertAll({"a) VALUES (1"});
  insert.Values({ToParameter(1)});
  EXPECT_EQ(Show(insert), kBadName);
  UpdateQuery update(session_, "t");
  update.SetFactory<int>("a=1,b", 1);
  EXPECT_EQ(Show(update), kBadName);
}

// A query keeps no copy of its targets, so none may be gone before it is used.
constexpr auto kSelectField = [](auto&& out) -> decltype(std::declval<SelectQuery&>().SelectField(
                                                 "one", std::forward<decltype(out)>(out))) {};
constexpr auto kInto = [](auto&& out) -> decltype(std::declval<SelectQuery&>().Into(
                                          std::forward<decltype(out)>(out))) {};
constexpr auto kReturning = [](auto&& out) -> decltype(std::declval<InsertQuery&>().Returning(
                                               "id", std::forward<decltype(out)>(out))) {};

template <typename Binding>
constexpr bool kTakesATargetThatLasts =
    std::is_invocable_v<Binding, int&> && !std::is_invocable_v<Binding, int> &&
    !std::is_invocable_v<Binding, const int> && !std::is_invocable_v<Binding, const int&>;
static_assert(kTakesATargetThatLasts<decltype(kSelectField)>);
static_assert(kTakesATargetThatLasts<decltype(kInto)>);
static_assert(kTakesATargetThatLasts<decltype(kReturning)>);

TEST_F(StatementTest, WithoutAConnectionExecutionFailsAndIsLogged) {
  TakeLog();
  EXPECT_FALSE(SelectQuery(session_, "t").Execute());
  EXPECT_EQ(TakeLog(),
            (std::vector<LogLine>{{kError, "dbquery/query",
                                   "Failed to execute statement: the session has no connection"}}));
}

TEST_F(StatementTest, ARefusedStatementIsLoggedWithoutItsText) {
  SelectQuery query(session_, "t");
  query.OrderBy("secret'text", SelectBase::kAscending);
  TakeLog();
  EXPECT_FALSE(query.Execute());
  EXPECT_EQ(TakeLog(),
            (std::vector<LogLine>{{kError, "dbquery/query",
                                   "Failed to execute statement: a table or column name is no "
                                   "plain identifier"}}));
}

}  // namespace
}  // namespace dorvdbquery
