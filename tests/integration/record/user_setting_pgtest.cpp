// User settings as a program reads and writes them: by a table class of its own and by queries.
#include <dorvdl/db/operator.h>
#include <dorvdl/dbquery/delete_query.h>
#include <dorvdl/record/user_setting.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/database.h"

namespace dorvdl::record {
namespace {

using dorvdbquery::Condition;

class UserSettings : public db::DBOperator<UserSetting> {
 public:
  using DBOperator::DBOperator;
  const char* GetTableName() override { return "user_setting"; }
  const char* GetPrimaryKeyName() override { return "username"; }
};

class UserSettingTest : public test_support::DatabaseTest {
 protected:
  bool Insert(const proto::UserSetting& message) {
    const UserSetting setting(message);
    dorvdbquery::InsertQuery query(settings_.GetSession(), "user_setting");
    query.SetInsertAll(setting.GetInsertFields());
    query.Values(setting.InsertValues());
    return query.Execute();
  }

  static Condition NameIs(const std::string& name) {
    return Condition::ConditionFactory<std::string>("username", "=", name);
  }

  db::DBSession session_;
  UserSettings settings_{session_};
};

proto::UserSetting Alice() {
  proto::UserSetting message;
  message.set_username("alice");
  message.set_uid(1026);
  message.set_share_folder("share/ü");
  message.set_user_disabled(false);
  message.set_delete_watchtorrent(true);
  message.set_watchfolder("watch");
  message.set_enable_watchffolder(true);
  return message;
}

TEST_F(UserSettingTest, IsInsertedUnderTheNamesOfItsColumns) {
  EXPECT_TRUE(Insert(Alice()));
  EXPECT_EQ(raw_.Run("SELECT username, uid, share_folder, user_disabled, delete_watchtorrent, "
                     "watchfolder, enable_watchffolder FROM user_setting"),
            std::vector<std::string>{"alice|1026|share/ü|0|1|watch|1"});
}

TEST_F(UserSettingTest, IsListedAndCounted) {
  raw_.Run(
      "INSERT INTO user_setting (username, uid) VALUES ('alice', 1), ('bob', 2), ('carol', 3)");
  EXPECT_EQ(settings_.Count(Condition::Null()), 3);
  EXPECT_EQ(settings_.Count(NameIs("bob")), 1);
  EXPECT_EQ(settings_.Count(NameIs("dave")), 0);

  control::option::common::ListOption option;
  option.sort_by = "username";
  option.ascending = false;
  option.limit = 2;
  const std::vector<UserSetting> listed = settings_.List(option, Condition::Null());
  ASSERT_EQ(listed.size(), 2U);
  EXPECT_EQ(listed[0].proto().username(), "carol");
  EXPECT_EQ(listed[1].proto().uid(), 2);
  EXPECT_TRUE(listed[1].IsValid());
}

TEST_F(UserSettingTest, AnUpdateAssignsThePresentColumnsButTheName) {
  Insert(Alice());
  raw_.Run("INSERT INTO user_setting (username) VALUES ('bob')");
  proto::UserSetting change;
  change.set_username("carol");
  change.set_user_disabled(true);
  change.set_enable_watchffolder(false);
  dorvdbquery::UpdateQuery query(settings_.GetSession(), "user_setting");
  UserSetting(change).BindUpdateField(query);
  query.Where(NameIs("alice"));
  EXPECT_TRUE(query.Execute());
  EXPECT_EQ(query.AffectedRows(), 1);
  EXPECT_EQ(raw_.Run("SELECT * FROM user_setting ORDER BY username"),
            (std::vector<std::string>{"alice|1026|share/ü|1|1|watch|0", "bob|0||0|0||0"}));
}

TEST_F(UserSettingTest, OneUsersRowIsDeleted) {
  raw_.Run("INSERT INTO user_setting (username) VALUES ('alice'), ('bob')");
  dorvdbquery::DeleteQuery query(settings_.GetSession(), "user_setting");
  query.Where(NameIs("alice"));
  EXPECT_TRUE(query.Execute());
  EXPECT_EQ(raw_.Run("SELECT username FROM user_setting"), std::vector<std::string>{"bob"});
}

TEST_F(UserSettingTest, AUserHasOneRow) {
  EXPECT_TRUE(Insert(Alice()));
  EXPECT_FALSE(Insert(Alice()));
  EXPECT_EQ(settings_.Count(Condition::Null()), 1);
}

}  // namespace
}  // namespace dorvdl::record
