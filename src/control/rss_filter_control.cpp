#include <dorvdl/control/rss_filter_control.h>
#include <dorvdl/db/rss_filter.h>

#include "control/shared_table_control_impl.h"

namespace dorvdl::control {

template class SharedTableControl<interface::RssFilterInterface, db::RssFilter, record::RssFilter>;

std::vector<record::RssFilter> RssFilterControl::List(
    const option::rss_filter::ListOption& option) {
  return OnTable<db::RssFilter>(controller_, [&](auto& table) { return table.List(option); });
}

int RssFilterControl::Count(const option::rss_filter::ListOption& option) {
  return OnTable<db::RssFilter>(
      controller_, [&](auto& table) { return table.Count(option); }, kNoCount);
}

bool RssFilterControl::TestLike(const std::string& subject, const std::string& pattern) {
  return OnTable<db::RssFilter>(controller_,
                                [&](auto& table) { return table.TestLike(subject, pattern); });
}

bool RssFilterControl::TestRegexp(const std::string& subject, const std::string& pattern) {
  return OnTable<db::RssFilter>(controller_,
                                [&](auto& table) { return table.TestRegexp(subject, pattern); });
}

}  // namespace dorvdl::control
