// The table of the users' settings.
#ifndef DORVDLCTL_SETTING_TABLE_H_
#define DORVDLCTL_SETTING_TABLE_H_

#include <dorvdl/control/controller.h>
#include <dorvdl/db/operator.h>
#include <dorvdl/record/user_setting.h>

#include <string>
#include <vector>

namespace dorvdl::ctl {

// The settings as one user sees them: their own, or everybody's for an empty user name. The key is
// a text, so the operations of the base that take a number are replaced; the operations have the
// shape of a control's.
class SettingTable : public db::DBOperator<record::UserSetting> {
 public:
  explicit SettingTable(control::Controller& controller);

  const char* GetTableName() override { return "user_setting"; }
  const char* GetPrimaryKeyName() override { return "username"; }

  int Count();
  std::vector<record::UserSetting> ListAll(const control::option::common::ListOption& option);
  record::UserSetting Get(const std::string& username);
  bool Create(const record::UserSetting& setting);
  bool Update(const record::UserSetting& setting);
  bool Delete(const std::vector<std::string>& usernames);

 private:
  Condition IsOwn() const;
  Condition IsOwn(const std::string& username) const;

  const std::string& user_;
};

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_SETTING_TABLE_H_
