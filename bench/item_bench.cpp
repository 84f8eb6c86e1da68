#include "item_bench.h"

#include <dorvdl/control/rss_item_control.h>

#include <string>
#include <vector>

#include "measure.h"
#include "raw.h"

namespace bench {
namespace {

using dorvdl::control::RssItemControl;
using dorvdl::record::RssItem;
using ListOption = dorvdl::control::option::rss_item::ListOption;
using Message = dorvdl::record::proto::RssItem;

// A hundred feeds of a thousand items each; three items have the word that is searched for.
constexpr char kItems[] = R"(
  INSERT INTO rss_item (feed_id, title, url, link, date, size, is_new)
  SELECT
    n % 100, 'Lecture ' || n || ' on ' || md5(n::text) || CASE WHEN n % 40000 = 7 THEN ' Quokka' END,
    'https://mirror.example.org/pub/' || md5(n::text), 'https://example.org/' || n,
    1700000000 + n, 700000000 + 12345::bigint * n, n % 2
  FROM generate_series(1, 100000) AS n)";

void Decode(Row row, Message& item) {
  item.set_id(row.Int());
  item.set_feed_id(row.Int());
  row.To(item.mutable_title());
  row.To(item.mutable_url());
  row.To(item.mutable_link());
  item.set_date(row.Int());
  item.set_size(row.Bigint());
  item.set_is_new(row.Int() == 1);
}

// The library's list and libpq's, by a statement with one parameter, which must give the same.
void MeasureList(PGconn* connection, RssItemControl& ours, const std::string& name,
                 const ListOption& option, const char* statement, const std::string& value) {
  const auto raw = [=] {
    return DecodeAll<Message>(Execute(connection, statement, {value.c_str()}), Decode);
  };
  const std::vector<RssItem> items = ours.List(option);
  const std::vector<Message> messages = raw();
  Check(!messages.empty() && items.size() == messages.size());
  for (std::size_t i = 0; i < items.size(); ++i) {
    Check(items[i].proto().SerializeAsString() == messages[i].SerializeAsString());
  }
  Measure(connection, name + "/ours", [=, &ours] { Check(!ours.List(option).empty()); });
  Measure(connection, name + "/raw", [=] { Check(!raw().empty()); });
}

}  // namespace

void MeasureItems(const std::shared_ptr<dorvdl::db::DBSession>& session) {
  PGconn* const connection = Connection(*session);
  Run(connection, kItems);
  Run(connection, "VACUUM ANALYZE rss_item");
  static dorvdl::control::Controller controller(session);
  static RssItemControl items(controller);

  ListOption of_feed;
  of_feed.feed_id = 7;
  MeasureList(connection, items, "items/1000", of_feed,
              R"(SELECT * FROM "rss_item" WHERE feed_id = $1)", "7");
  ListOption by_title;
  by_title.title_like = "%quokka%";
  MeasureList(connection, items, "search/title", by_title,
              R"(SELECT * FROM "rss_item" WHERE title ILIKE $1)", "%quokka%");
}

}  // namespace bench
