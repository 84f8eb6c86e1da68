// A request handler: reads a serialized list request, answers with a page of the user's rows.
//
// usage: list_request task|rss_feed|rss_filter|rss_item|thumbnail USER <REQUEST >ANSWER
//
// REQUEST holds the bytes of the kind's dorvdl.rpc.proto.<kind>.ListRequest. ANSWER is a line of
// JSON, {"items":[...],"success":true,"total":N} with the number of rows on all pages, or, with
// exit status 1, {"error":"...","success":false}.
#include <dorvdl/control/rss_feed_control.h>
#include <dorvdl/control/rss_filter_control.h>
#include <dorvdl/control/rss_item_control.h>
#include <dorvdl/control/task_control.h>
#include <dorvdl/control/thumbnail_control.h>
#include <dorvdl/proto/list_request/rss_feed.pb.h>
#include <dorvdl/proto/list_request/rss_filter.pb.h>
#include <dorvdl/proto/list_request/rss_item.pb.h>
#include <dorvdl/proto/list_request/task.pb.h>
#include <dorvdl/proto/list_request/thumbnail.pb.h>
#include <google/protobuf/util/json_util.h>
#include <json/json.h>

#include <iostream>
#include <stdexcept>
#include <string>

#include "tell.h"

namespace {

namespace control = dorvdl::control;
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

// Both calls ask for nothing but what the controller's user may see, whatever the request names.
template <typename Control, typename Request, typename Option>
Json::Value List(control::Controller& controller) {
  Request request;
  if (!request.ParseFromIstream(&std::cin)) {
    throw Refusal("these bytes are no list request");
  }
  Option option;
  option.fromProto(request);
  Control rows(controller);
  Json::Value answer;
  const int total = rows.Count(option);
  if (total >= 0) {
    answer["total"] = total;
    answer["items"] = Json::Value(Json::arrayValue);
    for (const auto& record : rows.List(option)) {
      answer["items"].append(ToJson(record));
    }
  }
  if (controller.failure()) {  // of either: an empty list is none
    Tell("list_request", controller);
    throw Refusal("the list cannot be made");
  }
  return answer;
}

struct Kind {
  std::string name;
  Json::Value (*list)(control::Controller&);
};

const Kind kKinds[] = {
    {"task", List<control::TaskControl, proto::task::ListRequest, option::task::ListOption>},
    {"rss_feed",
     List<control::RssFeedControl, proto::rss_feed::ListRequest, option::rss_feed::ListOption>},
    {"rss_filter", List<control::RssFilterControl, proto::rss_filter::ListRequest,
                        option::rss_filter::ListOption>},
    {"rss_item",
     List<control::RssItemControl, proto::rss_item::ListRequest, option::rss_item::ListOption>},
    {"thumbnail",
     List<control::ThumbnailControl, proto::thumbnail::ListRequest, option::thumbnail::ListOption>},
};

Json::Value Handle(const std::string& kind, const std::string& user) {
  for (const Kind& known : kKinds) {
    if (known.name == kind) {
      auto controller = control::Controller::ForUser(user);
      return known.list(controller);
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
