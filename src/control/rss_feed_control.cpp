#include <dorvdl/control/rss_feed_control.h>
#include <dorvdl/db/rss_feed.h>

namespace dorvdl::control {

bool RssFeedControl::Create(record::RssFeed& feed) {
  return controller_.UseWithName<db::RssFeed>().Create(feed);
}

bool RssFeedControl::Update(const record::RssFeed& feed) {
  return controller_.UseWithName<db::RssFeed>().Update(feed);
}

std::vector<record::RssFeed> RssFeedControl::List(const option::rss_feed::ListOption& option) {
  return controller_.UseWithName<db::RssFeed>().List(option);
}

bool RssFeedControl::Delete(const std::vector<int>& ids) {
  return !ids.empty() && controller_.UseWithName<db::RssFeed>().Delete(ids);
}

record::RssFeed RssFeedControl::Get(int id) {
  return controller_.UseWithName<db::RssFeed>().Get(id);
}

int RssFeedControl::Count(const option::rss_feed::ListOption& option) {
  return controller_.UseWithName<db::RssFeed>().Count(option);
}

std::vector<int> RssFeedControl::ListId(const option::rss_feed::ListOption& option) {
  return controller_.UseWithName<db::RssFeed>().ListId(option);
}

}  // namespace dorvdl::control
