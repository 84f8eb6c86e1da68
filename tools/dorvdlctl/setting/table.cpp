#include "setting/table.h"

#include <dorvdl/util/to_lower.h>
#include <dorvdl/util/wrapper.h>

namespace dorvdl::ctl {

using control::option::common::ListOption;

SettingTable::SettingTable(control::Controller& controller)
    : DBOperator(controller.db_session()), user_(controller.username()) {}

int SettingTable::Count() { return DBOperator::Count(IsOwn()); }

std::vector<record::UserSetting> SettingTable::ListAll(const ListOption& option) {
  return DBOperator::List(option, IsOwn());
}

record::UserSetting SettingTable::Get(const std::string& username) {
  const auto found = DBOperator::List({}, IsOwn(username));
  return found.empty() ? record::UserSetting() : found.front();
}

bool SettingTable::Create(const record::UserSetting& setting) {
  dorvdbquery::InsertQuery query(GetSession(), GetTableName());
  query.SetInsertAll(setting.GetInsertFields());
  query.Values(setting.InsertValues());
  return query.Execute();
}

bool SettingTable::Update(const record::UserSetting& setting) {
  dorvdbquery::UpdateQuery query(GetSession(), GetTableName());
  setting.BindUpdateField(query);
  query.Where(IsOwn(setting.proto().username()));
  return query.Execute();
}

bool SettingTable::Delete(const std::vector<std::string>& usernames) {
  bool deleted = true;
  for (const std::string& username : usernames) {
    dorvdbquery::DeleteQuery query(GetSession(), GetTableName());
    query.Where(IsOwn(username));
    deleted = query.Execute() && deleted;
  }
  return deleted;
}

SettingTable::Condition SettingTable::IsOwn() const {
  return user_.empty() ? Condition::Null()
                       : Condition::ConditionFactory<std::string>(util::Wrapper::Lower("username"),
                                                                  "=", util::ToLower(user_));
}

SettingTable::Condition SettingTable::IsOwn(const std::string& username) const {
  return IsOwn() && Condition::ConditionFactory<std::string>("username", "=", username);
}

}  // namespace dorvdl::ctl
