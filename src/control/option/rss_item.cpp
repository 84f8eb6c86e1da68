#include <dorvdl/control/option/rss_item.h>
#include <dorvdl/proto/list_request/rss_item.pb.h>

#include "control/option/field.h"

namespace dorvdl::control::option::rss_item {
namespace {

using rpc::proto::rss_item::ListRequest;

constexpr std::tuple kFields(DORVDL_OPTION_FIELD(feed_id), DORVDL_OPTION_FIELD(is_new),
                             DORVDL_OPTION_FIELD(title_like), DORVDL_OPTION_FIELD(title_not_like),
                             DORVDL_OPTION_FIELD(title_regex), DORVDL_OPTION_FIELD(title_not_regex),
                             DORVDL_OPTION_FIELD(url), DORVDL_OPTION_FIELD(date));

}  // namespace

void ListOption::Clear() { *this = {}; }

void ListOption::fromProto(const ListRequest& request) { ReadRequest(request, kFields, *this); }

void ListOption::toProto(ListRequest& request) const { WriteRequest(*this, kFields, request); }

}  // namespace dorvdl::control::option::rss_item
