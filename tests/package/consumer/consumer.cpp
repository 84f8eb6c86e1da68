// An outside program: uses something of each installed part, through its header and its library,
// without a server. Each check is a function that returns whether all is well, listed in main().
#include <dorv/credentials.h>
#include <dorvdl/control/captcha_control.h>
#include <dorvdl/control/controller.h>
#include <dorvdl/control/file_hosting_control.h>
#include <dorvdl/control/interface/captcha_interface.h>
#include <dorvdl/control/interface/file_hosting_interface.h>
#include <dorvdl/control/interface/notification_interface.h>
#include <dorvdl/control/interface/plugin_interface.h>
#include <dorvdl/control/interface/rss_feed_interface.h>
#include <dorvdl/control/interface/rss_filter_interface.h>
#include <dorvdl/control/interface/rss_item_interface.h>
#include <dorvdl/control/interface/task_interface.h>
#include <dorvdl/control/interface/thumbnail_interface.h>
#include <dorvdl/control/notification_control.h>
#include <dorvdl/control/option/common.h>
#include <dorvdl/control/option/rss_feed.h>
#include <dorvdl/control/option/rss_filter.h>
#include <dorvdl/control/option/rss_item.h>
#include <dorvdl/control/option/task.h>
#include <dorvdl/control/option/thumbnail.h>
#include <dorvdl/control/plugin_control.h>
#include <dorvdl/control/rss_feed_control.h>
#include <dorvdl/control/rss_filter_control.h>
#include <dorvdl/control/rss_item_control.h>
#include <dorvdl/control/task_control.h>
#include <dorvdl/control/thumbnail_control.h>
#include <dorvdl/control/unit.h>
#include <dorvdl/db/download_queue.h>
#include <dorvdl/db/notification.h>
#include <dorvdl/db/operator.h>
#include <dorvdl/db/rss_feed.h>
#include <dorvdl/db/rss_filter.h>
#include <dorvdl/db/rss_item.h>
#include <dorvdl/db/session_pool.h>
#include <dorvdl/db/task_plugin.h>
#include <dorvdl/db/thumbnail.h>
#include <dorvdl/dbquery/failure.h>
#include <dorvdl/dbquery/transaction.h>
#include <dorvdl/file.h>
#include <dorvdl/proto/list_request/common.pb.h>
#include <dorvdl/proto/list_request/rss_feed.pb.h>
#include <dorvdl/proto/list_request/rss_filter.pb.h>
#include <dorvdl/proto/list_request/rss_item.pb.h>
#include <dorvdl/proto/list_request/task.pb.h>
#include <dorvdl/proto/list_request/thumbnail.pb.h>
#include <dorvdl/record/notification.h>
#include <dorvdl/record/plugin.h>
#include <dorvdl/record/record_base.h>
#include <dorvdl/record/rss_feed.h>
#include <dorvdl/record/rss_filter.h>
#include <dorvdl/record/rss_item.h>
#include <dorvdl/record/task.h>
#include <dorvdl/record/thumbnail.h>
#include <dorvdl/record/user_setting.h>
#include <dorvdl/util/log.h>
#include <dorvdl/util/privilege.h>
#include <dorvdl/util/to_lower.h>
#include <json/json.h>
#include <soci/soci.h>
#include <unistd.h>

#include <boost/optional.hpp>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

namespace consumer {

// A record of the program's own, and its table.
class Note : public dorvdl::record::RecordBase {
 public:
  std::vector<std::string> GetInsertFields() const override { return {"id", "text"}; }
  void BindUpdateField(dorvdbquery::UpdateQuery& query) const override {
    query.SetFactory<std::string>("text", text_);
  }
  int primary_key() const override { return id_; }
  void set_primary_key(int key) override { id_ = key; }
  void soci_FromBase(const soci::values& values) override {
    id_ = values.get<int>("id");
    text_ = values.get<std::string>("text");
  }
  void soci_ToBase(soci::values& values, soci::indicator& indicator) const override {
    values.set("id", id_);
    values.set("text", text_);
    indicator = soci::i_ok;
  }

 private:
  int id_ = 0;
  std::string text_;
};

class Notes : public dorvdl::db::DBOperator<Note> {
 public:
  explicit Notes(dorvdl::db::DBSession& session, std::string user = "")
      : DBOperator(session), user_(std::move(user)) {}
  const char* GetTableName() override { return "note"; }
  const char* GetPrimaryKeyName() override { return "id"; }
  const std::string& user() const { return user_; }

 private:
  std::string user_;
};

// A table of the program's own with one of the library's records.
class Settings : public dorvdl::db::DBOperator<dorvdl::record::UserSetting> {
 public:
  using DBOperator::DBOperator;
  const char* GetTableName() override { return "user_setting"; }
  const char* GetPrimaryKeyName() override { return "username"; }
};

}  // namespace consumer

// Every operation is compiled and linked, though none can run without a server.
template class dorvdl::db::DBOperator<consumer::Note>;
template class dorvdl::db::DBOperator<dorvdl::record::UserSetting>;

namespace {

using consumer::Note;
using consumer::Notes;
using consumer::Settings;

bool HelpersWork() { return dorvdl::util::ToLower("Ägir") == "ägir"; }

template <typename Request, typename Option, typename Value>
bool Travels(boost::optional<Value> Option::*criterion, const Value& value) {
  Option sent;
  sent.*criterion = value;
  Request request;
  sent.toProto(request);
  Option received;
  received.fromProto(request);
  return received.*criterion == value;
}

bool OptionsTravelInMessages() {
  namespace option = dorvdl::control::option;
  namespace proto = dorvdl::rpc::proto;
  option::task::FileType type;
  type.bt = true;
  return Travels<proto::common::ListRequest>(&option::common::ListOption::limit, 25) &&
         Travels<proto::rss_feed::ListRequest>(&option::rss_feed::ListOption::url,
                                               std::string("http://host/feed")) &&
         Travels<proto::rss_filter::ListRequest>(&option::rss_filter::ListOption::feed_id, 3) &&
         Travels<proto::rss_item::ListRequest>(&option::rss_item::ListOption::is_new, true) &&
         Travels<proto::task::ListRequest>(&option::task::ListOption::task_flags,
                                           type.ToTaskFlag()) &&
         Travels<proto::thumbnail::ListRequest>(&option::thumbnail::ListOption::file_index, 0);
}

bool TaskControlRefusesEmptyPaths() {
  dorvdl::control::Controller controller;
  dorvdl::control::TaskControl tasks(controller);
  return !tasks.LoExport(1, "") && !tasks.LoImport(1, "");
}

template <typename Control, typename Interface>
bool RefusesNoIds() {
  dorvdl::control::Controller controller;
  Control control(controller);
  Interface& interface = control;
  return !interface.Delete({});
}

bool ControlsRefuseNoIds() {
  using namespace dorvdl::control;
  return RefusesNoIds<TaskControl, interface::TaskInterface>() &&
         RefusesNoIds<RssFeedControl, interface::RssFeedInterface>() &&
         RefusesNoIds<RssFilterControl, interface::RssFilterInterface>() &&
         RefusesNoIds<RssItemControl, interface::RssItemInterface>() &&
         RefusesNoIds<ThumbnailControl, interface::ThumbnailInterface>() &&
         RefusesNoIds<PluginControl, interface::PluginInterface>() &&
         RefusesNoIds<NotificationControl, interface::NotificationInterface>();
}

// A program's own kinds of restart: what the library's do needs a server.
class OwnCaptcha : public dorvdl::control::CaptchaControl {
 public:
  using CaptchaControl::CaptchaControl;
  bool RestartCaptchaTask(int task_id) override { return task_id == 4; }
};

class OwnFileHosting : public dorvdl::control::FileHostingControl {
 public:
  using FileHostingControl::FileHostingControl;
  bool RestartHostWaitingTask(int task_id) override { return task_id == 4; }
};

bool RestartsCanBeReplaced() {
  dorvdl::control::Controller controller;
  OwnCaptcha own_captcha(controller);
  OwnFileHosting own_file_hosting(controller);
  dorvdl::control::interface::CaptchaInterface& captcha = own_captcha;
  dorvdl::control::interface::FileHostingInterface& file_hosting = own_file_hosting;
  return captcha.RestartCaptchaTask(4) && file_hosting.RestartHostWaitingTask(4);
}

// Links what it is given. Not inlined, so that the compiler does not know the answer.
template <typename... Operations>
[[gnu::noinline]] bool AreThere(Operations... operations) {
  return ((operations != nullptr) && ...);
}

bool ControlsHaveTheirOwnOperations() {
  using namespace dorvdl::control;
  return AreThere(&RssFeedControl::ListId, &RssFilterControl::TestLike,
                  &RssFilterControl::TestRegexp, &RssItemControl::DeleteByFeedId,
                  &RssItemControl::UpdateAllNew, &PluginControl::ListActivePlugin,
                  &NotificationControl::ListFromView, &NotificationControl::DeleteEarlierThan);
}

bool ControllerHandsOutEveryTable() {
  namespace db = dorvdl::db;
  using dorvdl::control::Controller;
  return AreThere(&Controller::Use<Notes>, &Controller::UseWithName<Notes>,
                  &Controller::Use<Settings>, &Controller::UseWithName<db::DownloadQueue>,
                  &Controller::UseWithName<db::RssFeed>, &Controller::Use<db::RssFilter>,
                  &Controller::Use<db::RssItem>, &Controller::Use<db::Thumbnail>,
                  &Controller::Use<db::TaskPlugin>, &Controller::Use<db::Notification>);
}

bool TablesHaveTheirOwnOperations() {
  namespace db = dorvdl::db;
  return AreThere(&db::DownloadQueue::LoImport, &db::DownloadQueue::DeleteEarlierThan,
                  &db::RssFeed::DeleteEarlierThan, &db::RssFeed::ListId, &db::RssFilter::TestLike,
                  &db::RssItem::UpdateAllNew, &db::Thumbnail::ListFileIndexByTaskID,
                  &db::TaskPlugin::ListActivePlugin, &db::Notification::ListFromView,
                  &db::Notification::DeleteEarlierThan);
}

template <typename Record>
bool HasKey(const std::string& column) {
  Record record;
  const bool valid_at_first = record.IsValid();
  record.set_primary_key(3);
  return !valid_at_first && record.IsValid() &&
         record.GetInsertFields() == std::vector<std::string>{column};
}

bool RecordsHaveTheirKeys() {
  namespace record = dorvdl::record;
  record::UserSetting setting;
  setting.mutable_proto().set_username("alice");
  return setting.IsValid() && HasKey<record::Task>("task_id") && HasKey<record::RssFeed>("id") &&
         HasKey<record::RssFilter>("id") && HasKey<record::RssItem>("id") &&
         HasKey<record::Thumbnail>("thumbnail_id") && HasKey<record::Plugin>("task_id") &&
         HasKey<record::Notification>("id");
}

template <typename Record, typename Message>
bool ShowsItself(Message message) {
  Json::Value json;
  Record(message).ToJson(json);
  return json.size() == 1;
}

bool RecordsShowThemselves() {
  namespace record = dorvdl::record;
  record::proto::RssFeed feed;
  feed.set_is_updating(true);
  record::proto::RssFilter filter;
  filter.set_enable(true);
  record::proto::RssItem item;
  item.set_size(5'000'000'000);
  record::proto::Thumbnail thumbnail;
  thumbnail.set_create_time(5'000'000'000);
  return ShowsItself<record::RssFeed>(feed) && ShowsItself<record::RssFilter>(filter) &&
         ShowsItself<record::RssItem>(item) && ShowsItself<record::Thumbnail>(thumbnail);
}

bool PluginsAndNotificationsHoldTheirFields() {
  dorvdl::record::Plugin plugin;
  Json::Value attributes;
  attributes["a"] = 1;
  plugin.set_attributes(attributes);
  dorvdl::record::Notification notification;
  notification.mutable_proto().set_type("captcha");
  return plugin.attributes() == attributes && plugin.result().isNull() &&
         notification.getType() == 2;
}

bool OwnRecordsAreRecords() {
  Note note;
  const bool valid_at_first = note.IsValid();
  note.set_primary_key(3);
  return !valid_at_first && note.IsValid();
}

bool QueriesFailWithoutAConnection() {
  dorvdbquery::Session session;
  const auto condition = dorvdbquery::Condition::ConditionFactory<int>("id", ">", 0);

  int id = 0;
  dorvdbquery::SelectQuery select(session, "note");
  select.SelectField<int>("id", id);
  select.Where(condition);
  dorvdbquery::InsertQuery insert(session, "note");
  insert.SetInsertAll({"id", "text"});
  insert.Use(Note());
  insert.Returning("id", id);
  dorvdbquery::UpdateQuery update(session, "note");
  update.SetFactory<int>("id", 1);
  dorvdbquery::DeleteQuery remove(session, "note");
  remove.Where(condition);

  dorvdbquery::DefaultTransaction transaction(session);
  return !session.Good() && !select.Execute() && !insert.Execute() && !update.Execute() &&
         !remove.Execute() && !transaction.Commit() &&
         select.Statement().text() == "SELECT id FROM \"note\" WHERE id > $1";
}

bool TasksHoldTheirFields() {
  using dorvdl::record::Task;
  Task task;
  Json::Value data;
  data["a"] = 1;
  task.set_extra_data(data);
  task.mutable_proto().set_task_flags(Task::GetFlagByURL("https://host/file"));
  return task.proto().extra_data() == "{\"a\":1}" && task.GetTaskType() == "https" &&
         Task::GetSelectFields().size() == 35;
}

bool IdsAreAsBefore(uid_t uid, gid_t gid) { return geteuid() == uid && getegid() == gid; }

bool IdsAreSwitchedAndRestored() {
  const uid_t uid = geteuid();
  const gid_t gid = getegid();
  bool ran = false;
  IF_RUN_AS(uid, gid) {
    IF_RUN_AS(uid, gid) { ran = IdsAreAsBefore(uid, gid); }
  }
  else {
    DORVDL_LOG(LOG_ERR, "Failed to run as %u", static_cast<unsigned>(uid));
  }
  ENTERCriticalSection;
  LEAVECriticalSection;
  return ran && IdsAreAsBefore(uid, gid);
}

bool FileFunctionsAreLinked() {
  return GetTmpDownloadDirRealPath(nullptr, 0) == -1 && DORVDLQuotaCheck(0, "/", 1) == 0;
}

// For nobody, so none is sent.
bool NotificationsAreLinked() {
  const dorvdl::record::Task task;
  return !task.SendNotificationComplete(0) && !task.SendNotificationCaptcha(0) &&
         !task.SendNotificationFailed(0) && !dorvdl::record::SendNotification("None", "", nullptr);
}

bool PlatformIsLinked() { return InitCredentialsByName("nobody", 1) == 0; }

// Public headers hand out values of these libraries, so a program gets them with the package.
bool LibrariesOfThePublicHeadersAreLinked() {
  const soci::session session;
  return Json::Value("text").asString() == "text" && !session.is_connected();
}

bool AUsersControllerNeedsAName() {
  using dorvdl::control::Controller;
  Controller nobody = Controller::ForUser("");
  const int count = dorvdl::control::RssItemControl(nobody).Count({});
  const dorvdbquery::Failure& failure = nobody.failure();
  return count == -1 && failure.kind == dorvdbquery::Failure::Kind::kRefused &&
         failure.sqlstate.empty() && !failure.message.empty() &&
         !dorvdl::control::TaskControl(nobody).Delete({}) && !nobody.failure();
}

// The environment names no server here.
bool UnitsAndPoolsNeedAServer() {
  using dorvdl::control::Controller;
  dorvdl::db::SessionPool pool(2);
  try {
    const auto session = pool.Take(std::chrono::milliseconds(0));
    Controller controller(session);
    dorvdl::control::Unit unit(controller);
    return unit.Commit() == dorvdl::control::Unit::Outcome::kCommitted && !unit.failed();
  } catch (const soci::soci_error&) {
    return dorvdbquery::Session().failure().kind == dorvdbquery::Failure::Kind::kConnection;
  }
}

struct Check {
  const char* name;
  bool (*holds)();
};

constexpr Check kChecks[] = {
    {"helpers", HelpersWork},
    {"list options", OptionsTravelInMessages},
    {"task control", TaskControlRefusesEmptyPaths},
    {"controls", ControlsRefuseNoIds},
    {"restarts", RestartsCanBeReplaced},
    {"operations of controls", ControlsHaveTheirOwnOperations},
    {"a user's controller", AUsersControllerNeedsAName},
    {"units and pools", UnitsAndPoolsNeedAServer},
    {"controller", ControllerHandsOutEveryTable},
    {"operations of tables", TablesHaveTheirOwnOperations},
    {"keys of records", RecordsHaveTheirKeys},
    {"records as JSON", RecordsShowThemselves},
    {"plug-ins and notifications", PluginsAndNotificationsHoldTheirFields},
    {"own records", OwnRecordsAreRecords},
    {"queries", QueriesFailWithoutAConnection},
    {"tasks", TasksHoldTheirFields},
    {"privilege", IdsAreSwitchedAndRestored},
    {"file functions", FileFunctionsAreLinked},
    {"notifications", NotificationsAreLinked},
    {"platform", PlatformIsLinked},
    {"libraries of the public headers", LibrariesOfThePublicHeadersAreLinked},
};

}  // namespace

int main() {
  bool good = true;
  for (const Check& check : kChecks) {
    if (!check.holds()) {
      std::cout << "something is wrong with: " << check.name << '\n';
      good = false;
    }
  }
  return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
