/// @file
/// Which RSS items are wanted.
#ifndef DORVDL_CONTROL_OPTION_RSS_ITEM_H_
#define DORVDL_CONTROL_OPTION_RSS_ITEM_H_

#include <dorvdl/control/option/common.h>
#include <dorvdl/util/export.h>

#include <boost/optional.hpp>
#include <cstdint>
#include <string>

namespace dorvdl::rpc::proto::rss_item {
class ListRequest;
}

namespace dorvdl::control::option::rss_item {

/// Which RSS items are wanted, in which order, and which page of them. Each criterion is unset in a
/// new option, and an unset one imposes no restriction.
class DORVDL_EXPORT ListOption {
 public:
  /// Unsets every criterion, those of `common` too.
  void Clear();

  /// Takes over @p request: a field that is present sets its criterion, whatever its value; the
  /// other criteria are unset, whatever they were.
  void fromProto(const rpc::proto::rss_item::ListRequest& request);

  /// Makes @p request say the same as this option and nothing else: exactly the fields of the
  /// criteria that are set are present; `common` is always present.
  void toProto(rpc::proto::rss_item::ListRequest& request) const;

  /// Order and page.
  common::ListOption common;
  /// Feed that the item belongs to.
  boost::optional<std::int32_t> feed_id;
  /// Whether the item is new.
  boost::optional<bool> is_new;
  /// Pattern (SQL LIKE, any case) that the title must match.
  boost::optional<std::string> title_like;
  /// The same, which the title must not match.
  boost::optional<std::string> title_not_like;
  /// POSIX pattern, case counts, that the title must match.
  boost::optional<std::string> title_regex;
  /// The same, which the title must not match.
  boost::optional<std::string> title_not_regex;
  /// Address of the item.
  boost::optional<std::string> url;
  /// Date of the item, seconds since the epoch.
  boost::optional<std::int32_t> date;
};

}  // namespace dorvdl::control::option::rss_item

#endif  // DORVDL_CONTROL_OPTION_RSS_ITEM_H_
