// The library decodes its records' rows itself. Nobody must be able to tell that from SOCI's way.
#include <dorvdl/control/controller.h>
#include <dorvdl/db/operator.h>
#include <dorvdl/record/task.h>
#include <gtest/gtest.h>

#include <typeinfo>

#include "support/database.h"
#include "support/syslog_capture.h"

namespace dorvdl::db {
namespace {

using dorvdbquery::Condition;
using dorvdbquery::SelectQuery;
using record::Task;

// Tasks out of a view of the test's making.
class Tasks : public DBOperator<Task> {
 public:
  using DBOperator::DBOperator;
  const char* GetTableName() override { return "odd_queue"; }
  const char* GetPrimaryKeyName() override { return "id"; }
};

class AgreementTest : public test_support::DatabaseTest {
 protected:
  AgreementTest() {
    raw_.Run(
        "DROP VIEW IF EXISTS odd_queue;"
        "INSERT INTO download_queue VALUES (7, 'alice', 70, 'http://u', 'näme', 2, 100, 200, "
        "1099511627776, 549755813888, 1024, 11, 12, 13, 14, 15, 2048, 4398046511104, 16, 17, 18, "
        "4, 19, 20, 'share/x', 'pw', 21, 'given', 'ref', 'cookie', 1, '{\"a\": \"ü\\\\\"}', 300, "
        "400, -5)");
  }

  // Makes the view one of the table's row with another expression for a column, or without it.
  void View(const std::string& column, const std::string& expression) {
    std::string list = "task_id AS id";
    for (const std::string& name : Task::GetSelectFields()) {
      if (name != column) {
        list.append(", ").append(name);
      } else if (!expression.empty()) {
        list.append(", ").append(expression).append(" AS ").append(name);
      }
    }
    raw_.Run("DROP VIEW IF EXISTS odd_queue; CREATE VIEW odd_queue AS SELECT " + list +
             " FROM download_queue");
  }

  // What a way of reading ends in: the fields, and what was thrown.
  template <typename Way>
  static std::string Outcome(const Way& way) {
    Task task;
    std::string thrown = "nothing";
    try {
      way(task);
    } catch (const soci::soci_error& error) {
      thrown = std::string(typeid(error).name()) + " " + error.get_error_message();
    } catch (const std::exception& error) {
      thrown = std::string(typeid(error).name()) + " " + error.what();
    }
    return task.proto().ShortDebugString() + " thrown: " + thrown;
  }

  dorvdbquery::Session& Session() { return controller_.db_session().session(); }

  std::string BySoci() {
    return Outcome(
        [this](Task& task) { *Session().handle() << "SELECT * FROM odd_queue", soci::into(task); });
  }

  std::string ByDecoder() {
    return Outcome([this](Task& task) {
      SelectQuery query(Session(), "odd_queue");
      query.IntoRow(task.RowTarget());
      EXPECT_TRUE(query.Execute());
    });
  }

  std::string ByGet() {
    return Outcome(
        [this](Task& task) { task = Tasks(controller_.db_session()).Get(7, Condition::Null()); });
  }

  std::string ByList() {
    return Outcome([this](Task& task) {
      task = Tasks(controller_.db_session()).List({}, Condition::Null()).at(0);
    });
  }

  // What was thrown, without the fields: a list or a get that throws returns no record.
  static std::string Thrown(const std::string& outcome) {
    return outcome.substr(outcome.rfind(" thrown: "));
  }

  void ExpectAgreement(const std::string& what) {
    const std::string expected = BySoci();
    EXPECT_EQ(ByDecoder(), expected) << what;
    if (Thrown(expected) == " thrown: nothing") {
      EXPECT_EQ(ByGet(), expected) << what;
      EXPECT_EQ(ByList(), expected) << what;
    } else {
      EXPECT_EQ(Thrown(ByGet()), Thrown(expected)) << what;
      EXPECT_EQ(Thrown(ByList()), Thrown(expected)) << what;
    }
  }

  control::Controller controller_;
};

TEST_F(AgreementTest, AWholeRow) {
  View("", "");
  ExpectAgreement("as it is");
  EXPECT_NE(BySoci().find("task_id: 7 username: \"alice\""), std::string::npos);
}

TEST_F(AgreementTest, ANullInEachColumn) {
  for (const std::string& column : Task::GetSelectFields()) {
    View(column, "CASE WHEN task_id < 0 THEN " + column + " END");
    ExpectAgreement(column);
  }
}

TEST_F(AgreementTest, EachColumnMissing) {
  for (const std::string& column : Task::GetSelectFields()) {
    View(column, "");
    EXPECT_NE(BySoci().find("Column '" + column + "' not found"), std::string::npos);
    ExpectAgreement(column);
  }
}

// What stands before a column that cannot be read stays in the record, what follows is not set.
TEST_F(AgreementTest, ReadingEndsAtTheFirstColumnThatCannotBeRead) {
  const std::string before = "task_id: 7 username: \"alice\" pid: 70 url: \"http://u\" thrown: ";
  const auto expect_end = [&](const std::string& expression, const std::string& error) {
    View("filename", expression);
    for (const std::string& outcome : {BySoci(), ByDecoder()}) {
      EXPECT_EQ(outcome.find(before), 0U) << outcome;
      EXPECT_NE(outcome.find(error), std::string::npos) << outcome;
    }
  };
  expect_end("", "Column 'filename' not found");
  expect_end("7", "std::bad_cast");
}

TEST_F(AgreementTest, EachColumnUnderANameInCapitals) {
  const auto named = [](const std::string& column, const std::string& name) {
    return column + " AS \"" + name + "\", NULL::integer";
  };
  for (const std::string column : {"task_id", "filename", "file_oid"}) {
    std::string capitalised = column;
    capitalised[0] = static_cast<char>(column[0] - 'a' + 'A');
    for (const std::string& other : {capitalised, column + "X"}) {
      View(column, named(column, other));
      ExpectAgreement(other);
    }
  }
}

// Values of every type that SOCI knows, among them the odd ones of each.
const char* const kValues[] = {"7::smallint",
                               "7::bigint",
                               "7::integer",
                               "2147483647",
                               "(-2147483648)",
                               "7::numeric",
                               "'NaN'::numeric",
                               "7::real",
                               "7::double precision",
                               "'NaN'::double precision",
                               "true",
                               "false",
                               "7::oid",
                               "2147483647::oid",
                               "'7'::text",
                               "''::text",
                               "'t'::text",
                               "'null'::text",
                               "'\"'::text",
                               "'7'::varchar",
                               "'7'::char(5)",
                               "'7'::name",
                               "'7'::\"char\"",
                               "'7'::bytea",
                               "'{\"a\":1}'::json",
                               "'7'::xml",
                               "'00000000-0000-0000-0000-000000000007'::uuid",
                               "now()",
                               "now()::timestamp",
                               "current_date",
                               "localtime",
                               "current_time",
                               "inet_client_addr()",
                               "array[1]",
                               "B'101'",
                               "'1'::jsonb",
                               "'a'::tsvector",
                               "int4range(1, 2)"};

TEST_F(AgreementTest, ValuesOfOtherTypesInColumnsOfEachKind) {
  for (const char* const column : {"task_id", "pid", "total_size", "filename", "extra_data"}) {
    for (const std::string value : kValues) {
      View(column, value);
      ExpectAgreement(std::string(column) + " " + value);
      View(column, "NULL::" + raw_.Value("SELECT pg_typeof(" + value + ")"));
      ExpectAgreement(std::string(column) + " NULL of " + value);
    }
  }
}

TEST_F(AgreementTest, AnObjectIdBeyondTheSignedRangeIsAnErrorEitherWay) {
  for (const char* const column : {"task_id", "file_oid"}) {
    View(column, "2147483648::oid");
    const std::string thrown = Thrown(BySoci());
    EXPECT_NE(thrown.find("Cannot convert data."), std::string::npos) << thrown;
    EXPECT_EQ(Thrown(ByDecoder()), thrown);
    EXPECT_EQ(Thrown(ByGet()), thrown);
    EXPECT_EQ(Thrown(ByList()), thrown);
  }
}

// SOCI knows no values of fixed length beyond its list, and says so in its own words.
TEST_F(AgreementTest, ATypeThatSociDoesNotKnowIsAnErrorEitherWay) {
  View("pid", "make_interval(1)");
  EXPECT_NE(BySoci().find("unknown data type"), std::string::npos);
  EXPECT_EQ(Thrown(ByGet()), " thrown: St8bad_cast std::bad_cast");
  EXPECT_EQ(Thrown(ByList()), " thrown: St8bad_cast std::bad_cast");
}

// The one difference: SOCI looks at every column of a row, the decoder at the record's.
TEST_F(AgreementTest, ColumnsThatTheRecordLacksDisturbSociOnly) {
  for (const std::string value : {"point(1, 2)", "4294967295::oid", "'infinity'::date"}) {
    View("pid", value + " AS extra, pid");
    EXPECT_EQ(BySoci().find(" thrown: "), 0U) << value;
    EXPECT_EQ(Thrown(ByDecoder()), " thrown: nothing") << value;
    EXPECT_EQ(ByGet(), ByDecoder()) << value;
  }
}

}  // namespace
}  // namespace dorvdl::db
