#include <memory>
#include <string>

#include "groups.h"
#include "help.h"
#include "item/import.h"
#include "item/kind.h"
#include "record/commands.h"

namespace dorvdl::ctl {
namespace {

using Operation = void (*)(Work& work, std::int32_t feed_id);

void MarkAll(Work& work, std::int32_t feed_id, bool is_new) {
  RequireParent(work, FeedParent(), feed_id);
  work.Use<control::RssItemControl>().UpdateAllNew(feed_id, is_new);
}

void Clear(Work& work, std::int32_t feed_id) {
  RequireOwnParent(work, FeedParent(), feed_id);
  work.Use<control::RssItemControl>().DeleteByFeedId(feed_id);
}

// A command on all items of a feed.
CLI::App& AddFeedOperation(CLI::App& group, const GlobalOptions& global, const std::string& name,
                           const std::string& description, Operation operation) {
  const auto feed_id = std::make_shared<std::int32_t>();
  CLI::App& command = *group.add_subcommand(name, description);
  AddId(command, "FEED", "The feed's id", *feed_id);
  command.callback([feed_id, operation, &global] {
    Work work(global);
    operation(work, *feed_id);
    work.Commit();
  });
  return command;
}

}  // namespace

void AddItemCommands(CLI::App& app, const GlobalOptions& global) {
  CLI::App& group = AddRecordGroup(app, Items(), global);
  AddItemImport(group, global);
  AddFeedOperation(group, global, "seen", "Mark all items of a feed as seen",
                   [](Work& work, std::int32_t feed_id) { MarkAll(work, feed_id, false); })
      .footer(Footer({"", {"item seen 3"}}));
  AddFeedOperation(group, global, "unseen", "Mark all items of a feed as new (not seen)",
                   [](Work& work, std::int32_t feed_id) { MarkAll(work, feed_id, true); })
      .footer(Footer({"`item list --new` lists them then.", {"item unseen 3"}}));
  AddFeedOperation(group, global, "clear", "Remove all items of a feed", &Clear)
      .footer(Footer({"Without --user the feed itself may be gone.", {"item clear 3"}}));
}

}  // namespace dorvdl::ctl
