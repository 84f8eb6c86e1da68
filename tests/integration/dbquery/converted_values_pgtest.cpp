// Inserting what a conversion to SOCI's values gives, whatever types it uses.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <stdexcept>

#include "integration/dbquery/query_test.h"

namespace dorvdbquery {
namespace {

// Converted by the function that a test gives it.
struct Converted {
  std::function<void(soci::values&)> fill;
};

}  // namespace
}  // namespace dorvdbquery

template <>
struct soci::type_conversion<dorvdbquery::Converted> {
  using base_type = values;
  static void to_base(const dorvdbquery::Converted& record, values& row, indicator& row_indicator) {
    record.fill(row);
    row_indicator = i_ok;
  }
};

namespace dorvdbquery {
namespace {

class ConvertedValuesTest : public QueryTest {
 protected:
  ConvertedValuesTest() { raw_.Run("ALTER TABLE item ALTER size TYPE numeric"); }

  // Inserts these columns and returns the row as another session sees it.
  std::string Inserted(const std::vector<std::string>& columns,
                       const std::function<void(soci::values&)>& fill) {
    InsertQuery query(session_, "item");
    query.SetInsertAll(columns);
    query.Use(Converted{fill});
    EXPECT_TRUE(query.Execute());
    return raw_.Value("DELETE FROM item RETURNING id, name, pid, size");
  }

  // The same for one value of the column "size".
  template <typename T>
  std::string InsertedSize(T value) {
    return Inserted({"id", "size"}, [value](soci::values& values) {
      values.set("id", 1);
      values.set("size", value);
    });
  }
};

TEST_F(ConvertedValuesTest, NamedColumnsAreTakenByNameAndOthersLeftOut) {
  EXPECT_EQ(Inserted({"name", "id"},
                     [](soci::values& values) {
                       values.set("id", 1);
                       values.set("pid", 99);
                       values.set("name", std::string("o'neil; --"));
                     }),
            "1|o'neil; --|0|NULL");
}

TEST_F(ConvertedValuesTest, WholeNumbersOfEveryTypeAreTaken) {
  EXPECT_EQ(InsertedSize(static_cast<short>(-5)), "1|NULL|0|-5");
  EXPECT_EQ(InsertedSize(-2147483647 - 1), "1|NULL|0|-2147483648");
  EXPECT_EQ(InsertedSize(9223372036854775807LL), "1|NULL|0|9223372036854775807");
  EXPECT_EQ(InsertedSize(18446744073709551615ULL), "1|NULL|0|18446744073709551615");
  EXPECT_EQ(InsertedSize(std::int64_t{1} << 40), "1|NULL|0|1099511627776");
  EXPECT_EQ(InsertedSize(std::uint64_t{1} << 63), "1|NULL|0|9223372036854775808");
}

TEST_F(ConvertedValuesTest, AFractionKeepsItsDigits) {
  EXPECT_EQ(InsertedSize(0.1), "1|NULL|0|0.10000000000000001");
  EXPECT_EQ(InsertedSize(-1e300 * 1e10), "1|NULL|0|-Infinity");
}

TEST_F(ConvertedValuesTest, ANullIsTaken) {
  EXPECT_EQ(Inserted({"id", "name", "pid"},
                     [](soci::values& values) {
                       values.set("id", 1);
                       // SOCI takes a first indicator for "ok".
                       for (int time = 0; time < 2; ++time) {
                         values.set("name", std::string("x"), soci::i_null);
                         values.set("pid", 5, soci::i_null);
                       }
                     }),
            "1|NULL|NULL|NULL");
}

TEST_F(ConvertedValuesTest, AValueSetAgainIsTheLatestOne) {
  EXPECT_EQ(Inserted({"id", "name"},
                     [](soci::values& values) {
                       values.set("id", 1);
                       values.set("name", std::string("first"));
                       values.set("name", std::string("second"));
                     }),
            "1|second|0|NULL");
}

TEST_F(ConvertedValuesTest, ANamedColumnWithoutAValueIsAnError) {
  InsertQuery query(session_, "item");
  query.SetInsertAll({"id", "name"});
  EXPECT_THROW(query.Use(Converted{[](soci::values& values) { values.set("id", 1); }}),
               soci::soci_error);
  EXPECT_FALSE(query.Execute());
  EXPECT_EQ(Stored(), Rows{});
  EXPECT_TRUE(Insert(1)) << "the session goes on";
}

TEST_F(ConvertedValuesTest, WhatTheConversionThrowsPasses) {
  InsertQuery query(session_, "item");
  query.SetInsertAll({"id"});
  EXPECT_THROW(query.Use(Converted{[](soci::values& values) {
    values.set("id", 1);
    throw std::logic_error("by the conversion");
  }}),
               std::logic_error);
  EXPECT_TRUE(Insert(1)) << "the session goes on";
}

TEST_F(ConvertedValuesTest, AnEmbeddedNulIsRefused) {
  InsertQuery query(session_, "item");
  query.SetInsertAll({"id", "name"});
  query.Use(Converted{[](soci::values& values) {
    values.set("id", 1);
    values.set("name", std::string("a\0b", 3));
  }});
  EXPECT_FALSE(query.Execute());
  EXPECT_EQ(test_support::TakeLog(), Lines{Failed("a text value has an embedded NUL")});
}

TEST_F(ConvertedValuesTest, WithoutAConnectionTheFailureNamesIt) {
  const Session unconnected;
  InsertQuery query(unconnected, "item");
  query.SetInsertAll({"id"});
  query.Use(Converted{[](soci::values& values) { values.set("id", 1); }});
  EXPECT_FALSE(query.Execute());
  EXPECT_EQ(test_support::TakeLog(), Lines{Failed("the session has no connection")});
}

}  // namespace
}  // namespace dorvdbquery
