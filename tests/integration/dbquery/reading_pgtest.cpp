// Reading rows into targets, and what happens when a row cannot be read.
#include <gtest/gtest.h>
#include <soci/postgresql/soci-postgresql.h>

#include <stdexcept>
#include <typeinfo>

#include "integration/dbquery/query_test.h"

namespace dorvdbquery {
namespace {

// Read through SOCI by a conversion of its own.
struct Item {
  int id = -1;
  std::string name = "untouched";
  int pid = -1;
};

}  // namespace
}  // namespace dorvdbquery

template <>
struct soci::type_conversion<dorvdbquery::Item> {
  using base_type = values;
  static void from_base(const values& row, indicator, dorvdbquery::Item& item) {
    item.id = row.get<int>("id");
    item.name = row.get<std::string>("name");
    item.pid = row.get<int>("pid");
    if (item.name == "thrown") {
      throw std::runtime_error("by the conversion");
    }
    if (item.name == "asked") {  // as a conversion does that asks a database itself
      throw soci::postgresql_soci_error("by the conversion", "08006");
    }
  }
};

namespace dorvdbquery {
namespace {

class ReadingTest : public QueryTest {
 protected:
  // A select of all columns in the order of the ids.
  SelectQuery& Ordered(SelectQuery& query) {
    query.OrderBy("id", SelectBase::kAscending);
    query.Where(Condition::ConditionFactory<std::string>("'s3cret'", "=", "s3cret"));
    return query;
  }
};

// Expects the call to throw exactly a plain SOCI error with this text.
template <typename Call>
void ExpectBareError(const Call& call, const std::string& text) {
  try {
    call();
    ADD_FAILURE() << "nothing was thrown";
  } catch (const soci::soci_error& error) {
    EXPECT_EQ(typeid(error), typeid(soci::soci_error));
    EXPECT_EQ(error.what(), text);
    EXPECT_EQ(error.get_error_message(), text);
  }
}

TEST_F(ReadingTest, ASelectWithoutRowsIsTrueAndLeavesItsTargetsUntouched) {
  int id = 77;
  Item item;
  SelectQuery fields(session_, "item");
  fields.SelectField<int>("id", id);
  EXPECT_TRUE(fields.Execute());
  EXPECT_EQ(id, 77);
  EXPECT_EQ(fields.RowCount(), 0);
  EXPECT_FALSE(fields.Fetch());
  SelectQuery record(session_, "item");
  record.Into(item);
  EXPECT_TRUE(record.Execute());
  EXPECT_TRUE(record.ExecuteWithoutPreFetch());
  EXPECT_FALSE(record.Fetch());
  EXPECT_EQ(item.name, "untouched");
  EXPECT_EQ(test_support::TakeLog(), Lines{});
}

TEST_F(ReadingTest, ADatabaseErrorOfTheConversionIsNoAnswerOfTheServers) {
  raw_.Run("INSERT INTO item (id, name) VALUES (1, 'asked'), (2, 'fine')");
  DefaultTransaction transaction(session_);
  Item item;
  SelectQuery query(session_, "item");
  query.Into(item);
  ExpectBareError([&] { Ordered(query).Execute(); }, "by the conversion");
  EXPECT_TRUE(query.Fetch());
  EXPECT_EQ(item.name, "fine");
  EXPECT_TRUE(query.ExecuteWithoutPreFetch());
  ExpectBareError([&] { query.Fetch(); }, "by the conversion");
  EXPECT_EQ(test_support::TakeLog(), Lines{});
  EXPECT_TRUE(session_.Good());
  EXPECT_TRUE(Insert(3));
  EXPECT_TRUE(transaction.Commit());
}

TEST_F(ReadingTest, ExecuteReadsTheFirstRowAndFetchGoesOnWithTheSecond) {
  raw_.Run("INSERT INTO item (id) VALUES (1), (2)");
  int id = 0;
  SelectQuery query(session_, "item");
  query.SelectField<int>("id", id);
  query.OrderBy("id", SelectBase::kAscending);
  ASSERT_TRUE(query.Execute());
  EXPECT_EQ(id, 1);
  EXPECT_EQ(query.RowCount(), 2);
  EXPECT_TRUE(query.Fetch());
  EXPECT_EQ(id, 2);
  EXPECT_FALSE(query.Fetch());
  EXPECT_FALSE(query.Fetch());
  EXPECT_EQ(id, 2);
}

TEST_F(ReadingTest, AQueryCanBeExecutedAgain) {
  raw_.Run("INSERT INTO item (id, name) VALUES (1, 'a')");
  Item item;
  SelectQuery query(session_, "item");
  query.Into(item);
  query.Where(Condition::ConditionFactory<int>("id", "=", 1));
  ASSERT_TRUE(query.Execute());
  raw_.Run("UPDATE item SET name = 'changed'");
  ASSERT_TRUE(query.Execute());
  EXPECT_EQ(item.name, "changed");
}

TEST_F(ReadingTest, WithoutAnExecutionThereIsNothingToFetch) {
  int id = 77;
  SelectQuery query(session_, "missing");
  query.SelectField<int>("id", id);
  EXPECT_FALSE(query.Fetch());
  EXPECT_FALSE(query.Execute());
  EXPECT_FALSE(query.Fetch());
  EXPECT_EQ(query.RowCount(), 0);
  EXPECT_EQ(id, 77);
}

TEST_F(ReadingTest, ANullForAFieldIsABareErrorAndTheNextFetchGoesOn) {
  raw_.Run("INSERT INTO item (id, pid) VALUES (1, 10), (2, NULL), (3, 30)");
  int pid = 0;
  SelectQuery query(session_, "item");
  query.SelectField<int>("pid", pid);
  ASSERT_TRUE(Ordered(query).ExecuteWithoutPreFetch());
  ASSERT_TRUE(query.Fetch());
  EXPECT_EQ(pid, 10);
  ExpectBareError([&] { query.Fetch(); }, "Null value fetched and no indicator defined.");
  ASSERT_TRUE(query.Fetch());
  EXPECT_EQ(pid, 30);
  EXPECT_FALSE(query.Fetch());
}

TEST_F(ReadingTest, ANullForARecordIsABareErrorAndTheNextFetchGoesOn) {
  raw_.Run("INSERT INTO item (id, name, pid) VALUES (1, 'a', 10), (2, 'b', NULL), (3, 'c', 30)");
  Item item;
  SelectQuery query(session_, "item");
  query.Into(item);
  ASSERT_TRUE(Ordered(query).ExecuteWithoutPreFetch());
  ASSERT_TRUE(query.Fetch());
  EXPECT_EQ(item.pid, 10);
  ExpectBareError([&] { query.Fetch(); }, "Null value not allowed for this type");
  EXPECT_EQ(item.name, "b") << "what was read before stays";
  EXPECT_EQ(item.pid, 10);
  ASSERT_TRUE(query.Fetch());
  EXPECT_EQ(item.pid, 30);
  EXPECT_FALSE(query.Fetch());
}

TEST_F(ReadingTest, AFirstRowThatCannotBeReadLeavesTheRestToFetch) {
  raw_.Run("INSERT INTO item (id, name, pid) VALUES (1, 'a', NULL), (2, 'b', 20)");
  Item item;
  SelectQuery query(session_, "item");
  query.Into(item);
  ExpectBareError([&] { Ordered(query).Execute(); }, "Null value not allowed for this type");
  EXPECT_EQ(query.RowCount(), 2);
  ASSERT_TRUE(query.Fetch());
  EXPECT_EQ(item.name, "b");
  EXPECT_FALSE(query.Fetch());
}

TEST_F(ReadingTest, AValueOfAnotherTypeIsABadCast) {
  raw_.Run("INSERT INTO item (id, name, pid) VALUES (1, 'a', 10)");
  raw_.Run("ALTER TABLE item ALTER pid TYPE bigint");
  Item item;
  SelectQuery query(session_, "item");
  query.Into(item);
  EXPECT_THROW(query.Execute(), std::bad_cast);
  EXPECT_EQ(item.name, "a");
  EXPECT_EQ(IdsWhere(Condition::Null()), std::vector<int>{1});
}

TEST_F(ReadingTest, AMissingColumnIsABareError) {
  raw_.Run("INSERT INTO item (id, name) VALUES (1, 'a')");
  raw_.Run("ALTER TABLE item DROP pid");
  Item item;
  SelectQuery query(session_, "item");
  query.Into(item);
  ExpectBareError([&] { query.Execute(); }, "Column 'pid' not found");
  EXPECT_EQ(IdsWhere(Condition::Null()), std::vector<int>{1});
}

TEST_F(ReadingTest, WhatAConversionThrowsPassesAndTheNextFetchGoesOn) {
  raw_.Run("INSERT INTO item (id, name) VALUES (1, 'thrown'), (2, 'b')");
  Item item;
  SelectQuery query(session_, "item");
  query.Into(item);
  ASSERT_TRUE(Ordered(query).ExecuteWithoutPreFetch());
  EXPECT_THROW(query.Fetch(), std::runtime_error);
  ASSERT_TRUE(query.Fetch());
  EXPECT_EQ(item.name, "b");
}

TEST_F(ReadingTest, AReadingErrorIsNotLogged) {
  raw_.Run("INSERT INTO item (id, pid) VALUES (1, NULL)");
  int pid = 0;
  SelectQuery query(session_, "item");
  query.SelectField<int>("pid", pid);
  EXPECT_THROW(query.Execute(), soci::soci_error);
  EXPECT_EQ(test_support::TakeLog(), Lines{});
}

TEST_F(ReadingTest, ATransactionGoesOnAfterAReadingError) {
  DefaultTransaction transaction(session_);
  ASSERT_TRUE(Insert(1));
  std::string name;
  SelectQuery query(session_, "item");
  query.SelectField<std::string>("name", name);
  ExpectBareError([&] { query.Execute(); }, "Null value fetched and no indicator defined.");
  EXPECT_TRUE(Insert(2));
  EXPECT_TRUE(transaction.Commit());
  EXPECT_EQ(Stored(), (Rows{"1", "2"}));
}

TEST_F(ReadingTest, AReturnedKeyThatDoesNotFitIsAnErrorOfTheReader) {
  int key = 77;
  InsertQuery query(session_, "item");
  query.SetInsertAll({"id", "size"});
  query.Values({ToParameter(1), ToParameter(1LL << 40)});
  query.Returning("size", key);
  ExpectBareError([&] { query.Execute(); }, "Cannot convert data.");
  EXPECT_EQ(Stored(), Rows{"1"});
}

TEST_F(ReadingTest, ASecondReturningReplacesTheFirst) {
  int first = 77;
  std::string second;
  InsertQuery query(session_, "item");
  query.SetInsertAll({"id", "name"});
  query.Values({ToParameter(1), ToParameter("a")});
  query.Returning("id", first);
  query.Returning("name", second);
  EXPECT_TRUE(query.Execute());
  EXPECT_EQ(first, 77);
  EXPECT_EQ(second, "a");
  EXPECT_EQ(Stored(), Rows{"1"});
}

TEST_F(ReadingTest, WithoutATargetRowsAreCountedAndNotFetched) {
  raw_.Run("INSERT INTO item (id) VALUES (1), (2)");
  SelectQuery query(session_, "item");
  EXPECT_FALSE(query.Fetch());
  EXPECT_TRUE(query.Execute());
  EXPECT_EQ(query.RowCount(), 2);
  EXPECT_FALSE(query.Fetch());
  EXPECT_TRUE(query.ExecuteWithoutPreFetch());
  EXPECT_EQ(query.RowCount(), 2);
  EXPECT_FALSE(query.Fetch());
  query.Where(!Condition::Null());
  EXPECT_TRUE(query.Execute());
  EXPECT_EQ(query.RowCount(), 0);
  EXPECT_EQ(test_support::TakeLog(), Lines{});
}

TEST_F(ReadingTest, FieldsOfAllKindsAreRead) {
  raw_.Run("INSERT INTO item (id, name, size) VALUES (-2147483648, '', -9223372036854775808)");
  int id = 0;
  long long size = 0;
  std::string name = "x";
  long long count = 0;
  SelectQuery query(session_, "item");
  query.SelectField("id", id);
  query.SelectField("size", size);
  query.SelectField("name", name);
  query.SelectField("COUNT(*) OVER ()", count);
  ASSERT_TRUE(query.Execute());
  EXPECT_EQ(id, -2147483647 - 1);
  EXPECT_EQ(size, -9223372036854775807LL - 1);
  EXPECT_EQ(name, "");
  EXPECT_EQ(count, 1);
}

}  // namespace
}  // namespace dorvdbquery
