#include <dorvdl/control/rss_feed_control.h>
#include <dorvdl/db/rss_feed.h>

namespace dorvdl::control {
namespace {

// A new accessor, for one call.
db::RssFeed Feeds(Controller& controller) { return controller.UseWithName<db::RssFeed>(); }

}  // namespace

bool RssFeedControl::Create(record::RssFeed& feed) { return Feeds(controller_).Create(feed); }

bool RssFeedControl::Update(const record::RssFeed& feed) { return Feeds(controller_).Update(feed); }

std::vector<record::RssFeed> RssFeedControl::List(const option::rss_feed::ListOption& option) {
  return Feeds(controller_).List(option);
}

bool RssFeedControl::Delete(const std::vector<int>& ids) {
  return !ids.empty() && Feeds(controller_).Delete(ids);
}

record::RssFeed RssFeedControl::Get(int id) { return Feeds(controller_).Get(id); }

int RssFeedControl::Count(const option::rss_feed::ListOption& option) {
  return Feeds(controller_).Count(option);
}

std::vector<int> RssFeedControl::ListId(const option::rss_feed::ListOption& option) {
  return Feeds(controller_).ListId(option);
}

}  // namespace dorvdl::control
