// The options of every kind as tuples of their criteria, to compare, fill and inspect them alike.
#ifndef TESTS_UNIT_CONTROL_OPTION_CRITERIA_H_
#define TESTS_UNIT_CONTROL_OPTION_CRITERIA_H_

#include <dorvdl/control/option/common.h>
#include <dorvdl/control/option/rss_feed.h>
#include <dorvdl/control/option/rss_filter.h>
#include <dorvdl/control/option/rss_item.h>
#include <dorvdl/control/option/task.h>
#include <dorvdl/control/option/thumbnail.h>

#include <boost/optional/optional_io.hpp>
#include <tuple>

namespace dorvdl::control::option {

inline auto Criteria(common::ListOption& option) {
  return std::tie(option.offset, option.limit, option.sort_by, option.ascending);
}
inline auto Criteria(task::ListOption& option) {
  return std::tuple_cat(Criteria(option.common),
                        std::tie(option.filename, option.task_flags, option.waiting_until_time,
                                 option.status, option.exclude_task_flags, option.exclude_status));
}
inline auto Criteria(rss_feed::ListOption& option) {
  return std::tuple_cat(Criteria(option.common), std::tie(option.url));
}
inline auto Criteria(rss_filter::ListOption& option) {
  return std::tuple_cat(Criteria(option.common), std::tie(option.feed_id));
}
inline auto Criteria(rss_item::ListOption& option) {
  return std::tuple_cat(
      Criteria(option.common),
      std::tie(option.feed_id, option.is_new, option.title_like, option.title_not_like,
               option.title_regex, option.title_not_regex, option.url, option.date));
}
inline auto Criteria(thumbnail::ListOption& option) {
  return std::tuple_cat(Criteria(option.common), std::tie(option.task_id, option.file_index));
}

template <typename Option>
int CountOfSetCriteria(Option& option) {
  return std::apply([](const auto&... criterion) { return (int{criterion.has_value()} + ...); },
                    Criteria(option));
}

// Sets every criterion to the zero, false or empty value of its type.
template <typename Option>
void SetToDefaultValues(Option& option) {
  std::apply([](auto&... criterion) { (criterion.emplace(), ...); }, Criteria(option));
}

}  // namespace dorvdl::control::option

#endif  // TESTS_UNIT_CONTROL_OPTION_CRITERIA_H_
