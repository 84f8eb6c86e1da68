/// @file
/// The post-processing state of one task: a row of task_plugin.
#ifndef DORVDL_RECORD_PLUGIN_H_
#define DORVDL_RECORD_PLUGIN_H_

#include <dorvdl/proto/record.pb.h>
#include <dorvdl/record/message_record.h>
#include <dorvdl/util/export.h>
#include <json/value.h>

namespace dorvdl::record {

class Plugin;
extern template class DORVDL_EXPORT MessageRecord<Plugin, proto::Plugin>;

/// What the post-processing plug-ins of a task have done and are doing; at most one row per task.
/// Unlike that of other records its update assigns the key, too, when it is present.
class DORVDL_EXPORT Plugin : public MessageRecord<Plugin, proto::Plugin> {
 public:
  using MessageRecord::MessageRecord;

  /// The record's columns, for the mechanism below it; their type is no part of the interface.
  static const ColumnTable& Columns();

  /// The JSON columns as values. An absent column gives null; so does a text that is no JSON, which
  /// is logged at error level.
  Json::Value process() const;
  Json::Value attributes() const;
  Json::Value response() const;
  Json::Value result() const;

  /// Stores @p value as JSON text and marks the column present.
  void set_process(const Json::Value& value);
  void set_attributes(const Json::Value& value);
  void set_response(const Json::Value& value);
  void set_result(const Json::Value& value);
};

}  // namespace dorvdl::record

#endif  // DORVDL_RECORD_PLUGIN_H_
