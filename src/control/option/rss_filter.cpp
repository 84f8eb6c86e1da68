#include <dorvdl/control/option/rss_filter.h>
#include <dorvdl/proto/list_request/rss_filter.pb.h>

#include "control/option/field.h"

namespace dorvdl::control::option::rss_filter {
namespace {

using rpc::proto::rss_filter::ListRequest;

constexpr std::tuple kFields(DORVDL_OPTION_FIELD(feed_id));

}  // namespace

void ListOption::Clear() { *this = {}; }

void ListOption::fromProto(const ListRequest& request) { ReadRequest(request, kFields, *this); }

void ListOption::toProto(ListRequest& request) const { WriteRequest(*this, kFields, request); }

}  // namespace dorvdl::control::option::rss_filter
