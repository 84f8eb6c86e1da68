/// @file
/// Which RSS filters are wanted.
#ifndef DORVDL_CONTROL_OPTION_RSS_FILTER_H_
#define DORVDL_CONTROL_OPTION_RSS_FILTER_H_

#include <dorvdl/control/option/common.h>
#include <dorvdl/util/export.h>

#include <boost/optional.hpp>
#include <cstdint>

namespace dorvdl::rpc::proto::rss_filter {
class ListRequest;
}

namespace dorvdl::control::option::rss_filter {

/// Which RSS filters are wanted, in which order, and which page of them. Each criterion is unset in
/// a new option, and an unset one imposes no restriction.
class DORVDL_EXPORT ListOption {
 public:
  /// Unsets every criterion, those of `common` too.
  void Clear();

  /// Takes over @p request: a field that is present sets its criterion, whatever its value; the
  /// other criteria are unset, whatever they were.
  void fromProto(const rpc::proto::rss_filter::ListRequest& request);

  /// Makes @p request say the same as this option and nothing else: exactly the fields of the
  /// criteria that are set are present; `common` is always present.
  void toProto(rpc::proto::rss_filter::ListRequest& request) const;

  /// Order and page.
  common::ListOption common;
  /// Feed that the filter belongs to.
  boost::optional<std::int32_t> feed_id;
};

}  // namespace dorvdl::control::option::rss_filter

#endif  // DORVDL_CONTROL_OPTION_RSS_FILTER_H_
