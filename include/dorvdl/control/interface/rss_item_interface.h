/// @file
/// What can be done with RSS items.
#ifndef DORVDL_CONTROL_INTERFACE_RSS_ITEM_INTERFACE_H_
#define DORVDL_CONTROL_INTERFACE_RSS_ITEM_INTERFACE_H_

#include <dorvdl/control/option/rss_item.h>
#include <dorvdl/record/rss_item.h>
#include <dorvdl/util/export.h>

#include <vector>

namespace dorvdl::control::interface {

/// Operations on RSS items; `RssItemControl`, which implements them, states what each does and
/// returns. Never owned through this type: it has no virtual destructor.
class DORVDL_EXPORT RssItemInterface {
 public:
  virtual bool Create(record::RssItem& item) = 0;
  virtual bool Update(const record::RssItem& item) = 0;
  virtual std::vector<record::RssItem> List(const option::rss_item::ListOption& option) = 0;
  virtual bool Delete(const std::vector<int>& ids) = 0;
  virtual record::RssItem Get(int id) = 0;
  virtual int Count(const option::rss_item::ListOption& option) = 0;

 protected:
  ~RssItemInterface() = default;
};

}  // namespace dorvdl::control::interface

#endif  // DORVDL_CONTROL_INTERFACE_RSS_ITEM_INTERFACE_H_
