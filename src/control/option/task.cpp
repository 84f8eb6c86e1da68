#include <dorvdl/control/option/task.h>
#include <dorvdl/proto/list_request/task.pb.h>
#include <dorvdl/util/task_flag.h>
#include <dorvdl/util/to_vector.h>

#include "control/option/field.h"

namespace dorvdl::control::option::task {
namespace {

using rpc::proto::task::ListRequest;

constexpr std::tuple kFields(DORVDL_OPTION_FIELD(filename), DORVDL_OPTION_FIELD(task_flags),
                             DORVDL_OPTION_FIELD(waiting_until_time),
                             DORVDL_OPTION_FIELD(exclude_task_flags),
                             DORVDL_OPTION_FIELD(exclude_status));

}  // namespace

void ListOption::Clear() { *this = {}; }

void ListOption::fromProto(const ListRequest& request) {
  ReadRequest(request, kFields, *this);
  if (!request.status().empty()) {
    status = util::ToVector(request.status());
  }
}

void ListOption::toProto(ListRequest& request) const {
  WriteRequest(*this, kFields, request);
  if (status) {
    request.mutable_status()->Add(status->begin(), status->end());
  }
}

FileType::FileType() = default;

void FileType::Clear() { *this = {}; }

std::int32_t FileType::ToTaskFlag() const {
  return (http ? task_flag::kHttp : 0) + (https ? task_flag::kHttps : 0) +
         (bt ? task_flag::kBt : 0) + (nzb ? task_flag::kNzb : 0) + (ftp ? task_flag::kFtp : 0) +
         (ftps ? task_flag::kFtps : 0) + (sftp ? task_flag::kSftp : 0) +
         (emule ? task_flag::kEmule : 0) + (thunder ? task_flag::kThunder : 0) +
         (flashget ? task_flag::kFlashget : 0) + (qqdl ? task_flag::kQqdl : 0);
}

}  // namespace dorvdl::control::option::task
