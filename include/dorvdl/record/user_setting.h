/// @file
/// The download settings of one user: a row of user_setting.
#ifndef DORVDL_RECORD_USER_SETTING_H_
#define DORVDL_RECORD_USER_SETTING_H_

#include <dorvdl/proto/record.pb.h>
#include <dorvdl/record/message_record.h>
#include <dorvdl/util/export.h>

namespace dorvdl::record {

class UserSetting;
extern template class DORVDL_EXPORT MessageRecord<UserSetting, proto::UserSetting>;

/// The download settings of one user. Its key is the user's name, a text: primary_key() and
/// set_primary_key() must not be called and end the process (logged at critical level).
///
/// The library has no table class for it. A program reads it through a `db::DBOperator` of its own
/// (`List`, `Count`), whose operations by integer key are not for it, and writes it with the query
/// builder. A NULL in any column is an error.
class DORVDL_EXPORT UserSetting : public MessageRecord<UserSetting, proto::UserSetting> {
 public:
  using MessageRecord::MessageRecord;

  /// The record's columns, for the mechanism below it; their type is no part of the interface.
  static const ColumnTable& Columns();

  /// True exactly when `username` is not empty.
  bool IsValid() const override;
};

}  // namespace dorvdl::record

#endif  // DORVDL_RECORD_USER_SETTING_H_
