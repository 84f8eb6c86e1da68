#include "data.h"

#include <algorithm>
#include <cstdlib>

namespace bench {
namespace {

// The tasks of all users lie mixed in the table, as they come in when all of them are busy. Some
// columns are NULL in some rows.
constexpr char kTasks[] = R"(
  INSERT INTO download_queue (
    username, pid, url, filename, status, created_time, started_time, total_size, current_size,
    current_rate, total_peers, connected_peers, total_pieces, downloaded_pieces, available_pieces,
    task_flags, seeders, leechers, destination, given_filename, completed_time, extra_data)
  SELECT
    initcap(name), 1000 + n % 20,
    'https://mirror.example.org/pub/' || md5(n::text) || '/part.' || n,
    left('Lecture ' || n || ' on ' || md5(name || n) || md5(n || name), 30 + n % 31),
    1 + n % 8, 1700000000 + n, 1700000100 + n, 700000000 + 12345::bigint * n, 100000 * n::bigint,
    900000 + n, 40 + n % 50, n % 40, 1400, n % 1400, 1400,
    4, 20 + n % 20, 20, 'downloads/lectures',
    CASE WHEN n % 5 = 0 THEN NULL ELSE '' END, CASE WHEN n % 8 = 4 THEN 1700009000 + n END,
    CASE WHEN n % 10 = 0 THEN '{"category":"lectures","priority":' || n % 3 || '}' END
  FROM (VALUES $users) AS users (name, tasks), generate_series(1, tasks) AS n
  ORDER BY n)";

// One item in 40 000 has the word that is searched for.
constexpr char kItems[] = R"(
  INSERT INTO rss_item (feed_id, title, url, link, date, size, is_new)
  SELECT
    1 + n / 1000, 'Lecture ' || n || ' on ' || md5(n::text) ||
      CASE WHEN n % 40000 = 7 THEN ' Quokka' END,
    'https://mirror.example.org/pub/' || md5(n::text), 'https://example.org/' || n,
    1700000000 + n, 700000000 + 12345::bigint * n, n % 2
  FROM generate_series(0, $items - 1) AS n)";

std::string Replaced(std::string text, const std::string& name, const std::string& value) {
  return text.replace(text.find(name), name.size(), value);
}

}  // namespace

Data WholeData() {
  return {{{"alma", 50}, {kWorker, 1000}, {"clara", 20000}, {"greta", 100000}}, 100000, {1, 64}};
}

Data ShortData() { return {{{"alma", 50}, {kWorker, 1000}}, 2000, {1}}; }

void Fill(Connection& database, const Data& data) {
  std::vector<User> users = data.listed;
  users.insert(users.end(), {{kCreator, 300}, {kIdler, 3000}});
  std::string rows;
  for (const User& user : users) {
    rows += (rows.empty() ? "('" : ", ('") + user.name + "', " + std::to_string(user.tasks) + ")";
  }
  database.Run(Replaced(kTasks, "$users", rows));
  database.Run(Replaced(kItems, "$items", std::to_string(data.items)));
  database.Run("VACUUM ANALYZE download_queue");
  database.Run("VACUUM ANALYZE rss_item");
}

std::vector<int> TasksOf(Connection& database, const std::string& user) {
  const std::string query =
      "SELECT task_id FROM download_queue WHERE lower(username) = '" + user + "' ORDER BY task_id";
  const Result result = Checked(database.get(), PQexec(database.get(), query.c_str()));
  std::vector<int> ids;
  ids.reserve(static_cast<std::size_t>(PQntuples(result.get())));
  for (int row = 0; row < PQntuples(result.get()); ++row) {
    ids.push_back(std::atoi(PQgetvalue(result.get(), row, 0)));
  }
  return ids;
}

}  // namespace bench
