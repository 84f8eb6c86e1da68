#include <dorvdl/control/rss_feed_control.h>

#include "groups.h"
#include "help.h"
#include "outcome.h"
#include "record/commands.h"

namespace dorvdl::ctl {
namespace {

using control::option::rss_feed::ListOption;
using FeedKind = Kind<control::RssFeedControl, ListOption>;

void AddCriteria(CLI::App& command, ListOption& option) {
  AddTextCriterion(command, "--url", "Only feeds with exactly this address", option.url)
      .type_name("URL");
}

void RequireOwner(record::RssFeed& feed, const GlobalOptions& global) {
  if (feed.proto().has_username() != global.user.empty()) {
    throw WrongUsage("a new feed needs one owner: give either --user or username=NAME");
  }
}

const FeedKind& Feeds() {
  static const FeedKind feeds = [] {
    FeedKind kind;
    kind.noun = "feed";
    kind.title = "RSS feeds";
    kind.key = "id";
    kind.listed = {"id", "username", "title", "url", "last_update", "is_updating"};
    kind.shrinking = "url";
    kind.add_criteria = &AddCriteria;
    kind.complete = &RequireOwner;
    kind.notes = {{"last_update", "seconds since 1970"}};
    kind.help.list = {"", {"--user alice feed list --sort-by title"}};
    kind.help.show = {"", {"feed show 3 --json"}};
    kind.help.add = {"Give its owner by --user or by username=, not both.",
                     {"--user alice feed add title=News url=https://example.org/rss"}};
    kind.help.set = {"", {"feed set 3 last_update=1700000000 is_updating=no"}};
    kind.help.remove = {
        "The feeds' items and filters stay: remove them first (`item clear`, `filter remove`).",
        {"feed remove 3"}};
    return kind;
  }();
  return feeds;
}

}  // namespace

void AddFeedCommands(CLI::App& app, const GlobalOptions& global) {
  AddRecordGroup(app, Feeds(), global);
}

}  // namespace dorvdl::ctl
