// A request handler: reads a serialized list request, answers with a page of the user's rows.
//
// usage: list_request task|rss_feed|rss_filter|rss_item|thumbnail USER <REQUEST >ANSWER
//
// REQUEST holds the bytes of the kind's dorvdl.rpc.proto.<kind>.ListRequest. ANSWER is a line of
// JSON, {"items":[...],"success":true,"total":N} with the number of rows on all pages, or, with
// exit status 1, {"error":"...","success":false}.
#include <dorvdl/control/rss_feed_control.h>
#include <dorvdl/control/task_control.h>
#include <dorvdl/db/download_queue.h>
#include <dorvdl/db/rss_feed.h>
#include <dorvdl/db/rss_filter.h>
#include <dorvdl/db/rss_item.h>
#include <dorvdl/db/thumbnail.h>
#include <dorvdl/dbquery/transaction.h>
#include <dorvdl/proto/list_request/rss_feed.pb.h>
#include <dorvdl/proto/list_request/rss_filter.pb.h>
#include <dorvdl/proto/list_request/rss_item.pb.h>
#include <dorvdl/proto/list_request/task.pb.h>
#include <dorvdl/proto/list_request/thumbnail.pb.h>
#include <google/protobuf/util/json_util.h>
#include <json/json.h>

#include <boost/optional.hpp>
#include <cstdint>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

namespace control = dorvdl::control;
namespace db = dorvdl::db;
namespace option = dorvdl::control::option;
namespace proto = dorvdl::rpc::proto;
namespace record = dorvdl::record;

// What the requester is told.
struct Refusal : std::runtime_error {
  using std::runtime_error::runtime_error;
};

Json::Value ToJson(const record::RecordBase& record) {
  Json::Value json(Json::objectValue);
  record.ToJson(json);
  return json;
}

// Tasks have no ToJson of their own; protobuf's JSON has texts in place of 64-bit numbers.
Json::Value ToJson(const record::Task& task) {
  record::proto::Task message = task.proto();
  message.clear_unzip_password();  // no list needs it
  google::protobuf::util::JsonPrintOptions options;
  options.preserve_proto_field_names = true;
  std::string text;
  Json::Value json;
  if (!google::protobuf::util::MessageToJsonString(message, &text, options).ok() ||
      !Json::Reader().parse(text, json)) {
    throw Refusal("a task cannot be shown");
  }
  return json;
}

template <typename Request, typename Option>
Option ReadOption() {
  Request request;
  if (!request.ParseFromIstream(&std::cin)) {
    throw Refusal("these bytes are no list request");
  }
  Option option;
  option.fromProto(request);
  return option;
}

template <typename Table, typename Option>
Json::Value Answer(Table table, const Option& option) {
  Json::Value answer;
  answer["total"] = table.Count(option);
  answer["items"] = Json::Value(Json::arrayValue);
  for (const auto& record : table.List(option)) {
    answer["items"].append(ToJson(record));
  }
  return answer;
}

// Rows that belong to users: the table shows each user theirs.
template <typename Request, typename Option, typename Table>
Json::Value ListOwn(control::Controller& controller) {
  return Answer(controller.UseWithName<Table>(), ReadOption<Request, Option>());
}

// Rows that belong to nobody, but to a row that does: the request must name it, and it must be the
// user's, for the table shows anybody everything. Null when it is not, or could not be found out.
template <typename Request, typename Option, typename Table, typename ParentControl,
          boost::optional<std::int32_t> Option::*parent_id>
Json::Value ListBelow(control::Controller& controller) {
  const auto option = ReadOption<Request, Option>();
  const boost::optional<std::int32_t>& parent = option.*parent_id;
  if (!parent || !ParentControl(controller).Get(*parent).IsValid()) {
    return Json::nullValue;
  }
  return Answer(controller.Use<Table>(), option);
}

struct Kind {
  std::string name;
  Json::Value (*list)(control::Controller&);
};

const Kind kKinds[] = {
    {"task", ListOwn<proto::task::ListRequest, option::task::ListOption, db::DownloadQueue>},
    {"rss_feed", ListOwn<proto::rss_feed::ListRequest, option::rss_feed::ListOption, db::RssFeed>},
    {"rss_filter",
     ListBelow<proto::rss_filter::ListRequest, option::rss_filter::ListOption, db::RssFilter,
               control::RssFeedControl, &option::rss_filter::ListOption::feed_id>},
    {"rss_item", ListBelow<proto::rss_item::ListRequest, option::rss_item::ListOption, db::RssItem,
                           control::RssFeedControl, &option::rss_item::ListOption::feed_id>},
    {"thumbnail",
     ListBelow<proto::thumbnail::ListRequest, option::thumbnail::ListOption, db::Thumbnail,
               control::TaskControl, &option::thumbnail::ListOption::task_id>},
};

Json::Value Handle(const std::string& kind, const std::string& user) {
  if (user.empty()) {
    throw Refusal("no user is named");  // a controller without a name shows the rows of all users
  }
  for (const Kind& known : kKinds) {
    if (known.name == kind) {
      // The session is held here too, so that it outlives the transaction even if the controller
      // replaces a lost connection. The transaction tells a failed list from an empty one.
      const auto session = std::make_shared<db::DBSession>();
      dorvdbquery::DefaultTransaction reading(session->session());
      control::Controller controller(session);
      controller.set_username(user);
      Json::Value answer = known.list(controller);
      if (!reading.Commit()) {
        throw Refusal("the database refused; the system log says why");
      }
      if (answer.isNull()) {
        throw Refusal("the request must name a feed or task of the user");
      }
      return answer;
    }
  }
  throw Refusal("no such kind of rows");
}

}  // namespace

int main(int argc, char** argv) {
  Json::Value answer;
  try {
    answer = Handle(argc > 1 ? argv[1] : "", argc > 2 ? argv[2] : "");
  } catch (const Refusal& refusal) {
    answer["error"] = refusal.what();
  } catch (const std::exception& error) {  // about the server: for the log, not for the requester
    std::cerr << "list_request: " << error.what() << '\n';
    answer["error"] = "the database cannot be used";
  }
  const bool success = answer.isMember("items");
  answer["success"] = success;
  Json::StreamWriterBuilder writer;
  writer["indentation"] = "";
  writer["emitUTF8"] = true;
  std::cout << Json::writeString(writer, answer) << '\n';
  return success ? 0 : 1;
}
