// How each column of each table is read, whatever its row holds.
#include <gtest/gtest.h>

#include "integration/record/record_test.h"

namespace dorvdl::record {
namespace {

using test_support::AsRead;
using test_support::ColumnFacts;
using test_support::ColumnType;

constexpr const char* kNull = "Null value not allowed for this type";
constexpr const char* kBadCast = "std::bad_cast";

template <typename Record>
class ColumnsTest : public RecordTest<Record> {
 protected:
  ColumnsTest() {
    for (const ColumnFacts& column : this->facts_.columns) {
      SetText(stored_.mutable_proto(), column, SomeValue(column.type));
    }
    this->Store(stored_);
  }

  static const char* SomeValue(ColumnType type) {
    switch (type) {
      case ColumnType::kInt:
        return "-7";
      case ColumnType::kBigint:
        return "1099511627776";
      case ColumnType::kBool:
        return "1";
      case ColumnType::kText:
        break;
    }
    return "ü 'x'";
  }

  // What is read of the row that has @p text in @p column.
  Record WholeBut(const ColumnFacts& column, const std::string& text) const {
    Record record = AsRead(stored_);
    SetText(record.mutable_proto(), column, text);
    return record;
  }

  // What is read of the row up to @p end and no further.
  Record Before(const ColumnFacts& end) const {
    Record record;
    const Record whole = AsRead(stored_);
    for (const ColumnFacts& column : this->facts_.columns) {
      if (&column == &end) {
        break;
      }
      SetText(record.mutable_proto(), column, GetText(whole.proto(), column));
    }
    return record;
  }

  std::string NullDisagreement(const ColumnFacts& column, const char* error) {
    return column.null ? this->Disagreement(WholeBut(column, *column.null))
                       : this->Disagreement(Before(column), error);
  }

  Record stored_;
};
TYPED_TEST_SUITE(ColumnsTest, test_support::EveryRecord);

TYPED_TEST(ColumnsTest, AWholeRowIsReadAndCarriesEveryColumn) {
  EXPECT_EQ(this->Disagreement(AsRead(this->stored_)), "");
  EXPECT_EQ(this->rows_.List({}, dorvdbquery::Condition::Null()).at(0).GetInsertFields(),
            this->facts_.Names());
}

TYPED_TEST(ColumnsTest, ANullReadsAsTheColumnsDefaultOrIsAnError) {
  for (const ColumnFacts& column : this->facts_.columns) {
    this->Store(this->stored_);
    if (column.name == this->facts_.key) {
      this->Replace(column.name, "CAST(NULL AS " + column.SqlType() + ")");
    } else {
      this->raw_.Run("UPDATE " + this->facts_.table + " SET " + column.name + " = NULL");
    }
    EXPECT_EQ(this->NullDisagreement(column, kNull), "") << column.name;
  }
}

TYPED_TEST(ColumnsTest, AMissingColumnIsAnError) {
  for (const ColumnFacts& column : this->facts_.columns) {
    this->Replace(column.name, "");
    EXPECT_EQ(this->Disagreement(this->Before(column), "Column '" + column.name + "' not found"),
              "");
  }
}

TYPED_TEST(ColumnsTest, AValueOfAnotherTypeIsAnError) {
  for (const ColumnFacts& column : this->facts_.columns) {
    for (const char* const type : {"text", "bigint", "integer", "numeric"}) {
      if (column.SqlType() != type) {
        this->Replace(column.name, "CAST('7' AS " + std::string(type) + ")");
        EXPECT_EQ(this->Disagreement(this->Before(column), kBadCast), "")
            << column.name << " " << type;
      }
    }
  }
}

TYPED_TEST(ColumnsTest, ANullOfAnotherTypeIsTheDefaultOrThatError) {
  for (const ColumnFacts& column : this->facts_.columns) {
    this->Replace(column.name, "CAST(NULL AS numeric)");
    EXPECT_EQ(this->NullDisagreement(column, kBadCast), "") << column.name;
  }
}

TYPED_TEST(ColumnsTest, ColumnsAreFoundByNameWhereverTheyStandAtEachExecution) {
  TypeParam record;
  dorvdbquery::SelectQuery query(this->session_.session(), this->facts_.table);
  query.IntoRow(record.RowTarget());
  EXPECT_TRUE(query.Execute());

  std::string reversed;
  for (const std::string& name : this->facts_.Names()) {
    reversed.insert(0, ", " + name);
  }
  this->Soci() << "CREATE TEMPORARY VIEW " << this->facts_.table << " AS SELECT 0 AS extra"
               << reversed << " FROM public." << this->facts_.table;
  EXPECT_EQ(this->Disagreement(AsRead(this->stored_)), "");
  record = TypeParam();
  EXPECT_TRUE(query.Execute());
  EXPECT_EQ(record.proto().ShortDebugString(), AsRead(this->stored_).proto().ShortDebugString());
}

template <typename Record>
class BooleansTest : public ColumnsTest<Record> {};
using RecordsWithBooleans = testing::Types<RssFeed, RssFilter, RssItem, UserSetting>;
TYPED_TEST_SUITE(BooleansTest, RecordsWithBooleans);

TYPED_TEST(BooleansTest, OnlyOneIsTrue) {
  for (const ColumnFacts& column : this->facts_.columns) {
    if (column.type == ColumnType::kBool) {
      this->Store(this->stored_);
      for (const std::string value : {"1", "0", "-1", "2", "257", "2147483647", "-2147483648"}) {
        this->raw_.Run("UPDATE " + this->facts_.table + " SET " + column.name + " = " + value);
        EXPECT_EQ(this->Disagreement(this->WholeBut(column, value == "1" ? "1" : "0")), "")
            << column.name << " " << value;
      }
    }
  }
}

TYPED_TEST(BooleansTest, ABooleanOfTheDatabaseIsReadAsOne) {
  for (const ColumnFacts& column : this->facts_.columns) {
    if (column.type == ColumnType::kBool) {
      this->Replace(column.name, "true");
      EXPECT_EQ(this->Disagreement(this->WholeBut(column, "1")), "") << column.name;
      this->Replace(column.name, "false");
      EXPECT_EQ(this->Disagreement(this->WholeBut(column, "0")), "") << column.name;
    }
  }
}

}  // namespace
}  // namespace dorvdl::record
