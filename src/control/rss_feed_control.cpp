#include <dorvdl/control/rss_feed_control.h>
#include <dorvdl/db/rss_feed.h>

#include "control/operation.h"

namespace dorvdl::control {
namespace {

// Runs @p call, which is given an accessor, as one operation.
template <typename Call>
auto OnFeeds(Controller& controller, Call call) {
  return OnTable<db::RssFeed>(controller, call);
}

}  // namespace

bool RssFeedControl::Create(record::RssFeed& feed) {
  return OnFeeds(controller_, [&](auto& feeds) { return feeds.Create(feed); });
}

bool RssFeedControl::Update(const record::RssFeed& feed) {
  return OnFeeds(controller_, [&](auto& feeds) { return feeds.Update(feed); });
}

std::vector<record::RssFeed> RssFeedControl::List(const option::rss_feed::ListOption& option) {
  return OnFeeds(controller_, [&](auto& feeds) { return feeds.List(option); });
}

bool RssFeedControl::Delete(const std::vector<int>& ids) {
  return ids.empty() ? NothingToDo(controller_)
                     : OnFeeds(controller_, [&](auto& feeds) { return feeds.Delete(ids); });
}

record::RssFeed RssFeedControl::Get(int id) {
  return OnFeeds(controller_, [&](auto& feeds) { return feeds.Get(id); });
}

int RssFeedControl::Count(const option::rss_feed::ListOption& option) {
  return OnTable<db::RssFeed>(
      controller_, [&](auto& feeds) { return feeds.Count(option); }, kNoCount);
}

std::vector<int> RssFeedControl::ListId(const option::rss_feed::ListOption& option) {
  return OnFeeds(controller_, [&](auto& feeds) { return feeds.ListId(option); });
}

}  // namespace dorvdl::control
