// The bodies of MessageRecord. A record's source includes this and instantiates them for itself:
//   template class MessageRecord<Task, proto::Task>;
#ifndef SRC_RECORD_MESSAGE_RECORD_IMPL_H_
#define SRC_RECORD_MESSAGE_RECORD_IMPL_H_

#include <dorvdl/record/message_record.h>

#include "record/column_table.h"
#include "record/row_decoder.h"

namespace dorvdl::record {

template <typename Self, typename Message>
void MessageRecord<Self, Message>::BindUpdateField(dorvdbquery::UpdateQuery& query) const {
  Self::Columns().BindUpdate(message_, query);
}

template <typename Self, typename Message>
std::vector<std::string> MessageRecord<Self, Message>::GetInsertFields() const {
  return Self::Columns().PresentNames(message_);
}

template <typename Self, typename Message>
std::vector<dorvdbquery::Parameter> MessageRecord<Self, Message>::InsertValues() const {
  return Self::Columns().PresentValues(message_);
}

template <typename Self, typename Message>
const Ownership& MessageRecord<Self, Message>::GetOwnership() {
  return Self::Columns().ownership();
}

template <typename Self, typename Message>
void MessageRecord<Self, Message>::ToJson(Json::Value& json) const {
  if (Self::Columns().rendering() == ColumnTable::Rendering::kJson) {
    Self::Columns().ToJson(message_, json);
  } else {
    RecordBase::ToJson(json);
  }
}

template <typename Self, typename Message>
int MessageRecord<Self, Message>::primary_key() const {
  return Self::Columns().key(message_);
}

template <typename Self, typename Message>
void MessageRecord<Self, Message>::set_primary_key(int key) {
  Self::Columns().set_key(message_, key);
}

template <typename Self, typename Message>
void MessageRecord<Self, Message>::soci_FromBase(const soci::values& values) {
  Self::Columns().FromValues(values, message_);
}

template <typename Self, typename Message>
void MessageRecord<Self, Message>::soci_ToBase(soci::values& values,
                                               soci::indicator& indicator) const {
  Self::Columns().ToValues(message_, values);
  indicator = soci::i_ok;
}

template <typename Self, typename Message>
std::shared_ptr<dorvdbquery::RowTarget> MessageRecord<Self, Message>::RowTarget() & {
  return std::make_shared<RowDecoder>(Self::Columns(),
                                      [this]() -> MessageLite& { return message_; });
}

template <typename Self, typename Message>
std::shared_ptr<dorvdbquery::RowTarget> MessageRecord<Self, Message>::AppendingTarget(
    std::vector<Self>& records) {
  return std::make_shared<RowDecoder>(
      Self::Columns(), [&records]() -> MessageLite& { return records.emplace_back().message_; });
}

}  // namespace dorvdl::record

#endif  // SRC_RECORD_MESSAGE_RECORD_IMPL_H_
