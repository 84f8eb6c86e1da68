/// @file
/// What can be done with RSS filters.
#ifndef DORVDL_CONTROL_INTERFACE_RSS_FILTER_INTERFACE_H_
#define DORVDL_CONTROL_INTERFACE_RSS_FILTER_INTERFACE_H_

#include <dorvdl/control/option/rss_filter.h>
#include <dorvdl/record/rss_filter.h>
#include <dorvdl/util/export.h>

#include <vector>

namespace dorvdl::control::interface {

/// Operations on RSS filters; `RssFilterControl`, which implements them, states what each does and
/// returns. Never owned through this type: it has no virtual destructor.
class DORVDL_EXPORT RssFilterInterface {
 public:
  virtual bool Create(record::RssFilter& filter) = 0;
  virtual bool Update(const record::RssFilter& filter) = 0;
  virtual std::vector<record::RssFilter> List(const option::rss_filter::ListOption& option) = 0;
  virtual bool Delete(const std::vector<int>& ids) = 0;
  virtual record::RssFilter Get(int id) = 0;
  virtual int Count(const option::rss_filter::ListOption& option) = 0;

 protected:
  ~RssFilterInterface() = default;
};

}  // namespace dorvdl::control::interface

#endif  // DORVDL_CONTROL_INTERFACE_RSS_FILTER_INTERFACE_H_
