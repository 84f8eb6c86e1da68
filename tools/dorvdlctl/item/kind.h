// RSS items as a kind of record.
#ifndef DORVDLCTL_ITEM_KIND_H_
#define DORVDLCTL_ITEM_KIND_H_

#include <dorvdl/control/option/rss_item.h>
#include <dorvdl/db/rss_item.h>

#include "record/kind.h"

namespace dorvdl::ctl {

using ItemKind = Kind<db::RssItem, control::option::rss_item::ListOption>;

const ItemKind& Items();

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_ITEM_KIND_H_
