// A request handler: shows the filters of one of the requester's feeds, after it has added one when
// the request brings its pattern.
//
// usage: user USER FEED_ID [PATTERN]
#include <dorvdl/control/rss_filter_control.h>

#include <exception>
#include <iostream>
#include <string>

#include "tell.h"

namespace {

namespace control = dorvdl::control;
namespace record = dorvdl::record;

bool Add(control::Controller& controller, int feed_id, const std::string& pattern) {
  record::RssFilter filter;
  filter.mutable_proto().set_feed_id(feed_id);
  filter.mutable_proto().set_match(pattern);
  filter.mutable_proto().set_enable(true);
  return control::RssFilterControl(controller).Create(filter);
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc < 3) {
    return TellUsage("user USER FEED_ID [PATTERN]");
  }
  const int feed_id = std::stoi(argv[2]);
  // [user]
  auto controller = control::Controller::ForUser(argv[1]);
  if (argc > 3 && !Add(controller, feed_id, argv[3])) {
    return Tell("the filter cannot be added", controller);  // as to another user's feed
  }
  control::option::rss_filter::ListOption of_feed;
  of_feed.feed_id = feed_id;
  // Another user's feed has no filters here, and nobody needs to ask whose it is.
  const auto filters = control::RssFilterControl(controller).List(of_feed);
  // [user]
  if (controller.failure()) {
    return Tell("the filters cannot be listed", controller);
  }
  std::cout << filters.size() << " filters\n";
  for (const record::RssFilter& filter : filters) {
    std::cout << filter.primary_key() << ' ' << filter.proto().match() << '\n';
  }
  return 0;
} catch (const std::exception& error) {  // no connection, or no number
  std::cerr << "user: " << error.what() << '\n';
  return 1;
}
