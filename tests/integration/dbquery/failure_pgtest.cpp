// What the server refuses: false, and one line in the log that tells no value.
#include <gtest/gtest.h>

#include "integration/dbquery/query_test.h"

namespace dorvdbquery {
namespace {

using test_support::LogLine;
using test_support::TakeLog;

constexpr char kSecret[] = "hunter2-Passw0rd";

class FailureTest : public QueryTest {
 protected:
  // Expects the query to fail with this one line, and the session to go on.
  void ExpectFailure(Query& query, const std::string& why) {
    EXPECT_FALSE(query.Execute());
    const Lines lines = TakeLog();
    EXPECT_EQ(lines, Lines{Failed(why)});
    for (const LogLine& line : lines) {
      EXPECT_EQ(line.text.find(kSecret), std::string::npos) << line.text;
    }
    EXPECT_TRUE(session_.Good());
  }
};

TEST_F(FailureTest, AMissingTable) {
  SelectQuery query(session_, "missing");
  query.Where(Condition::ConditionFactory<std::string>("name", "=", kSecret));
  ExpectFailure(query,
                "[42P01] relation \"missing\" does not exist: SELECT * FROM \"missing\" "
                "WHERE name = $1");
}

TEST_F(FailureTest, AMissingColumn) {
  UpdateQuery query(session_, "item");
  query.SetFactory<std::string>("nmae", kSecret);
  ExpectFailure(query,
                "[42703] column \"nmae\" of relation \"item\" does not exist: UPDATE \"item\" SET "
                "\"nmae\" = $1");
}

TEST_F(FailureTest, AValueOfTheWrongFormIsNotQuoted) {
  DeleteQuery query(session_, "item");
  query.Where(Condition::ConditionFactory<std::string>("id", "=", kSecret));
  ExpectFailure(query, "[22P02] invalid value: DELETE FROM \"item\" WHERE id = $1");
}

TEST_F(FailureTest, AValueOutOfRangeIsNotQuoted) {
  UpdateQuery query(session_, "item");
  query.SetFactory<long long>("pid", 1LL << 40);
  ExpectFailure(query, "[22003] invalid value: UPDATE \"item\" SET \"pid\" = $1");
}

TEST_F(FailureTest, BytesThatAreNoTextAreNotQuoted) {
  UpdateQuery query(session_, "item");
  query.SetFactory<std::string>("name", std::string(kSecret) + "\xff\xfe");
  ExpectFailure(query, "[22021] invalid value: UPDATE \"item\" SET \"name\" = $1");
}

TEST_F(FailureTest, APatternThatIsNoneIsNotQuoted) {
  SelectQuery query(session_, "item");
  raw_.Run("INSERT INTO item (id, name) VALUES (1, 'a')");
  query.Where(Condition::ConditionFactory<std::string>("name", "~", std::string(kSecret) + "("));
  ExpectFailure(query, "[2201B] invalid value: SELECT * FROM \"item\" WHERE name ~ $1");
}

TEST_F(FailureTest, ADuplicateKeyIsToldWithoutItsDetail) {
  raw_.Run("CREATE UNIQUE INDEX item_name ON item (name)");
  raw_.Run(std::string("INSERT INTO item (id, name) VALUES (1, '") + kSecret + "')");
  InsertQuery query(session_, "item");
  query.SetInsertAll({"id", "name"});
  query.Values({ToParameter(2), ToParameter(kSecret)});
  ExpectFailure(query,
                "[23505] duplicate key value violates unique constraint \"item_name\": INSERT INTO "
                "\"item\" (\"id\", \"name\") VALUES ($1, $2)");
}

TEST_F(FailureTest, AMissingValueIsToldWithoutTheRow) {
  InsertQuery query(session_, "item");
  query.SetInsertAll({"name"});
  query.Values({ToParameter(kSecret)});
  ExpectFailure(query,
                "[23502] null value in column \"id\" of relation \"item\" violates not-null "
                "constraint: INSERT INTO \"item\" (\"name\") VALUES ($1)");
}

TEST_F(FailureTest, ABrokenCheckIsToldWithoutTheRow) {
  raw_.Run("ALTER TABLE item ADD CONSTRAINT short CHECK (length(name) < 3)");
  InsertQuery query(session_, "item");
  query.SetInsertAll({"id", "name"});
  query.Values({ToParameter(1), ToParameter(kSecret)});
  ExpectFailure(query,
                "[23514] new row for relation \"item\" violates check constraint \"short\": INSERT "
                "INTO \"item\" (\"id\", \"name\") VALUES ($1, $2)");
}

TEST_F(FailureTest, AFunctionThatDoesNotFit) {
  SelectQuery query(session_, "item");
  query.Where(Condition::HasSubstring("pid", kSecret));
  ExpectFailure(query,
                "[42883] function strpos(integer, unknown) does not exist: SELECT * FROM \"item\" "
                "WHERE strpos(\"pid\", $1) > 0");
}

TEST_F(FailureTest, ATableOfSomebodyElse) {
  SelectQuery query(session_, "pg_authid");
  ExpectFailure(query,
                "[42501] permission denied for table pg_authid: SELECT * FROM \"pg_authid\"");
}

TEST_F(FailureTest, AStatementThatTakesTooLong) {
  Direct("SET statement_timeout = 50");
  int one = 0;
  SelectQuery query(session_, "item");
  raw_.Run("INSERT INTO item (id) VALUES (1)");
  query.SelectField<int>("(SELECT 1 FROM pg_sleep(30))", one);
  ExpectFailure(query,
                "[57014] canceling statement due to statement timeout: SELECT (SELECT 1 FROM "
                "pg_sleep(30)) FROM \"item\"");
}

TEST_F(FailureTest, ALockThatIsNotHadInTime) {
  Direct("SET lock_timeout = 50");
  raw_.Run("BEGIN; LOCK TABLE item");
  SelectQuery query(session_, "item");
  ExpectFailure(query, "[55P03] canceling statement due to lock timeout: SELECT * FROM \"item\"");
  raw_.Run("ROLLBACK");
}

TEST_F(FailureTest, AWriteInAReadOnlyTransaction) {
  Direct("SET default_transaction_read_only = on");
  DeleteQuery query(session_, "item");
  ExpectFailure(query,
                "[25006] cannot execute DELETE in a read-only transaction: DELETE FROM \"item\"");
}

TEST_F(FailureTest, AnythingAfterAFailureInATransaction) {
  const DefaultTransaction transaction(session_);
  SelectQuery missing(session_, "missing");
  EXPECT_FALSE(missing.Execute());
  TakeLog();
  SelectQuery query(session_, "item");
  ExpectFailure(query,
                "[25P02] current transaction is aborted, commands ignored until end of transaction "
                "block: SELECT * FROM \"item\"");
}

TEST_F(FailureTest, AnErrorInALaterRowFailsTheWholeStatement) {
  raw_.Run("INSERT INTO item (id, pid) VALUES (1, 1), (2, 0)");
  int quotient = 77;
  SelectQuery query(session_, "item");
  query.SelectField<int>("1 / pid", quotient);
  ExpectFailure(query, "[22012] invalid value: SELECT 1 / pid FROM \"item\"");
  EXPECT_EQ(quotient, 77);
  EXPECT_FALSE(query.Fetch());
}

TEST_F(FailureTest, NegativeLimitsAndOffsets) {
  SelectQuery limited(session_, "item");
  limited.Limit(-1);
  ExpectFailure(limited, "[2201W] invalid value: SELECT * FROM \"item\" LIMIT $1");
  SelectQuery skipping(session_, "item");
  skipping.Offset(-2147483647 - 1);
  ExpectFailure(skipping, "[2201X] invalid value: SELECT * FROM \"item\" OFFSET $1");
}

TEST_F(FailureTest, AnEmbeddedNulIsRefusedWhereverItIsBound) {
  const std::string nul = std::string(kSecret) + std::string("\0x", 2);
  SelectQuery select(session_, "item");
  select.Where(Condition::ConditionFactory<std::string>("name", "=", nul));
  UpdateQuery update(session_, "item");
  update.SetFactory<std::string>("name", nul);
  InsertQuery insert(session_, "item");
  insert.SetInsertAll({"id", "name"});
  insert.Values({ToParameter(1), ToParameter(nul)});
  for (Query* query : std::initializer_list<Query*>{&select, &update, &insert}) {
    ExpectFailure(*query, "a text value has an embedded NUL");
  }
  EXPECT_EQ(Stored(), Rows{});
}

TEST_F(FailureTest, ALostConnection) {
  test_support::TerminateOtherSessions(raw_);
  SelectQuery query(session_, "item");
  for (int time = 0; time < 2; ++time) {
    EXPECT_FALSE(query.Execute());
    EXPECT_EQ(TakeLog(), Lines{Failed("[08006] the connection to the server is lost: SELECT * "
                                      "FROM \"item\"")});
    EXPECT_FALSE(query.Fetch());
  }
}

}  // namespace
}  // namespace dorvdbquery
