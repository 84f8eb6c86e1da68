/// @file
/// What can be done with RSS feeds.
#ifndef DORVDL_CONTROL_INTERFACE_RSS_FEED_INTERFACE_H_
#define DORVDL_CONTROL_INTERFACE_RSS_FEED_INTERFACE_H_

#include <dorvdl/control/option/rss_feed.h>
#include <dorvdl/record/rss_feed.h>
#include <dorvdl/util/export.h>

#include <vector>

namespace dorvdl::control::interface {

/// Operations on the acting user's RSS feeds; `RssFeedControl`, which implements them, states what
/// each does and returns. Never owned through this type: it has no virtual destructor.
class DORVDL_EXPORT RssFeedInterface {
 public:
  virtual bool Create(record::RssFeed& feed) = 0;
  virtual bool Update(const record::RssFeed& feed) = 0;
  virtual std::vector<record::RssFeed> List(const option::rss_feed::ListOption& option) = 0;
  virtual bool Delete(const std::vector<int>& ids) = 0;
  virtual record::RssFeed Get(int id) = 0;
  virtual int Count(const option::rss_feed::ListOption& option) = 0;

 protected:
  ~RssFeedInterface() = default;
};

}  // namespace dorvdl::control::interface

#endif  // DORVDL_CONTROL_INTERFACE_RSS_FEED_INTERFACE_H_
