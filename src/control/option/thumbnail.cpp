#include <dorvdl/control/option/thumbnail.h>
#include <dorvdl/proto/list_request/thumbnail.pb.h>

#include "control/option/field.h"

namespace dorvdl::control::option::thumbnail {
namespace {

using rpc::proto::thumbnail::ListRequest;

constexpr std::tuple kFields(DORVDL_OPTION_FIELD(task_id), DORVDL_OPTION_FIELD(file_index));

}  // namespace

void ListOption::Clear() { *this = {}; }

void ListOption::fromProto(const ListRequest& request) { ReadRequest(request, kFields, *this); }

void ListOption::toProto(ListRequest& request) const { WriteRequest(*this, kFields, request); }

}  // namespace dorvdl::control::option::thumbnail
