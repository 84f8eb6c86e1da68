// What holds for the controls of every table, asked through their interfaces.
#include <dorvdl/control/notification_control.h>
#include <dorvdl/control/plugin_control.h>
#include <dorvdl/control/rss_feed_control.h>
#include <dorvdl/control/rss_filter_control.h>
#include <dorvdl/control/rss_item_control.h>
#include <dorvdl/control/task_control.h>
#include <dorvdl/control/thumbnail_control.h>
#include <gtest/gtest.h>
#include <soci/soci.h>

#include <string>
#include <type_traits>
#include <vector>

#include "support/child.h"
#include "support/connection.h"
#include "support/database.h"
#include "support/identity.h"
#include "support/syslog_capture.h"

namespace dorvdl::control {
namespace {

using test_support::kError;
using test_support::LogLine;
using test_support::TakeIdCalls;
using test_support::TakeLog;
using Lines = std::vector<LogLine>;
using Rows = std::vector<std::string>;

// A control with its interface and record; whether its rows belong to users.
template <typename InterfaceType, typename ControlType, typename RecordType, bool is_owned>
struct Kind {
  using Interface = InterfaceType;
  using Control = ControlType;
  using Record = RecordType;
  static constexpr bool kIsOwned = is_owned;
};

// Each kind's table with its key, a text column and a number column.
struct Tasks : Kind<interface::TaskInterface, TaskControl, record::Task, true> {
  static constexpr const char* kTable = "download_queue";
  static constexpr const char* kKey = "task_id";
  static constexpr const char* kText = "filename";
  static constexpr const char* kNumber = "status";
};
struct RssFeeds : Kind<interface::RssFeedInterface, RssFeedControl, record::RssFeed, true> {
  static constexpr const char* kTable = "rss_feed";
  static constexpr const char* kKey = "id";
  static constexpr const char* kText = "title";
  static constexpr const char* kNumber = "last_update";
};
struct RssFilters
    : Kind<interface::RssFilterInterface, RssFilterControl, record::RssFilter, false> {
  static constexpr const char* kTable = "rss_filter";
  static constexpr const char* kKey = "id";
  static constexpr const char* kText = "name";
  static constexpr const char* kNumber = "feed_id";
};
struct RssItems : Kind<interface::RssItemInterface, RssItemControl, record::RssItem, false> {
  static constexpr const char* kTable = "rss_item";
  static constexpr const char* kKey = "id";
  static constexpr const char* kText = "title";
  static constexpr const char* kNumber = "feed_id";
};
struct Thumbnails
    : Kind<interface::ThumbnailInterface, ThumbnailControl, record::Thumbnail, false> {
  static constexpr const char* kTable = "thumbnail";
  static constexpr const char* kKey = "thumbnail_id";
  static constexpr const char* kText = "thumbnail_filename";
  static constexpr const char* kNumber = "task_id";
};
struct Plugins : Kind<interface::PluginInterface, PluginControl, record::Plugin, false> {
  static constexpr const char* kTable = "task_plugin";
  static constexpr const char* kKey = "task_id";
  static constexpr const char* kText = "current_plugin";
  static constexpr const char* kNumber = "current_status";
};
struct Notifications
    : Kind<interface::NotificationInterface, NotificationControl, record::Notification, false> {
  static constexpr const char* kTable = "notification";
  static constexpr const char* kKey = "id";
  static constexpr const char* kText = "type";
  static constexpr const char* kNumber = "task_id";
};

// Where the interfaces differ: a task may bring a file, and what a list takes.
template <typename Interface, typename Record>
bool Create(Interface& records, Record& record) {
  return records.Create(record);
}
bool Create(interface::TaskInterface& tasks, record::Task& task) { return tasks.Create(task, ""); }

template <typename Interface>
auto List(Interface& records) {
  return records.List({});
}
auto List(interface::NotificationInterface& notifications) { return notifications.List(); }
std::vector<record::Plugin> List(interface::PluginInterface& plugins) { return {plugins.Get(1)}; }

template <typename Tested>
class EntityControlTest : public test_support::DatabaseTest {
 protected:
  using Record = typename Tested::Record;

  // A record with these columns.
  static Record Make(int key, const std::string& text, const std::string& user = "") {
    Record record;
    if (key != 0) {
      record.set_primary_key(key);
    }
    Set(record, Tested::kText, text);
    if (!user.empty()) {
      Set(record, "username", user);
    }
    return record;
  }

  static std::string TextOf(const Record& record) {
    const auto& message = record.proto();
    return message.GetReflection()->GetString(
        message, message.GetDescriptor()->FindFieldByName(Tested::kText));
  }

  // Puts a row under each key into the table, with its number as its text.
  void Insert(const std::vector<int>& keys, const std::string& user = "alice") {
    const std::string insert = "INSERT INTO " + Table() + " (" + Tested::kKey + ", " +
                               Tested::kText + (Tested::kIsOwned ? ", username" : "") +
                               ") SELECT n, n";
    const std::string owner = Tested::kIsOwned ? ", '" + user + "'" : "";
    for (const int key : keys) {
      raw_.Run(insert + owner + " FROM (VALUES (" + std::to_string(key) + ")) v (n)");
    }
  }

  // Each row's key and text.
  Rows Stored() {
    return raw_.Run(std::string("SELECT ") + Tested::kKey + ", " + Tested::kText + " FROM " +
                    Table() + " ORDER BY 1");
  }

  static std::string Table() { return Tested::kTable; }

  Controller controller_;
  typename Tested::Control control_{controller_};
  typename Tested::Interface& records_ = control_;

 private:
  static void Set(Record& record, const char* field, const std::string& text) {
    auto& message = record.mutable_proto();
    message.GetReflection()->SetString(&message, message.GetDescriptor()->FindFieldByName(field),
                                       text);
  }
};

using Kinds =
    testing::Types<Tasks, RssFeeds, RssFilters, RssItems, Thumbnails, Plugins, Notifications>;
TYPED_TEST_SUITE(EntityControlTest, Kinds);

TYPED_TEST(EntityControlTest, CreateInsertsThePresentFieldsAndGivesTheKey) {
  auto record = this->Make(7, "a");
  ASSERT_TRUE(Create(this->records_, record));
  EXPECT_EQ(record.primary_key(), 7);
  EXPECT_FALSE(Create(this->records_, record)) << "the key is taken";
  EXPECT_EQ(this->Stored(), Rows{"7|a"});
}

TYPED_TEST(EntityControlTest, GetAndListReadRows) {
  this->Insert({1, 2});
  EXPECT_EQ(this->records_.Get(2).primary_key(), 2);
  EXPECT_EQ(this->TextOf(this->records_.Get(2)), "2");
  EXPECT_FALSE(this->records_.Get(3).IsValid());
  EXPECT_EQ(this->TextOf(List(this->records_).at(0)), "1");
}

TYPED_TEST(EntityControlTest, UpdateWritesThePresentFields) {
  this->Insert({1, 2});
  EXPECT_TRUE(this->records_.Update(this->Make(2, "new")));
  EXPECT_TRUE(this->records_.Update(this->Make(3, "new"))) << "reaching no row is a success";
  EXPECT_EQ(this->Stored(), (Rows{"1|1", "2|new"}));
}

TYPED_TEST(EntityControlTest, AnUpdateOfTheKeyAloneIsFalseButForAPlugin) {
  this->Insert({1});
  typename TypeParam::Record key;
  key.set_primary_key(1);
  EXPECT_EQ(this->records_.Update(key), (std::is_same_v<TypeParam, Plugins>));
  EXPECT_EQ(this->Stored(), Rows{"1|1"});
}

TYPED_TEST(EntityControlTest, DeleteRemovesTheNamedRows) {
  this->Insert({1, 2, 3});
  EXPECT_TRUE(this->records_.Delete({1, 3, 99}));
  EXPECT_EQ(this->Stored(), Rows{"2|2"});
  EXPECT_TRUE(this->records_.Delete({99}));
}

TYPED_TEST(EntityControlTest, DeletingNoIdsIsFalseAndSendsNothing) {
  this->Insert({1});
  test_support::MessageTrace trace(this->controller_.db_session().session());
  EXPECT_FALSE(this->records_.Delete({}));
  EXPECT_EQ(trace.Messages(), "");
  EXPECT_EQ(this->Stored(), Rows{"1|1"});
}

TYPED_TEST(EntityControlTest, DeletingNoIdsIsAnsweredBeforeAnythingIsOpened) {
  test_support::HaltServer();
  test_support::RunInChild([this] {
    test_support::BecomeIds({0, 1000, 2000}, {0, 1000, 2000});
    TakeLog();
    TakeIdCalls();
    EXPECT_FALSE(this->records_.Delete({}));
    EXPECT_EQ(TakeLog(), Lines{});
    EXPECT_EQ(TakeIdCalls(), std::vector<std::string>{});
    EXPECT_THROW(this->records_.Delete({1}), soci::soci_error) << "the server is really down";
    return std::string();
  });
  test_support::ResumeServer();
}

TYPED_TEST(EntityControlTest, TheUserRestrictsTheTablesWhoseRowsBelongToUsers) {
  this->Insert({1});
  this->controller_.set_username("Bob");
  EXPECT_EQ(this->records_.Get(1).IsValid(), !TypeParam::kIsOwned);
  EXPECT_TRUE(this->records_.Update(this->Make(1, "new")));
  EXPECT_EQ(this->Stored(), Rows{TypeParam::kIsOwned ? "1|1" : "1|new"});
  EXPECT_TRUE(this->records_.Delete({1}));
  EXPECT_EQ(this->Stored().empty(), !TypeParam::kIsOwned);
  if constexpr (TypeParam::kIsOwned) {
    this->Insert({2}, "bOB");
    EXPECT_EQ(List(this->records_).size(), 1U);
    EXPECT_TRUE(this->records_.Get(2).IsValid());
    EXPECT_TRUE(this->records_.Delete({1, 2}));
    EXPECT_EQ(this->Stored(), Rows{"1|1"});
  }
}

TYPED_TEST(EntityControlTest, EachCallIsOneStatementAndAddsNothingToTheLog) {
  const std::string table = TypeParam::kTable;
  const std::string key = TypeParam::kKey;
  const std::string text = TypeParam::kText;
  const bool key_is_set = std::is_same_v<TypeParam, Plugins>;
  this->controller_.set_username("alice");
  this->controller_.db_session();
  this->raw_.Run("ALTER TABLE " + table + " RENAME TO elsewhere");
  TakeLog();
  auto record = this->Make(0, "x");
  EXPECT_FALSE(Create(this->records_, record));
  EXPECT_FALSE(record.IsValid());
  EXPECT_FALSE(this->records_.Get(1).IsValid());
  EXPECT_FALSE(this->records_.Update(this->Make(1, "x")));
  EXPECT_FALSE(this->records_.Delete({1}));
  this->raw_.Run("ALTER TABLE elsewhere RENAME TO " + table);

  const auto line = [&table](const std::string& statement) {
    return LogLine{kError, "dbquery/query",
                   "Failed to execute statement: [42P01] relation \"" + table +
                       "\" does not exist: " + statement};
  };
  const auto owned = [](int placeholder) {
    return TypeParam::kIsOwned ? " AND lower(username) = $" + std::to_string(placeholder) : "";
  };
  EXPECT_EQ(
      TakeLog(),
      (Lines{line("INSERT INTO \"" + table + "\" (\"" + text + "\") VALUES ($1) RETURNING \"" +
                  key + "\""),
             line("SELECT * FROM \"" + table + "\" WHERE " + key + " = $1" + owned(2)),
             line("UPDATE \"" + table + "\" SET " +
                  (key_is_set ? "\"" + key + "\" = $1, \"" + text + "\" = $2 WHERE " + key + " = $3"
                              : "\"" + text + "\" = $1 WHERE " + key + " = $2") +
                  owned(3)),
             line("DELETE FROM \"" + table + "\" WHERE \"" + key + "\" = ANY($1)" + owned(2))}));
}

TYPED_TEST(EntityControlTest, ANullThatTheRecordCannotHoldIsThrown) {
  this->Insert({1});
  this->raw_.Run("UPDATE " + this->Table() + " SET " + TypeParam::kNumber + " = NULL");
  if constexpr (std::is_same_v<TypeParam, Tasks>) {
    EXPECT_TRUE(this->records_.Get(1).IsValid()) << "a task holds any";
  } else {
    EXPECT_THROW(this->records_.Get(1), soci::soci_error);
    EXPECT_THROW(List(this->records_), soci::soci_error);
  }
  EXPECT_TRUE(this->records_.Delete({1})) << "the session goes on";
}

TYPED_TEST(EntityControlTest, ALostConnectionIsReplacedByTheNextCall) {
  this->Insert({1});
  EXPECT_TRUE(this->records_.Get(1).IsValid());
  test_support::TerminateOtherSessions(this->raw_);
  EXPECT_TRUE(this->records_.Get(1).IsValid());
}

}  // namespace
}  // namespace dorvdl::control
