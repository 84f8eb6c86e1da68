// The records as their tests know them: tables, columns and rules, stated independently of the
// library's own column tables.
#ifndef TESTS_SUPPORT_RECORD_FACTS_H_
#define TESTS_SUPPORT_RECORD_FACTS_H_

#include <dorvdl/record/notification.h>
#include <dorvdl/record/plugin.h>
#include <dorvdl/record/rss_feed.h>
#include <dorvdl/record/rss_filter.h>
#include <dorvdl/record/rss_item.h>
#include <dorvdl/record/task.h>
#include <dorvdl/record/thumbnail.h>
#include <dorvdl/record/user_setting.h>
#include <google/protobuf/message.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

namespace test_support {

using EveryRecord =
    testing::Types<dorvdl::record::Task, dorvdl::record::RssFeed, dorvdl::record::RssFilter,
                   dorvdl::record::RssItem, dorvdl::record::Thumbnail, dorvdl::record::Plugin,
                   dorvdl::record::Notification, dorvdl::record::UserSetting>;

template <typename Record>
inline constexpr bool kHasIntegerKey = !std::is_same_v<Record, dorvdl::record::UserSetting>;

// Whether the table gives a row without a key its key.
template <typename Record>
inline constexpr bool kGeneratesKey =
    kHasIntegerKey<Record> && !std::is_same_v<Record, dorvdl::record::Plugin>;

enum class ColumnType { kInt, kBigint, kBool, kText };

struct ColumnFacts {
  std::string name;
  ColumnType type;
  // What a NULL reads as; unset where it is an error.
  std::optional<std::string> null = {};

  // The type that the schema keeps it in.
  std::string SqlType() const;

  // What a row that was inserted without the column reads as.
  std::string Default() const { return null.value_or(type == ColumnType::kText ? "" : "0"); }
};

struct RecordFacts {
  std::string table;
  std::string key;
  bool updates_key;  // an update assigns the key, too
  bool renders;      // is shown as JSON
  std::vector<ColumnFacts> columns;

  std::vector<std::string> Names() const;
};

template <typename Record>
const RecordFacts& FactsOf();

// The message's field for a column; throws when it has none of the column's type.
const google::protobuf::FieldDescriptor* FieldOf(const google::protobuf::Message& message,
                                                 const ColumnFacts& column);

// A field's value as the database writes it, a boolean as 0 or 1; and the other way round.
std::string GetText(const google::protobuf::Message& message, const ColumnFacts& column);
void SetText(google::protobuf::Message& message, const ColumnFacts& column,
             const std::string& text);

// What a record with these columns is read as after it was inserted: an absent column has its
// default, and a task's free-form data comes wrapped in a JSON text.
template <typename Record>
Record AsRead(const Record& written) {
  Record read = written;
  if constexpr (std::is_same_v<Record, dorvdl::record::Task>) {
    if (written.proto().has_extra_data()) {
      read.set_extra_data(Json::Value(written.proto().extra_data()));
    }
  }
  const std::vector<std::string> present = written.GetInsertFields();
  for (const ColumnFacts& column : FactsOf<Record>().columns) {
    if (std::find(present.begin(), present.end(), column.name) == present.end()) {
      SetText(read.mutable_proto(), column, column.Default());
    }
  }
  return read;
}

}  // namespace test_support

#endif  // TESTS_SUPPORT_RECORD_FACTS_H_
