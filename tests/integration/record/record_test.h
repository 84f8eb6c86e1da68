// Any record in its table: written, read in every way there is, and found in odd rows.
#ifndef TESTS_INTEGRATION_RECORD_RECORD_TEST_H_
#define TESTS_INTEGRATION_RECORD_RECORD_TEST_H_

#include <dorvdl/db/operator.h>
#include <dorvdl/db/session.h>
#include <dorvdl/dbquery/insert_query.h>
#include <dorvdl/dbquery/select_query.h>
#include <dorvdl/dbquery/update_query.h>
#include <gtest/gtest.h>
#include <soci/soci.h>

#include <algorithm>
#include <optional>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "support/database.h"
#include "support/record_facts.h"

namespace dorvdl::record {

// The table of a record.
template <typename Record>
class Rows : public db::DBOperator<Record> {
 public:
  using db::DBOperator<Record>::DBOperator;
  const char* GetTableName() override { return test_support::FactsOf<Record>().table.c_str(); }
  const char* GetPrimaryKeyName() override { return test_support::FactsOf<Record>().key.c_str(); }
};

template <typename Record>
class RecordTest : public test_support::DatabaseTest {
 protected:
  // Whether the insertion, by the operator or for want of an integer key by a query, succeeded.
  bool Insert(Record& record) {
    if constexpr (test_support::kHasIntegerKey<Record>) {
      return rows_.Create(record);
    } else {
      dorvdbquery::InsertQuery query(session_.session(), facts_.table);
      query.SetInsertAll(record.GetInsertFields());
      query.Values(record.InsertValues());
      return query.Execute();
    }
  }

  // Whether the update of the only row, by the operator or by a query, succeeded.
  bool Update(const Record& record) {
    if constexpr (test_support::kHasIntegerKey<Record>) {
      return rows_.Update(record, dorvdbquery::Condition::Null());
    } else {
      dorvdbquery::UpdateQuery query(session_.session(), facts_.table);
      query.Where(dorvdbquery::Condition::ConditionFactory<std::string>(
          facts_.key, "=", GetText(record.proto(), KeyColumn())));
      record.BindUpdateField(query);
      return query.Execute();
    }
  }

  // What the ways of reading the only row give that is not @p expected and, in what was thrown,
  // not @p thrown; empty when all agree.
  std::string Disagreement(const Record& expected, const std::string& thrown = "") {
    const std::string fields = expected.proto().ShortDebugString();
    std::string differences;
    for (const Reading& reading : ReadInEveryWay()) {
      if (reading.thrown != thrown) {
        differences.append(reading.way).append(" throws \"").append(reading.thrown).append("\"; ");
      }
      if (reading.fields.value_or(fields) != fields) {
        differences.append(reading.way).append(" gives ").append(*reading.fields).append("; ");
      }
    }
    return differences.empty() ? "" : differences + "not " + fields;
  }

  // Hides the table from the session behind a view of it that has another expression for a column,
  // or lacks it.
  void Replace(const std::string& column, const std::string& expression) {
    Unhide();
    std::string list;
    for (const test_support::ColumnFacts& kept : facts_.columns) {
      if (kept.name != column) {
        list.append(list.empty() ? "" : ", ").append(kept.name);
      } else if (!expression.empty()) {
        list.append(list.empty() ? "" : ", ").append(expression).append(" AS ").append(column);
      }
    }
    Soci() << "CREATE TEMPORARY VIEW " << facts_.table << " AS SELECT " << list << " FROM public."
           << facts_.table;
    replaced_ = column;
  }

  // Leaves @p record as the table's only row, and the table in sight.
  void Store(Record& record) {
    Unhide();
    Empty();
    ASSERT_TRUE(Insert(record));
  }

  void Empty() { raw_.Run("DELETE FROM " + facts_.table); }

  const test_support::ColumnFacts& KeyColumn() const {
    const auto is_key = [this](const auto& column) { return column.name == facts_.key; };
    return *std::find_if(facts_.columns.begin(), facts_.columns.end(), is_key);
  }

  // The session under test, to use by SOCI alone.
  soci::session& Soci() { return *session_.session().handle(); }

  const test_support::RecordFacts& facts_ = test_support::FactsOf<Record>();
  db::DBSession session_;
  Rows<Record> rows_{session_};

 private:
  struct Reading {
    const char* way;
    std::optional<std::string> fields;  // unset where an error leaves no record
    std::string thrown;
  };

  template <typename Way>
  static Reading Read(const char* name, bool keeps_fields, const Way& way) {
    Record record;
    std::string thrown;
    try {
      way(record);
    } catch (const std::bad_cast& error) {
      thrown = error.what();
    } catch (const soci::soci_error& error) {
      thrown = typeid(error) == typeid(soci::soci_error) ? "" : typeid(error).name();
      thrown += error.get_error_message();
    }
    const bool has_fields = keeps_fields || thrown.empty();
    return {
        name,
        has_fields ? std::optional<std::string>(record.proto().ShortDebugString()) : std::nullopt,
        thrown};
  }

  std::vector<Reading> ReadInEveryWay() {
    using dorvdbquery::Condition;
    std::vector<Reading> readings = {
        Read("SOCI's into()", true,
             [this](Record& record) {
               Soci() << "SELECT * FROM " << facts_.table, soci::into(record);
             }),
        Read("the decoder", true,
             [this](Record& record) {
               dorvdbquery::SelectQuery query(session_.session(), facts_.table);
               query.IntoRow(record.RowTarget());
               EXPECT_TRUE(query.Execute());
             }),
        Read("List", false,
             [this](Record& record) { record = rows_.List({}, Condition::Null()).at(0); })};
    if constexpr (test_support::kHasIntegerKey<Record>) {
      if (replaced_ != facts_.key) {
        const int key = std::stoi(raw_.Value("SELECT " + facts_.key + " FROM " + facts_.table));
        readings.push_back(Read("Get", false, [this, key](Record& record) {
          record = rows_.Get(key, Condition::Null());
        }));
      }
    }
    return readings;
  }

  void Unhide() {
    if (!replaced_.empty()) {
      Soci() << "DROP VIEW pg_temp." << facts_.table;
      replaced_.clear();
    }
  }

  std::string replaced_;  // the column that the view replaces; empty without a view
};

}  // namespace dorvdl::record

#endif  // TESTS_INTEGRATION_RECORD_RECORD_TEST_H_
