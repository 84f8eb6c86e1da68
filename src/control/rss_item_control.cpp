#include <dorvdl/control/rss_item_control.h>
#include <dorvdl/db/rss_item.h>

#include "control/shared_table_control_impl.h"

namespace dorvdl::control {

template class SharedTableControl<interface::RssItemInterface, db::RssItem, record::RssItem>;

std::vector<record::RssItem> RssItemControl::List(const option::rss_item::ListOption& option) {
  return OnTable<db::RssItem>(controller_, [&](auto& table) { return table.List(option); });
}

int RssItemControl::Count(const option::rss_item::ListOption& option) {
  return OnTable<db::RssItem>(
      controller_, [&](auto& table) { return table.Count(option); }, kNoCount);
}

bool RssItemControl::DeleteByFeedId(int feed_id) {
  return OnTable<db::RssItem>(controller_,
                              [&](auto& table) { return table.DeleteByFeedId(feed_id); });
}

bool RssItemControl::UpdateAllNew(int feed_id, bool is_new) {
  return OnTable<db::RssItem>(controller_,
                              [&](auto& table) { return table.UpdateAllNew(feed_id, is_new); });
}

}  // namespace dorvdl::control
