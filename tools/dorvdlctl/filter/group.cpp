#include <dorvdl/control/rss_filter_control.h>

#include "filter/test.h"
#include "groups.h"
#include "help.h"
#include "record/commands.h"

namespace dorvdl::ctl {
namespace {

using control::option::rss_filter::ListOption;
using FilterKind = Kind<control::RssFilterControl, ListOption>;

void AddCriteria(CLI::App& command, ListOption& option) {
  AddNumberCriterion(command, "--feed", "Only filters of the feed with this id", 1, option.feed_id)
      .type_name("ID");
}

const FilterKind& Filters() {
  static const FilterKind filters = [] {
    FilterKind kind;
    kind.noun = "filter";
    kind.title = "Rules that pick items of RSS feeds";
    kind.key = "id";
    kind.listed = {"id",        "feed_id",  "name",   "match",
                   "not_match", "is_regex", "enable", "destination"};
    kind.shrinking = "match";
    kind.parent = &FeedParent();
    kind.add_criteria = &AddCriteria;
    kind.help.list = {"", {"filter list --feed 3"}};
    kind.help.show = {"", {"filter show 5 --json"}};
    kind.help.add = {
        "The patterns are regular expressions when is_regex is set, otherwise LIKE patterns (% and "
        "_).",
        {"filter add feed_id=3 name=Films match=%1080p% not_match=%cam%"}};
    kind.help.set = {"", {"filter set 5 enable=no"}};
    kind.help.remove = {"", {"filter remove 5 6"}};
    return kind;
  }();
  return filters;
}

}  // namespace

void AddFilterCommands(CLI::App& app, const GlobalOptions& global) {
  AddFilterTest(AddRecordGroup(app, Filters(), global), global);
}

}  // namespace dorvdl::ctl
