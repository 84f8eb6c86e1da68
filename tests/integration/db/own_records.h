// Records and tables that a program outside the library might bring: members of their own, no
// message, and nothing of the library but the hooks of RecordBase.
#ifndef TESTS_INTEGRATION_DB_OWN_RECORDS_H_
#define TESTS_INTEGRATION_DB_OWN_RECORDS_H_

#include <dorvdl/db/operator.h>
#include <dorvdl/record/record_base.h>

#include <optional>
#include <string>
#include <vector>

namespace dorvdl::db {

// A row of "note". "text" and "size" may be NULL and are read conditionally.
class Note : public record::RecordBase {
 public:
  std::optional<int> id;
  std::optional<std::string> text;
  std::optional<long long> size;

  Note() = default;
  Note(std::optional<int> key, std::optional<std::string> content)
      : id(key), text(std::move(content)) {}

  std::vector<std::string> GetInsertFields() const override {
    std::vector<std::string> fields;
    if (id) {
      fields.emplace_back("id");
    }
    if (text) {
      fields.emplace_back("text");
    }
    if (size) {
      fields.emplace_back("size");
    }
    return fields;
  }

  void BindUpdateField(dorvdbquery::UpdateQuery& query) const override {
    if (text) {
      query.SetFactory<std::string>("text", *text);
    }
    if (size) {
      query.SetFactory<long long>("size", *size);
    }
  }

  int primary_key() const override { return id.value_or(0); }
  void set_primary_key(int key) override { id = key; }

  void soci_FromBase(const soci::values& values) override {
    id = values.get<int>("id");
    if (values.get_indicator("text") != soci::i_null) {
      text = values.get<std::string>("text");
    }
    if (values.get_indicator("size") != soci::i_null) {
      size = values.get<long long>("size");
    }
  }

  void soci_ToBase(soci::values& values, soci::indicator& indicator) const override {
    if (id) {
      values.set("id", *id);
    }
    if (text) {
      values.set("text", *text);
    }
    if (size) {
      values.set("size", *size);
    }
    indicator = soci::i_ok;
  }
};

// The same with a conversion of its own, which counts its calls.
class CountedNote : public Note {
 public:
  using Note::Note;
  static inline int reads = 0;
  static inline int writes = 0;
};

// The table of either.
template <typename Record>
class Notes : public DBOperator<Record> {
 public:
  using DBOperator<Record>::DBOperator;
  const char* GetTableName() override { return "note"; }
  const char* GetPrimaryKeyName() override { return "id"; }
};

}  // namespace dorvdl::db

template <>
struct soci::type_conversion<dorvdl::db::CountedNote> {
  using base_type = values;
  static void from_base(const values& row, indicator, dorvdl::db::CountedNote& note) {
    ++dorvdl::db::CountedNote::reads;
    note.soci_FromBase(row);
  }
  static void to_base(const dorvdl::db::CountedNote& note, values& row, indicator& row_indicator) {
    ++dorvdl::db::CountedNote::writes;
    note.soci_ToBase(row, row_indicator);
  }
};

#endif  // TESTS_INTEGRATION_DB_OWN_RECORDS_H_
