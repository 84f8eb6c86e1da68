// A scheduler's run: turns the new RSS items that the feeds' filters pick into download tasks, for
// all users. Prints a line per task; run it as often as you like, also twice at once.
//
// Each feed is one unit: its tasks are created, its items marked as seen and its time set
// together or not at all, so that no crash loses an item or downloads it twice. Each filter's work
// is a unit within it: one that fails leaves the rest of the feed as it is.
#include <dorvdl/control/rss_feed_control.h>
#include <dorvdl/control/rss_filter_control.h>
#include <dorvdl/control/rss_item_control.h>
#include <dorvdl/control/task_control.h>
#include <dorvdl/control/unit.h>
#include <dorvdl/record/task_status.h>

#include <ctime>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

namespace {

namespace control = dorvdl::control;
namespace option = dorvdl::control::option;
namespace record = dorvdl::record;
using control::Unit;

// What the filter asks for. Both kinds of pattern may match anywhere in a title: regular
// expressions do, and a LIKE pattern, which otherwise stands for the whole title, is given a "%" at
// each end. (The user's own "%" and "_" keep their meaning.) An empty `match` picks everything.
option::rss_item::ListOption NewItems(const record::proto::RssFilter& filter) {
  option::rss_item::ListOption items;
  items.common.sort_by = "id";
  items.feed_id = filter.feed_id();
  items.is_new = true;
  auto& wanted = filter.is_regex() ? items.title_regex : items.title_like;
  auto& unwanted = filter.is_regex() ? items.title_not_regex : items.title_not_like;
  const std::string wildcard = filter.is_regex() ? "" : "%";
  wanted = wildcard + filter.match() + wildcard;
  if (!filter.not_match().empty()) {  // an empty one would rule out everything
    unwanted = wildcard + filter.not_match() + wildcard;
  }
  return items;
}

record::Task TaskFor(const record::proto::RssFeed& feed, const record::proto::RssFilter& filter,
                     const record::proto::RssItem& item) {
  record::Task task;
  task.mutable_proto().set_username(feed.username());
  task.mutable_proto().set_url(item.url());
  task.mutable_proto().set_task_flags(record::Task::GetFlagByURL(item.url()));
  task.mutable_proto().set_destination(filter.destination());
  task.mutable_proto().set_status(record::kStatusWaiting);
  task.mutable_proto().set_created_time(static_cast<int>(std::time(nullptr)));
  return task;
}

// Adds the tasks of one filter to the database and to @p tasks. False when that failed, as it does
// when the pattern is no regular expression; nothing of the filter's work stays then.
bool Apply(control::Controller& controller, const record::proto::RssFeed& feed,
           const record::proto::RssFilter& filter, std::vector<record::Task>& tasks) {
  Unit work(controller);  // within the feed's: a savepoint of it
  control::RssItemControl items(controller);
  std::vector<record::Task> created;
  for (const record::RssItem& item : items.List(NewItems(filter))) {
    record::Task task = TaskFor(feed, filter, item.proto());
    if (task.proto().task_flags() == 0) {
      continue;  // no address that anything could download
    }
    record::RssItem seen;  // no longer new, so that no other filter takes it as well
    seen.set_primary_key(item.primary_key());
    seen.mutable_proto().set_is_new(false);
    if (!control::TaskControl(controller).Create(task, "") || !items.Update(seen)) {
      return false;
    }
    created.push_back(task);
  }
  if (work.Commit() != Unit::Outcome::kCommitted) {  // tells a failed list from an empty one, too
    return false;
  }
  tasks.insert(tasks.end(), created.begin(), created.end());
  return true;
}

// Works one feed off. False when the database failed; then nothing of it is done.
bool Run(control::Controller& controller, int feed_id) {
  Unit work(controller);
  control::RssFeedControl feeds(controller);

  // Before all else, for this locks the feed's row: another scheduler, or a reader that marks the
  // feed as being updated before it adds items, waits until the unit is over.
  record::RssFeed update;
  update.set_primary_key(feed_id);
  update.mutable_proto().set_last_update(static_cast<int>(std::time(nullptr)));
  if (!feeds.Update(update)) {
    return false;
  }
  const record::RssFeed feed = feeds.Get(feed_id);
  if (!feed.IsValid()) {
    return work.Commit() == Unit::Outcome::kCommitted;  // as when it has been deleted meanwhile
  }
  if (feed.proto().is_updating()) {
    return true;  // its reader is at work and adds items; they are for the next run
  }

  option::rss_filter::ListOption of_feed;
  of_feed.common.sort_by = "id";
  of_feed.feed_id = feed_id;
  std::vector<record::Task> tasks;
  bool all_applied = true;
  for (const record::RssFilter& filter : control::RssFilterControl(controller).List(of_feed)) {
    if (filter.proto().enable() && !Apply(controller, feed.proto(), filter.proto(), tasks)) {
      std::cerr << "filter " << filter.primary_key() << " cannot be applied (see system log)\n";
      all_applied = false;
    }
  }
  // What a filter could not look at stays new until the filter is mended.
  if (all_applied && !control::RssItemControl(controller).UpdateAllNew(feed_id, false)) {
    return false;
  }
  if (work.Commit() != Unit::Outcome::kCommitted) {
    return false;
  }
  for (const record::Task& task : tasks) {
    std::cout << task.primary_key() << ' ' << task.proto().username() << ' ' << task.GetTaskType()
              << ' ' << task.proto().url() << " -> " << task.proto().destination() << '\n';
  }
  return true;
}

}  // namespace

int main() try {
  control::Controller controller;  // no user name: it acts for all users
  option::rss_feed::ListOption all;
  all.common.sort_by = "id";
  const auto feeds = control::RssFeedControl(controller).List(all);
  bool good = !controller.failure();
  for (const record::RssFeed& feed : feeds) {
    good = Run(controller, feed.primary_key()) && good;
  }
  return good ? 0 : 1;
} catch (const std::exception& error) {  // no connection, or a row that cannot be read
  std::cerr << "scheduler: " << error.what() << '\n';
  return 1;
}
