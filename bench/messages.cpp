#include "messages.h"

namespace bench {

Task NewTask() {
  Task task;
  task.set_username("Dora");
  task.set_url("https://mirror.example.org/pub/8f14e45fceea167a5a36dedd4bea2543/part.7");
  task.set_filename("Lecture 7 on 8f14e45fceea167a5a36dedd4bea2543");
  task.set_status(1);
  task.set_created_time(1'700'000'000);
  task.set_total_size(700'000'000);
  task.set_task_flags(4);
  task.set_destination("downloads/lectures");
  return task;
}

Task WholeTask() {
  Task task = NewTask();
  task.MergeFrom(Progress(0, 7));
  task.clear_task_id();
  task.set_pid(1007);
  task.set_started_time(1'700'000'100);
  task.set_total_peers(47);
  task.set_total_pieces(1400);
  task.set_available_pieces(1393);
  task.set_seeding_ratio(100);
  task.set_seeding_interval(60);
  task.set_seeding_elapsed(0);
  task.set_seeders(27);
  task.set_leechers(20);
  task.set_unzip_password("");
  task.set_unzip_progress(0);
  task.set_given_filename("lecture-7");
  task.set_referer("https://example.org/lectures");
  task.set_cookie_path("");
  task.set_thumbnail_status(0);
  task.set_extra_data(R"({"category":"lectures","priority":1})");
  task.set_completed_time(0);
  task.set_waiting_until_time(0);
  task.set_file_oid(0);
  return task;
}

Task Progress(int id, int moment) {
  Task progress = ShortProgress(id, moment);
  progress.set_connected_peers(moment % 60);
  progress.set_upload_rate(moment % 50'000);
  progress.set_total_upload(moment * 1024LL);
  return progress;
}

Task ShortProgress(int id, int moment) {
  Task progress;
  progress.set_task_id(id);
  progress.set_current_size(1'000'000'000LL + moment * 4096LL);
  progress.set_current_rate(500'000 + moment % 100'000);
  progress.set_downloaded_pieces(moment % 1400);
  return progress;
}

}  // namespace bench
