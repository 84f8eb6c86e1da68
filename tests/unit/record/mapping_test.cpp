// What every record does with its columns, without a server.
#include <dorvdl/dbquery/update_query.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <type_traits>

#include "support/record_facts.h"
#include "support/slot.h"
#include "support/sql_matchers.h"

namespace dorvdl::record {
namespace {

using dorvdbquery::Parameter;
using dorvdbquery::Session;
using dorvdbquery::UpdateQuery;
using test_support::AsRead;
using test_support::ColumnFacts;
using test_support::ColumnType;
using test_support::FactsOf;
using test_support::kHasIntegerKey;
using test_support::RecordFacts;
using test_support::Show;
using test_support::Slot;

using Names = std::vector<std::string>;

std::string ShownUpdate(const dorvdbquery::Updatable& record) {
  const Session session;
  UpdateQuery query(session, "t");
  record.BindUpdateField(query);
  return Show(query);
}

// A value unlike that of the columns beside it.
std::string SomeValue(const RecordFacts& facts, const ColumnFacts& column) {
  const auto number = &column - facts.columns.data();
  switch (column.type) {
    case ColumnType::kInt:
      return std::to_string(number - 5);
    case ColumnType::kBigint:
      return std::to_string((1LL << 40) + number);
    case ColumnType::kBool:
      return std::to_string(number % 2);
    case ColumnType::kText:
      break;
  }
  return number % 4 == 1 ? "" : "ü " + std::to_string(number);
}

// The update that a record with these columns is to give, in the tests' words.
std::string ExpectedUpdate(const RecordFacts& facts,
                           const std::vector<const ColumnFacts*>& columns) {
  std::string text;
  std::string values;
  int number = 0;
  for (const ColumnFacts* const column : columns) {
    if (column->name != facts.key || facts.updates_key) {
      const std::string place = "$" + std::to_string(++number);
      text += (text.empty() ? "UPDATE \"t\" SET \"" : ", \"") + column->name + "\" = " + place;
      values += " [" + place + "=" + SomeValue(facts, *column) + "]";
    }
  }
  return text + values;
}

// The content that a conversion gives. SOCI frees it through a statement only, so this must not be
// a leak: without a server there is no statement.
const soci::values& ValuesOf(const RecordBase& record) {
  static auto& kept = *new std::deque<soci::values>;
  soci::indicator indicator = soci::i_null;
  record.soci_ToBase(kept.emplace_back(), indicator);
  EXPECT_EQ(indicator, soci::i_ok);
  return kept.back();
}

// The value set for a column, read as the column's type and no other.
std::string ValueOf(const soci::values& values, const ColumnFacts& column) {
  EXPECT_EQ(values.get_indicator(column.name), soci::i_ok) << column.name;
  switch (column.type) {
    case ColumnType::kInt:
    case ColumnType::kBool:
      return std::to_string(values.get<int>(column.name));
    case ColumnType::kBigint:
      return std::to_string(values.get<long long>(column.name));
    case ColumnType::kText:
      break;
  }
  return values.get<std::string>(column.name);
}

template <typename Record>
class MappingTest : public testing::Test {
 protected:
  // A record that carries the columns that @p chosen holds for.
  template <typename Choice>
  static Record With(const Choice& chosen) {
    Record record;
    for (const ColumnFacts& column : facts_.columns) {
      if (chosen(column)) {
        SetText(record.mutable_proto(), column, SomeValue(facts_, column));
      }
    }
    return record;
  }

  static Record Whole() {
    return With([](const ColumnFacts&) { return true; });
  }

  static Record WithNothingBut(const ColumnFacts& only) {
    return With([&only](const ColumnFacts& column) { return &column == &only; });
  }

  static inline const RecordFacts& facts_ = FactsOf<Record>();
};
TYPED_TEST_SUITE(MappingTest, test_support::EveryRecord);

TYPED_TEST(MappingTest, TheMessageHasOneFieldPerColumn) {
  const TypeParam record;
  for (const ColumnFacts& column : this->facts_.columns) {
    EXPECT_NO_THROW(FieldOf(record.proto(), column));
  }
  EXPECT_EQ(static_cast<std::size_t>(record.proto().GetDescriptor()->field_count()),
            this->facts_.columns.size());
}

TYPED_TEST(MappingTest, ADefaultRecordCarriesNothing) {
  const TypeParam record;
  EXPECT_FALSE(record.IsValid());
  EXPECT_TRUE(record.GetInsertFields().empty());
  EXPECT_TRUE(record.InsertValues().empty());
  EXPECT_EQ(ShownUpdate(record), "");
  const soci::values& values = ValuesOf(record);
  for (const std::string& name : this->facts_.Names()) {
    EXPECT_THROW(values.get_indicator(name), soci::soci_error) << name;
  }
}

TYPED_TEST(MappingTest, AWholeRecordIsWrittenInTableOrder) {
  const TypeParam record = this->Whole();
  EXPECT_EQ(record.GetInsertFields(), this->facts_.Names());
  std::vector<const ColumnFacts*> all;
  std::vector<Parameter> inserted;
  for (const ColumnFacts& column : this->facts_.columns) {
    all.push_back(&column);
    inserted.push_back(SomeValue(this->facts_, column));
  }
  EXPECT_EQ(record.InsertValues(), inserted);
  EXPECT_EQ(ShownUpdate(record), ExpectedUpdate(this->facts_, all));
}

TYPED_TEST(MappingTest, EachColumnIsWrittenAloneWhenItAloneIsPresent) {
  for (const ColumnFacts& column : this->facts_.columns) {
    SCOPED_TRACE(column.name);
    const TypeParam record = this->WithNothingBut(column);
    const std::string value = SomeValue(this->facts_, column);
    EXPECT_EQ(record.GetInsertFields(), Names{column.name});
    EXPECT_EQ(record.InsertValues(), std::vector<Parameter>{value});
    EXPECT_EQ(ShownUpdate(record), ExpectedUpdate(this->facts_, {&column}));
    const soci::values& values = ValuesOf(record);
    EXPECT_EQ(ValueOf(values, column), value);
    for (const ColumnFacts& other : this->facts_.columns) {
      if (&other != &column) {
        EXPECT_THROW(values.get_indicator(other.name), soci::soci_error) << other.name;
      }
    }
  }
}

TYPED_TEST(MappingTest, AWholeRecordsValuesAreSetUnderTheirNames) {
  const soci::values& values = ValuesOf(this->Whole());
  for (const ColumnFacts& column : this->facts_.columns) {
    EXPECT_EQ(ValueOf(values, column), SomeValue(this->facts_, column)) << column.name;
  }
}

TYPED_TEST(MappingTest, AWholeRecordSurvivesTheWayThroughValues) {
  const TypeParam record = this->Whole();
  TypeParam read;
  read.soci_FromBase(ValuesOf(record));
  EXPECT_EQ(read.proto().ShortDebugString(), AsRead(record).proto().ShortDebugString());
}

TYPED_TEST(MappingTest, ReadingStopsAtTheFirstValueThatIsMissing) {
  for (const ColumnFacts& missing : this->facts_.columns) {
    const auto before = [&](const ColumnFacts& column) { return &column < &missing; };
    const auto others = [&](const ColumnFacts& column) { return &column != &missing; };
    TypeParam read;
    try {
      read.soci_FromBase(ValuesOf(this->With(others)));
      ADD_FAILURE() << missing.name << " is not missed";
    } catch (const soci::soci_error& error) {
      EXPECT_EQ(error.what(), "Value named " + missing.name + " not found.");
    }
    EXPECT_EQ(read.GetInsertFields(), this->With(before).GetInsertFields()) << missing.name;
  }
}

TYPED_TEST(MappingTest, AZeroFalseOrEmptyFieldIsPresentToo) {
  TypeParam record;
  for (const ColumnFacts& column : this->facts_.columns) {
    SetText(record.mutable_proto(), column, column.type == ColumnType::kText ? "" : "0");
  }
  EXPECT_EQ(record.GetInsertFields(), this->facts_.Names());
  EXPECT_FALSE(record.IsValid());
}

TYPED_TEST(MappingTest, BothBasesReachTheRecordsOwnOperations) {
  const TypeParam record = this->Whole();
  const dorvdbquery::Insertable& insertable = record;
  const dorvdbquery::Updatable& updatable = record;
  EXPECT_EQ(insertable.GetInsertFields(), record.GetInsertFields());
  EXPECT_EQ(ShownUpdate(updatable), ShownUpdate(record));
}

TYPED_TEST(MappingTest, TheConstructorFromAMessageCopiesPresence) {
  const ColumnFacts& column = this->facts_.columns.at(1);
  auto message = this->WithNothingBut(column).proto();
  const TypeParam record(message);
  SetText(message, column, "7");
  EXPECT_EQ(record.GetInsertFields(), Names{column.name});
  EXPECT_EQ(GetText(record.proto(), column), SomeValue(this->facts_, column));
}

TYPED_TEST(MappingTest, CopiesAreIndependent) {
  const ColumnFacts& column = this->facts_.columns.at(1);
  TypeParam record = this->Whole();
  TypeParam copy = record;
  SetText(copy.mutable_proto(), column, "18");
  EXPECT_EQ(GetText(record.proto(), column), SomeValue(this->facts_, column));
  record = copy;
  SetText(copy.mutable_proto(), column, "19");
  EXPECT_EQ(GetText(record.proto(), column), "18");
}

// A class derived from a record may override the hooks, so its rows must come through them.
template <typename Record>
struct Derived : Record {};

TYPED_TEST(MappingTest, TheRecordItselfIsDecodedFastAndConvertedBySoci) {
  static_assert(kIsMessageRecord<TypeParam>);
  static_assert(!kIsMessageRecord<Derived<TypeParam>>);
  static_assert(std::is_base_of_v<RecordBase, TypeParam>);
  static_assert(std::is_same_v<typename soci::type_conversion<TypeParam>::base_type, soci::values>);
}

template <typename Record>
using TargetOf = decltype(std::declval<Record>().RowTarget());

template <typename Record, typename = void>
constexpr bool kHasRowTarget = false;
template <typename Record>
constexpr bool kHasRowTarget<Record, std::void_t<TargetOf<Record>>> = true;

// The target writes into the record.
TYPED_TEST(MappingTest, OnlyARecordThatLastsGivesARowTarget) {
  static_assert(kHasRowTarget<TypeParam&>);
  static_assert(!kHasRowTarget<TypeParam>);
}

// Programs that were built against the library call the operations by their places.
TYPED_TEST(MappingTest, TheOperationsStandInTheirSlots) {
  EXPECT_EQ(Slot(&TypeParam::BindUpdateField), 0);  // the destructor takes the next two
  EXPECT_EQ(Slot(&TypeParam::GetInsertFields), 3);
  EXPECT_EQ(Slot(&TypeParam::IsValid), 4);
  EXPECT_EQ(Slot(&TypeParam::ToJson), 5);
  EXPECT_EQ(Slot(&TypeParam::primary_key), 6);
  EXPECT_EQ(Slot(&TypeParam::set_primary_key), 7);
  EXPECT_EQ(Slot(&TypeParam::soci_FromBase), 8);
  EXPECT_EQ(Slot(&TypeParam::soci_ToBase), 9);
}

TYPED_TEST(MappingTest, ARecordIsItsMessageAndNothingElse) {
  using Message = std::decay_t<decltype(TypeParam().proto())>;
  EXPECT_EQ(sizeof(TypeParam), sizeof(RecordBase) + sizeof(Message));
}

static_assert(!kIsMessageRecord<RecordBase>);
static_assert(std::is_base_of_v<dorvdbquery::Updatable, RecordBase>);
static_assert(std::is_base_of_v<dorvdbquery::Insertable, RecordBase>);

template <typename Record>
class IntegerKeyTest : public testing::Test {};
using EveryRecordWithAnIntegerKey =
    testing::Types<Task, RssFeed, RssFilter, RssItem, Thumbnail, Plugin, Notification>;
TYPED_TEST_SUITE(IntegerKeyTest, EveryRecordWithAnIntegerKey);

TYPED_TEST(IntegerKeyTest, IsZeroUntilItIsSet) { EXPECT_EQ(TypeParam().primary_key(), 0); }

TYPED_TEST(IntegerKeyTest, IsPresentWhateverItIsSetToAndValidAboveZero) {
  for (const int key : {0, -1, 1, 17}) {
    TypeParam record;
    RecordBase& base = record;
    base.set_primary_key(key);
    EXPECT_EQ(base.primary_key(), key);
    EXPECT_EQ(base.IsValid(), key > 0) << key;
    EXPECT_EQ(record.GetInsertFields(), Names{FactsOf<TypeParam>().key});
  }
}

TEST(MappingTest, OnlyThePluginsUpdateAssignsItsKey) {
  Plugin plugin;
  plugin.set_primary_key(17);
  EXPECT_EQ(ShownUpdate(plugin), "UPDATE \"t\" SET \"task_id\" = $1 [$1=17]");
  Thumbnail thumbnail;
  thumbnail.set_primary_key(17);
  EXPECT_EQ(ShownUpdate(thumbnail), "");
}

}  // namespace
}  // namespace dorvdl::record
