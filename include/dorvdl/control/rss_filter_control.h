/// @file
/// RSS filters, for the programs that use the library.
#ifndef DORVDL_CONTROL_RSS_FILTER_CONTROL_H_
#define DORVDL_CONTROL_RSS_FILTER_CONTROL_H_

#include <dorvdl/control/interface/rss_filter_interface.h>
#include <dorvdl/control/shared_table_control.h>
#include <dorvdl/util/export.h>

#include <string>
#include <vector>

namespace dorvdl::db {
class RssFilter;
}

namespace dorvdl::control {

extern template class DORVDL_EXPORT
    SharedTableControl<interface::RssFilterInterface, db::RssFilter, record::RssFilter>;

/// The download rules of the RSS feeds. They belong to feeds; the acting user plays no part, but on
/// a user's controller.
class DORVDL_EXPORT RssFilterControl
    : public SharedTableControl<interface::RssFilterInterface, db::RssFilter, record::RssFilter> {
 public:
  using SharedTableControl::SharedTableControl;

  /// The filters that meet @p option, in its order; empty on failure (logged).
  std::vector<record::RssFilter> List(const option::rss_filter::ListOption& option) override;

  /// The number of filters that meet @p option; -1 on failure (logged).
  int Count(const option::rss_filter::ListOption& option) override;

  /// Whether @p subject matches the LIKE pattern @p pattern in any case; false also on failure
  /// (logged). The subject is a text, or exactly one SQL string literal, which stands for the text
  /// that it denotes.
  bool TestLike(const std::string& subject, const std::string& pattern);

  /// Whether @p subject, as for TestLike(), matches the POSIX regular expression @p pattern, case
  /// counting; false also on failure (logged), as for a pattern that is none.
  bool TestRegexp(const std::string& subject, const std::string& pattern);
};

}  // namespace dorvdl::control

#endif  // DORVDL_CONTROL_RSS_FILTER_CONTROL_H_
