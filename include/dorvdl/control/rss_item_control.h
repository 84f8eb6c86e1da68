/// @file
/// RSS items, for the programs that use the library.
#ifndef DORVDL_CONTROL_RSS_ITEM_CONTROL_H_
#define DORVDL_CONTROL_RSS_ITEM_CONTROL_H_

#include <dorvdl/control/interface/rss_item_interface.h>
#include <dorvdl/control/shared_table_control.h>
#include <dorvdl/util/export.h>

#include <vector>

namespace dorvdl::db {
class RssItem;
}

namespace dorvdl::control {

extern template class DORVDL_EXPORT
    SharedTableControl<interface::RssItemInterface, db::RssItem, record::RssItem>;

/// The items of the RSS feeds. They belong to feeds; the acting user plays no part, but on a user's
/// controller.
class DORVDL_EXPORT RssItemControl
    : public SharedTableControl<interface::RssItemInterface, db::RssItem, record::RssItem> {
 public:
  using SharedTableControl::SharedTableControl;

  /// The items that meet @p option, in its order; empty on failure (logged), as for a pattern that
  /// is no regular expression.
  std::vector<record::RssItem> List(const option::rss_item::ListOption& option) override;

  /// The number of items that meet @p option; -1 on failure (logged).
  int Count(const option::rss_item::ListOption& option) override;

  /// Deletes all items of the feed. A feed without items is a success.
  bool DeleteByFeedId(int feed_id);

  /// Marks all items of the feed as new or as seen. A feed without items is a success.
  bool UpdateAllNew(int feed_id, bool is_new);
};

}  // namespace dorvdl::control

#endif  // DORVDL_CONTROL_RSS_ITEM_CONTROL_H_
