/// @file
/// RSS feeds, for the programs that use the library.
#ifndef DORVDL_CONTROL_RSS_FEED_CONTROL_H_
#define DORVDL_CONTROL_RSS_FEED_CONTROL_H_

#include <dorvdl/control/controller.h>
#include <dorvdl/control/interface/rss_feed_interface.h>
#include <dorvdl/util/export.h>

#include <vector>

namespace dorvdl::control {

/// The RSS feeds of the controller's acting user, or of all users when it has none. Controller says
/// what holds for all controls.
class DORVDL_EXPORT RssFeedControl : public interface::RssFeedInterface {
 public:
  explicit RssFeedControl(Controller& controller) : controller_(controller) {}

  /// Inserts @p feed and sets its id. Its owner is its own `username`, not the acting user.
  bool Create(record::RssFeed& feed) override;

  /// Writes the present fields of @p feed to the acting user's feed with its id. True also when
  /// there is none; false when only the key is present.
  bool Update(const record::RssFeed& feed) override;

  /// The acting user's feeds that meet @p option, in its order; empty on failure (logged).
  std::vector<record::RssFeed> List(const option::rss_feed::ListOption& option) override;

  /// Deletes the acting user's feeds with these ids. False for no ids, without asking the database.
  /// Their items and filters stay.
  bool Delete(const std::vector<int>& ids) override;

  /// The acting user's feed with this id; not valid when there is none.
  record::RssFeed Get(int id) override;

  /// The number of the acting user's feeds that meet @p option; -1 on failure (logged).
  int Count(const option::rss_feed::ListOption& option) override;

  /// The ids of the acting user's feeds, in the database's order, paged by @p option, of which
  /// nothing else counts. Empty on failure (logged).
  std::vector<int> ListId(const option::rss_feed::ListOption& option);

 private:
  Controller& controller_;
};

}  // namespace dorvdl::control

#endif  // DORVDL_CONTROL_RSS_FEED_CONTROL_H_
