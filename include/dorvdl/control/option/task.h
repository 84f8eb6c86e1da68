/// @file
/// Which download tasks are wanted.
#ifndef DORVDL_CONTROL_OPTION_TASK_H_
#define DORVDL_CONTROL_OPTION_TASK_H_

#include <dorvdl/control/option/common.h>
#include <dorvdl/util/export.h>

#include <boost/optional.hpp>
#include <cstdint>
#include <string>
#include <vector>

namespace dorvdl::rpc::proto::task {
class ListRequest;
}

namespace dorvdl::control::option::task {

/// Which download tasks are wanted, in which order, and which page of them. Each criterion is unset
/// in a new option, and an unset one imposes no restriction.
class DORVDL_EXPORT ListOption {
 public:
  /// Unsets every criterion, those of `common` too.
  void Clear();

  /// Takes over @p request: a field that is present sets its criterion, whatever its value; the
  /// other criteria are unset, whatever they were. An empty `status` counts as absent.
  void fromProto(const rpc::proto::task::ListRequest& request);

  /// Makes @p request say the same as this option and nothing else: exactly the fields of the
  /// criteria that are set are present; `common` is always present. A `status` that is set
  /// but empty adds no element, so that it reads back as unset.
  void toProto(rpc::proto::task::ListRequest& request) const;

  /// Order and page.
  common::ListOption common;
  /// Text that the task's file name must contain.
  boost::optional<std::string> filename;
  /// Bits of dorvdl::task_flag: any of them must be set. A negative mask makes the list fail.
  boost::optional<std::int32_t> task_flags;
  /// Exclusive lower bound of the task's waiting time, seconds since the epoch.
  boost::optional<std::int32_t> waiting_until_time;
  /// Status codes: the task's must be one of them.
  boost::optional<std::vector<std::int32_t>> status;
  /// True inverts `task_flags`: none of the bits may be set.
  boost::optional<bool> exclude_task_flags;
  /// True inverts `status`: the task's must be none of them.
  boost::optional<bool> exclude_status;
};

/// A choice of download protocols, for ListOption::task_flags.
class DORVDL_EXPORT FileType {
 public:
  /// No protocol is chosen.
  FileType();

  /// Sets every member to false.
  void Clear();

  /// The bits of dorvdl::task_flag that belong to the chosen protocols, together; 0 when none is
  /// chosen.
  std::int32_t ToTaskFlag() const;

  bool http = false;
  bool https = false;
  bool bt = false;
  bool nzb = false;
  bool ftp = false;
  bool ftps = false;
  bool sftp = false;
  bool emule = false;
  bool thunder = false;
  bool flashget = false;
  bool qqdl = false;
};

}  // namespace dorvdl::control::option::task

#endif  // DORVDL_CONTROL_OPTION_TASK_H_
