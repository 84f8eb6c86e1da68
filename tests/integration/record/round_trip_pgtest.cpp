// Records with random content survive the way through the database, written and read in every way.
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "integration/record/record_test.h"

namespace dorvdl::record {
namespace {

using test_support::AsRead;
using test_support::ColumnFacts;
using test_support::ColumnType;

// Texts that the database takes: UTF-8 without NUL, among them the empty one and what SQL, JSON and
// LIKE treat specially.
rc::Gen<std::string> Text() {
  return rc::gen::map(rc::gen::container<std::vector<std::string>>(rc::gen::element<std::string>(
                          "", "a", "Z", " ", "'", "\"", "\\", "%", "_", ";", "\n", "\x01", "{", "ü",
                          "日本", "😀", ":x", "$1", "NULL")),
                      [](const std::vector<std::string>& pieces) {
                        std::string text;
                        for (const std::string& piece : pieces) {
                          text += piece;
                        }
                        return text;
                      });
}

template <typename T>
std::string Number() {
  using Limits = std::numeric_limits<T>;
  return std::to_string(*rc::gen::oneOf(rc::gen::element<T>(0, 1, -1, Limits::min(), Limits::max()),
                                        rc::gen::arbitrary<T>()));
}

std::string Value(ColumnType type) {
  switch (type) {
    case ColumnType::kInt:
      return Number<std::int32_t>();
    case ColumnType::kBigint:
      return Number<std::int64_t>();
    case ColumnType::kBool:
      return *rc::gen::element<std::string>("0", "1");
    case ColumnType::kText:
      break;
  }
  return *Text();
}

template <typename Record>
class RoundTripTest : public RecordTest<Record> {
 protected:
  // A record that carries a random choice of columns, the key included; always with the key where
  // the table gives none.
  Record Random() const {
    Record record;
    for (const ColumnFacts& column : this->facts_.columns) {
      const bool is_needed =
          column.name == this->facts_.key && !test_support::kGeneratesKey<Record>;
      if (is_needed || *rc::gen::arbitrary<bool>()) {
        SetText(record.mutable_proto(), column, Value(column.type));
      }
    }
    return record;
  }

  // Gives @p record the key of the only row.
  void SetStoredKey(Record& record) {
    SetText(record.mutable_proto(), this->KeyColumn(),
            this->raw_.Value("SELECT " + this->facts_.key + " FROM " + this->facts_.table));
  }
};
TYPED_TEST_SUITE(RoundTripTest, test_support::EveryRecord);

TYPED_TEST(RoundTripTest, ARecordIsReadAsItWasWritten) {
  EXPECT_TRUE(rc::check([this] {
    this->Empty();
    TypeParam record = this->Random();
    TypeParam expected = record;
    RC_ASSERT(this->Insert(record));
    this->SetStoredKey(expected);
    RC_ASSERT(record.proto().SerializeAsString() == expected.proto().SerializeAsString());
    RC_ASSERT(this->Disagreement(AsRead(expected)) == "");
  }));
}

TYPED_TEST(RoundTripTest, ARecordWrittenBySociIsReadAsItWasWritten) {
  EXPECT_TRUE(rc::check([this] {
    this->Empty();
    TypeParam record = this->Random();
    const std::vector<std::string> names = record.GetInsertFields();
    RC_PRE(!names.empty());
    std::string columns;
    std::string places;
    for (const std::string& name : names) {
      columns.append(columns.empty() ? "" : ", ").append(name);
      places.append(places.empty() ? ":" : ", :").append(name);
    }
    this->Soci() << "INSERT INTO " << this->facts_.table << " (" << columns << ") VALUES ("
                 << places << ")",
        soci::use(std::as_const(record));
    this->SetStoredKey(record);
    RC_ASSERT(this->Disagreement(AsRead(record)) == "");
  }));
}

TYPED_TEST(RoundTripTest, AnUpdateChangesThePresentFieldsOnly) {
  EXPECT_TRUE(rc::check([this] {
    this->Empty();
    TypeParam record = this->Random();
    RC_ASSERT(this->Insert(record));
    this->SetStoredKey(record);

    TypeParam change = this->Random();
    this->SetStoredKey(change);
    const bool has_assignments = change.GetInsertFields().size() > 1 || this->facts_.updates_key;
    RC_ASSERT(this->Update(change) == has_assignments);

    record.mutable_proto().MergeFrom(change.proto());
    RC_ASSERT(this->Disagreement(AsRead(record)) == "");
  }));
}

}  // namespace
}  // namespace dorvdl::record
