#include "item/kind.h"

#include "record/criterion.h"

namespace dorvdl::ctl {
namespace {

using control::option::rss_item::ListOption;

void AddCriteria(CLI::App& command, ListOption& option) {
  AddNumberCriterion(command, "--feed", "Only items of the feed with this id", 1, option.feed_id)
      .type_name("ID");
  CLI::Option* const is_new = command.add_flag_callback(
      "--new", [&option] { option.is_new = true; }, "Only new items, which are those not seen yet");
  command
      .add_flag_callback(
          "--seen", [&option] { option.is_new = false; }, "Only items that have been seen")
      ->excludes(is_new);
  AddTextCriterion(command, "--like",
                   "Only items whose title matches a LIKE pattern (% any text, _ any character, "
                   "any case)",
                   option.title_like)
      .type_name("PATTERN");
  AddTextCriterion(command, "--not-like", "Only items whose title does not match a LIKE pattern",
                   option.title_not_like)
      .type_name("PATTERN");
  AddTextCriterion(command, "--regex",
                   "Only items whose title matches a POSIX regular expression (case counts)",
                   option.title_regex)
      .type_name("PATTERN");
  AddTextCriterion(command, "--not-regex",
                   "Only items whose title does not match a POSIX regular expression",
                   option.title_not_regex)
      .type_name("PATTERN");
  AddTextCriterion(command, "--url", "Only items with exactly this address", option.url)
      .type_name("URL");
  AddNumberCriterion(command, "--date", "Only items of exactly this time (seconds since 1970)", 0,
                     option.date)
      .type_name("EPOCH");
}

}  // namespace

const ItemKind& Items() {
  static const ItemKind items = [] {
    ItemKind kind;
    kind.noun = "item";
    kind.title = "Items of RSS feeds";
    kind.key = "id";
    kind.listed = {"id", "feed_id", "title", "date", "size", "is_new"};
    kind.shrinking = "title";
    kind.parent = &FeedParent();
    kind.add_criteria = &AddCriteria;
    kind.notes = {{"date", "seconds since 1970"}, {"size", "bytes"}};
    kind.help.list = {"An item is listed when it meets all criteria.",
                      {"item list --feed 3 --new --sort-by date --descending --limit 20",
                       "item list --like '%1080p%' --not-regex '[Cc]am' --count"}};
    kind.help.show = {"", {"item show 12 --json"}};
    kind.help.add = {"`item import` adds many at once.",
                     {"item add feed_id=3 'title=Some film' is_new=yes"}};
    kind.help.set = {"", {"item set 12 is_new=no"}};
    kind.help.remove = {"", {"item remove 12 13"}};
    return kind;
  }();
  return items;
}

}  // namespace dorvdl::ctl
