// A page's trial: says which titles a pattern picks, and keeps it as a filter of a user's feed when
// it picks any.
//
// usage: filter USER FEED_ID like|regex PATTERN TITLE...
#include <dorvdl/control/rss_filter_control.h>

#include <exception>
#include <iostream>
#include <string>

#include "tell.h"

namespace {

namespace control = dorvdl::control;
namespace record = dorvdl::record;

}  // namespace

int main(int argc, char** argv) try {
  if (argc < 6) {
    return TellUsage("filter USER FEED_ID like|regex PATTERN TITLE...");
  }
  auto controller = control::Controller::ForUser(argv[1]);
  control::RssFilterControl filters(controller);
  const bool is_regex = argv[3] == std::string("regex");
  const std::string pattern = argv[4];

  int picked = 0;
  for (int i = 5; i < argc; ++i) {
    // The database tries it, so that it means here what it means for the feed's items.
    if (is_regex ? filters.TestRegexp(argv[i], pattern) : filters.TestLike(argv[i], pattern)) {
      std::cout << "picks " << argv[i] << '\n';
      ++picked;
    } else if (controller.failure()) {  // and not just another title
      return Tell("the pattern cannot be tried", controller);
    }
  }
  if (picked == 0) {
    std::cout << "picks nothing\n";
    return 0;
  }

  record::RssFilter filter;
  filter.mutable_proto().set_feed_id(std::stoi(argv[2]));
  filter.mutable_proto().set_match(pattern);
  filter.mutable_proto().set_is_regex(is_regex);
  filter.mutable_proto().set_enable(true);
  if (!filters.Create(filter)) {
    return Tell("the filter cannot be kept", controller);
  }
  std::cout << "is filter " << filter.primary_key() << '\n';
  return 0;
} catch (const std::exception& error) {  // no connection, or no number
  std::cerr << "filter: " << error.what() << '\n';
  return 1;
}
