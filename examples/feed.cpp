// A page's subscription: subscribes a user to an RSS feed, once, and lists the user's feeds.
//
// usage: feed USER URL
#include <dorvdl/control/rss_feed_control.h>

#include <exception>
#include <iostream>

#include "tell.h"

namespace {

namespace control = dorvdl::control;
namespace option = dorvdl::control::option;
namespace record = dorvdl::record;

}  // namespace

int main(int argc, char** argv) try {
  if (argc != 3) {
    return TellUsage("feed USER URL");
  }
  auto controller = control::Controller::ForUser(argv[1]);
  control::RssFeedControl feeds(controller);

  option::rss_feed::ListOption same;
  same.url = argv[2];
  const int known = feeds.Count(same);
  if (known < 0) {
    return Tell("the feeds cannot be counted", controller);
  }
  if (known == 0) {
    record::RssFeed feed;  // the controller's user is its owner
    feed.mutable_proto().set_url(argv[2]);
    feed.mutable_proto().set_title(argv[2]);  // until its reader knows better
    if (!feeds.Create(feed)) {
      return Tell("the feed cannot be added", controller);
    }
  }

  option::rss_feed::ListOption all;
  all.common.sort_by = "title";
  const auto listed = feeds.List(all);
  if (controller.failure()) {
    return Tell("the feeds cannot be listed", controller);
  }
  for (const record::RssFeed& feed : listed) {
    std::cout << feed.primary_key() << ' ' << feed.proto().title()
              << (feed.proto().last_update() == 0 ? " (not read yet)\n" : "\n");
  }
  return 0;
} catch (const std::exception& error) {  // no connection, or a row that cannot be read
  std::cerr << "feed: " << error.what() << '\n';
  return 1;
}
