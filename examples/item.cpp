// A feed reader's run: adds the entries of an RSS feed that are not known yet.
//
// usage: item FEED_ID <ENTRIES
//
// ENTRIES are lines with a URL, a space and a title.
#include <dorvdl/control/rss_feed_control.h>
#include <dorvdl/control/rss_item_control.h>
#include <dorvdl/control/unit.h>

#include <cstddef>
#include <ctime>
#include <exception>
#include <iostream>
#include <string>

#include "tell.h"

namespace {

namespace control = dorvdl::control;
namespace option = dorvdl::control::option;
namespace record = dorvdl::record;

// Adds the entry unless it is there. False when that failed, and the unit around it with it.
bool Add(control::RssItemControl& items, int feed_id, const std::string& url,
         const std::string& title, int now) {
  option::rss_item::ListOption same;
  same.feed_id = feed_id;
  same.url = url;
  const int known = items.Count(same);
  if (known != 0) {
    return known > 0;
  }
  record::RssItem item;
  item.mutable_proto().set_feed_id(feed_id);
  item.mutable_proto().set_url(url);
  item.mutable_proto().set_title(title);
  item.mutable_proto().set_date(now);
  item.mutable_proto().set_is_new(true);
  return items.Create(item);
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc != 2) {
    return TellUsage("item FEED_ID <ENTRIES");
  }
  const int feed_id = std::stoi(argv[1]);
  const int now = static_cast<int>(std::time(nullptr));
  control::Controller controller;  // a reader works for all users
  control::RssItemControl items(controller);
  control::Unit unit(controller);

  record::RssFeed read;  // locks the feed's row: of two readers the second one waits
  read.set_primary_key(feed_id);
  read.mutable_proto().set_last_update(now);
  bool good = control::RssFeedControl(controller).Update(read);
  for (std::string line; good && std::getline(std::cin, line);) {
    const std::size_t space = line.find(' ');  // one without a title is called by its URL
    good = Add(items, feed_id, line.substr(0, space), line.substr(space + 1), now);
  }
  if (unit.Commit() != control::Unit::Outcome::kCommitted) {
    return Tell("the feed is not read", controller);
  }

  option::rss_item::ListOption fresh;
  fresh.feed_id = feed_id;
  fresh.is_new = true;
  const int count = items.Count(fresh);
  if (count < 0) {
    return Tell("the new items cannot be counted", controller);
  }
  std::cout << count << " new items\n";
  return 0;
} catch (const std::exception& error) {  // no connection, or no number
  std::cerr << "item: " << error.what() << '\n';
  return 1;
}
