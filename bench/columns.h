// The columns of the tables that are measured, written down once for all peers.
#ifndef BENCH_COLUMNS_H_
#define BENCH_COLUMNS_H_

#include <dorvdl/proto/record.pb.h>

#include <vector>

namespace bench {

using Task = dorvdl::record::proto::Task;
using Item = dorvdl::record::proto::RssItem;
using Tasks = std::vector<Task>;
using Items = std::vector<Item>;

// What a program gives a new task at least.
#define BENCH_NEW_TASK_COLUMNS(INT, BIGINT, TEXT)                                                \
  TEXT(username), TEXT(url), TEXT(filename), INT(status), INT(created_time), BIGINT(total_size), \
      INT(task_flags), TEXT(destination)

// All columns of a task but its key, in the table's order.
#define BENCH_TASK_COLUMNS(INT, BIGINT, TEXT)                                                    \
  TEXT(username), INT(pid), TEXT(url), TEXT(filename), INT(status), INT(created_time),           \
      INT(started_time), BIGINT(total_size), BIGINT(current_size), INT(current_rate),            \
      INT(total_peers), INT(connected_peers), INT(total_pieces), INT(downloaded_pieces),         \
      INT(available_pieces), INT(upload_rate), BIGINT(total_upload), INT(seeding_ratio),         \
      INT(seeding_interval), INT(seeding_elapsed), INT(task_flags), INT(seeders), INT(leechers), \
      TEXT(destination), TEXT(unzip_password), INT(unzip_progress), TEXT(given_filename),        \
      TEXT(referer), TEXT(cookie_path), INT(thumbnail_status), TEXT(extra_data),                 \
      INT(completed_time), INT(waiting_until_time), INT(file_oid)

// Fills a message from a peer's row, which is asked for each column once, in the order of the
// table, with its name: Int(name), Bigint(name) and Text(name, field). A NULL reads as 0 or as no
// text.
#define BENCH_READ_INT(name) message.set_##name(row.Int(#name))
#define BENCH_READ_BIGINT(name) message.set_##name(row.Bigint(#name))
#define BENCH_READ_TEXT(name) row.Text(#name, message.mutable_##name())

template <typename Row>
void Decode(Row row, Task& message) {
  BENCH_READ_INT(task_id);
  BENCH_TASK_COLUMNS(BENCH_READ_INT, BENCH_READ_BIGINT, BENCH_READ_TEXT);
}

template <typename Row>
void Decode(Row row, Item& message) {
  BENCH_READ_INT(id);
  BENCH_READ_INT(feed_id);
  BENCH_READ_TEXT(title);
  BENCH_READ_TEXT(url);
  BENCH_READ_TEXT(link);
  BENCH_READ_INT(date);
  BENCH_READ_BIGINT(size);
  message.set_is_new(row.Int("is_new") == 1);
}

}  // namespace bench

#endif  // BENCH_COLUMNS_H_
