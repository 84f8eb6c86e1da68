#include <dorvdl/control/option/common.h>
#include <dorvdl/proto/list_request/common.pb.h>

#include "control/option/field.h"

namespace dorvdl::control::option::common {
namespace {

using rpc::proto::common::ListRequest;

constexpr std::tuple kFields(DORVDL_OPTION_FIELD(offset), DORVDL_OPTION_FIELD(limit),
                             DORVDL_OPTION_FIELD(sort_by), DORVDL_OPTION_FIELD(ascending));

}  // namespace

void ListOption::Clear() { *this = {}; }

void ListOption::fromProto(const ListRequest& request) {
  Clear();
  ReadFields(request, kFields, *this);
}

void ListOption::toProto(ListRequest& request) const {
  request.Clear();
  WriteFields(*this, kFields, request);
}

}  // namespace dorvdl::control::option::common
