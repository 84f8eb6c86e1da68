/// @file
/// How a list is ordered and which page of it is wanted.
#ifndef DORVDL_CONTROL_OPTION_COMMON_H_
#define DORVDL_CONTROL_OPTION_COMMON_H_

#include <dorvdl/util/export.h>

#include <boost/optional.hpp>
#include <cstdint>
#include <string>

namespace dorvdl::rpc::proto::common {
class ListRequest;
}

namespace dorvdl::control::option::common {

/// Paging and order of a list, of whatever kind. Each criterion is unset in a new option, and an
/// unset one imposes no restriction.
class DORVDL_EXPORT ListOption {
 public:
  /// Unsets every criterion.
  void Clear();

  /// Takes over @p request: a field that is present sets its criterion, whatever its value; the
  /// other criteria are unset, whatever they were. `unused` is not looked at.
  void fromProto(const rpc::proto::common::ListRequest& request);

  /// Makes @p request say the same as this option and nothing else: exactly the fields of the
  /// criteria that are set are present.
  void toProto(rpc::proto::common::ListRequest& request) const;

  /// Rows to skip.
  boost::optional<std::int32_t> offset;
  /// Most rows to return.
  boost::optional<std::int32_t> limit;
  /// Column, or computed order, to sort by.
  boost::optional<std::string> sort_by;
  /// Direction of `sort_by`: unset or true is ascending, false descending.
  boost::optional<bool> ascending;
};

}  // namespace dorvdl::control::option::common

#endif  // DORVDL_CONTROL_OPTION_COMMON_H_
