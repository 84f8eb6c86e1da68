// RSS items as a kind of record.
#ifndef DORVDLCTL_ITEM_KIND_H_
#define DORVDLCTL_ITEM_KIND_H_

#include <dorvdl/control/rss_item_control.h>

#include "record/kind.h"

namespace dorvdl::ctl {

using ItemKind = Kind<control::RssItemControl, control::option::rss_item::ListOption>;

const ItemKind& Items();

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_ITEM_KIND_H_
