/// @file
/// Which RSS feeds are wanted.
#ifndef DORVDL_CONTROL_OPTION_RSS_FEED_H_
#define DORVDL_CONTROL_OPTION_RSS_FEED_H_

#include <dorvdl/control/option/common.h>
#include <dorvdl/util/export.h>

#include <boost/optional.hpp>
#include <string>

namespace dorvdl::rpc::proto::rss_feed {
class ListRequest;
}

namespace dorvdl::control::option::rss_feed {

/// Which RSS feeds are wanted, in which order, and which page of them. Each criterion is unset in a
/// new option, and an unset one imposes no restriction.
class DORVDL_EXPORT ListOption {
 public:
  /// Unsets every criterion, those of `common` too.
  void Clear();

  /// Takes over @p request: a field that is present sets its criterion, whatever its value; the
  /// other criteria are unset, whatever they were.
  void fromProto(const rpc::proto::rss_feed::ListRequest& request);

  /// Makes @p request say the same as this option and nothing else: exactly the fields of the
  /// criteria that are set are present; `common` is always present.
  void toProto(rpc::proto::rss_feed::ListRequest& request) const;

  /// Order and page.
  common::ListOption common;
  /// Address of the feed.
  boost::optional<std::string> url;
};

}  // namespace dorvdl::control::option::rss_feed

#endif  // DORVDL_CONTROL_OPTION_RSS_FEED_H_
