#include <dorvdl/control/option/rss_feed.h>
#include <dorvdl/proto/list_request/rss_feed.pb.h>

#include "control/option/field.h"

namespace dorvdl::control::option::rss_feed {
namespace {

using rpc::proto::rss_feed::ListRequest;

constexpr std::tuple kFields(DORVDL_OPTION_FIELD(url));

}  // namespace

void ListOption::Clear() { *this = {}; }

void ListOption::fromProto(const ListRequest& request) { ReadRequest(request, kFields, *this); }

void ListOption::toProto(ListRequest& request) const { WriteRequest(*this, kFields, request); }

}  // namespace dorvdl::control::option::rss_feed
