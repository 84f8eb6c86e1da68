#include "support/record_facts.h"

#include <stdexcept>

namespace test_support {

namespace record = dorvdl::record;
using google::protobuf::FieldDescriptor;
using google::protobuf::Message;

namespace {

constexpr ColumnType kInt = ColumnType::kInt;
constexpr ColumnType kBigint = ColumnType::kBigint;
constexpr ColumnType kBool = ColumnType::kBool;
constexpr ColumnType kText = ColumnType::kText;

const std::vector<ColumnFacts> kTaskColumns = {
    {"task_id", kInt, "0"},
    {"username", kText, ""},
    {"pid", kInt, "0"},
    {"url", kText, ""},
    {"filename", kText, ""},
    {"status", kInt, "0"},
    {"created_time", kInt, "0"},
    {"started_time", kInt, "0"},
    {"total_size", kBigint, "0"},
    {"current_size", kBigint, "0"},
    {"current_rate", kInt, "0"},
    {"total_peers", kInt, "0"},
    {"connected_peers", kInt, "0"},
    {"total_pieces", kInt, "0"},
    {"downloaded_pieces", kInt, "0"},
    {"available_pieces", kInt, "0"},
    {"upload_rate", kInt, "0"},
    {"total_upload", kBigint, "0"},
    {"seeding_ratio", kInt, "0"},
    {"seeding_interval", kInt, "0"},
    {"seeding_elapsed", kInt, "0"},
    {"task_flags", kInt, "0"},
    {"seeders", kInt, "0"},
    {"leechers", kInt, "0"},
    {"destination", kText, ""},
    {"unzip_password", kText, ""},
    {"unzip_progress", kInt, "0"},
    {"given_filename", kText, ""},
    {"referer", kText, ""},
    {"cookie_path", kText, ""},
    {"thumbnail_status", kInt, "0"},
    {"extra_data", kText, "\"null\""},
    {"completed_time", kInt, "0"},
    {"waiting_until_time", kInt, "0"},
    {"file_oid", kInt, "0"},
};

const std::vector<ColumnFacts> kRssFeedColumns = {
    {"id", kInt},       {"username", kText, ""}, {"title", kText, ""},
    {"url", kText, ""}, {"last_update", kInt},   {"is_updating", kBool},
};

const std::vector<ColumnFacts> kRssFilterColumns = {
    {"id", kInt},         {"feed_id", kInt},        {"name", kText, ""},
    {"match", kText, ""}, {"not_match", kText, ""}, {"destination", kText, ""},
    {"enable", kBool},    {"is_regex", kBool},
};

const std::vector<ColumnFacts> kRssItemColumns = {
    {"id", kInt},        {"feed_id", kInt}, {"title", kText, ""}, {"url", kText, ""},
    {"link", kText, ""}, {"date", kInt},    {"size", kBigint},    {"is_new", kBool},
};

const std::vector<ColumnFacts> kThumbnailColumns = {
    {"thumbnail_id", kInt},    {"task_id", kInt},          {"file_index", kInt},
    {"thumbnail_index", kInt}, {"thumbnail_second", kInt}, {"thumbnail_filename", kText, ""},
    {"create_time", kBigint},
};

const std::vector<ColumnFacts> kPluginColumns = {
    {"task_id", kInt},           {"process", kText, "null"}, {"current_plugin", kText, ""},
    {"current_type", kText, ""}, {"current_status", kInt},   {"attributes", kText, "null"},
    {"response", kText, "null"}, {"result", kText, "null"},  {"pid", kInt},
};

const std::vector<ColumnFacts> kNotificationColumns = {
    {"id", kInt},
    {"task_id", kInt},
    {"type", kText, ""},
    {"create_time", kBigint},
};

const std::vector<ColumnFacts> kUserSettingColumns = {
    {"username", kText},
    {"uid", kInt},
    {"share_folder", kText},
    {"user_disabled", kBool},
    {"delete_watchtorrent", kBool},
    {"watchfolder", kText},
    {"enable_watchffolder", kBool},
};

}  // namespace

template <>
const RecordFacts& FactsOf<record::Task>() {
  static const RecordFacts facts{"download_queue", "task_id", /*updates_key=*/false,
                                 /*renders=*/false, kTaskColumns};
  return facts;
}

template <>
const RecordFacts& FactsOf<record::RssFeed>() {
  static const RecordFacts facts{"rss_feed", "id", /*updates_key=*/false, /*renders=*/true,
                                 kRssFeedColumns};
  return facts;
}

template <>
const RecordFacts& FactsOf<record::RssFilter>() {
  static const RecordFacts facts{"rss_filter", "id", /*updates_key=*/false, /*renders=*/true,
                                 kRssFilterColumns};
  return facts;
}

template <>
const RecordFacts& FactsOf<record::RssItem>() {
  static const RecordFacts facts{"rss_item", "id", /*updates_key=*/false, /*renders=*/true,
                                 kRssItemColumns};
  return facts;
}

template <>
const RecordFacts& FactsOf<record::Thumbnail>() {
  static const RecordFacts facts{"thumbnail", "thumbnail_id", /*updates_key=*/false,
                                 /*renders=*/true, kThumbnailColumns};
  return facts;
}

template <>
const RecordFacts& FactsOf<record::Plugin>() {
  static const RecordFacts facts{"task_plugin", "task_id", /*updates_key=*/true, /*renders=*/false,
                                 kPluginColumns};
  return facts;
}

template <>
const RecordFacts& FactsOf<record::Notification>() {
  static const RecordFacts facts{"notification", "id", /*updates_key=*/false, /*renders=*/false,
                                 kNotificationColumns};
  return facts;
}

template <>
const RecordFacts& FactsOf<record::UserSetting>() {
  static const RecordFacts facts{"user_setting", "username", /*updates_key=*/false,
                                 /*renders=*/false, kUserSettingColumns};
  return facts;
}

std::string ColumnFacts::SqlType() const {
  switch (type) {
    case ColumnType::kInt:
    case ColumnType::kBool:
      return "integer";
    case ColumnType::kBigint:
      return "bigint";
    case ColumnType::kText:
      break;
  }
  return "text";
}

std::vector<std::string> RecordFacts::Names() const {
  std::vector<std::string> names;
  names.reserve(columns.size());
  for (const ColumnFacts& column : columns) {
    names.push_back(column.name);
  }
  return names;
}

const FieldDescriptor* FieldOf(const Message& message, const ColumnFacts& column) {
  const FieldDescriptor* const field = message.GetDescriptor()->FindFieldByName(column.name);
  const FieldDescriptor::CppType types[] = {
      FieldDescriptor::CPPTYPE_INT32, FieldDescriptor::CPPTYPE_INT64, FieldDescriptor::CPPTYPE_BOOL,
      FieldDescriptor::CPPTYPE_STRING};
  if (field == nullptr || field->cpp_type() != types[static_cast<int>(column.type)]) {
    throw std::logic_error("no field of the right type for column " + column.name);
  }
  return field;
}

std::string GetText(const Message& message, const ColumnFacts& column) {
  const FieldDescriptor* const field = FieldOf(message, column);
  switch (column.type) {
    case ColumnType::kInt:
      return std::to_string(message.GetReflection()->GetInt32(message, field));
    case ColumnType::kBigint:
      return std::to_string(message.GetReflection()->GetInt64(message, field));
    case ColumnType::kBool:
      return message.GetReflection()->GetBool(message, field) ? "1" : "0";
    case ColumnType::kText:
      break;
  }
  return message.GetReflection()->GetString(message, field);
}

void SetText(Message& message, const ColumnFacts& column, const std::string& text) {
  const FieldDescriptor* const field = FieldOf(message, column);
  switch (column.type) {
    case ColumnType::kInt:
      return message.GetReflection()->SetInt32(&message, field, std::stoi(text));
    case ColumnType::kBigint:
      return message.GetReflection()->SetInt64(&message, field, std::stoll(text));
    case ColumnType::kBool:
      return message.GetReflection()->SetBool(&message, field, text == "1");
    case ColumnType::kText:
      return message.GetReflection()->SetString(&message, field, text);
  }
}

}  // namespace test_support
