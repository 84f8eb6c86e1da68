#include <dorvdl/record/plugin.h>
#include <dorvdl/util/log.h>

#include "record/message_record_impl.h"
#include "util/json.h"

namespace dorvdl::record {
namespace {

Json::Value Parse(const char* column, const std::string& text) {
  Json::Value value;
  if (!util::JsonFromText(text, value)) {
    DORVDL_LOG(LOG_ERR, "Failed to parse %s", column);
    return {};  // not what the parser left of a text that is no JSON
  }
  return value;
}

}  // namespace

template class MessageRecord<Plugin, proto::Plugin>;

const ColumnTable& Plugin::Columns() {
  using Message = proto::Plugin;
  static const auto& columns = *new ColumnTable({
      // An update assigns the key too. That changes nothing in the row, but it makes a record with
      // nothing but its key an update like any other, and not a failure.
      DORVDL_COLUMN(task_id).UpdatedKey().Parent("download_queue", "task_id"),
      DORVDL_COLUMN(process).Nullable("null"),
      DORVDL_COLUMN(current_plugin).Nullable(),
      DORVDL_COLUMN(current_type).Nullable(),
      DORVDL_COLUMN(current_status),
      DORVDL_COLUMN(attributes).Nullable("null"),
      DORVDL_COLUMN(response).Nullable("null"),
      DORVDL_COLUMN(result).Nullable("null"),
      DORVDL_COLUMN(pid),
  });
  return columns;
}

Json::Value Plugin::process() const { return Parse("process", proto().process()); }
Json::Value Plugin::attributes() const { return Parse("attributes", proto().attributes()); }
Json::Value Plugin::response() const { return Parse("response", proto().response()); }
Json::Value Plugin::result() const { return Parse("result", proto().result()); }

void Plugin::set_process(const Json::Value& value) {
  mutable_proto().set_process(util::JsonToText(value));
}

void Plugin::set_attributes(const Json::Value& value) {
  mutable_proto().set_attributes(util::JsonToText(value));
}

void Plugin::set_response(const Json::Value& value) {
  mutable_proto().set_response(util::JsonToText(value));
}

void Plugin::set_result(const Json::Value& value) {
  mutable_proto().set_result(util::JsonToText(value));
}

}  // namespace dorvdl::record
