#include "raw_tasks.h"

#include <utility>

#include "raw.h"

namespace bench {
namespace {

using Task = RawTasks::Task;

void Decode(Row row, Task& task) {
  task.set_task_id(row.Int());
  row.To(task.mutable_username());
  task.set_pid(row.Int());
  row.To(task.mutable_url());
  row.To(task.mutable_filename());
  task.set_status(row.Int());
  task.set_created_time(row.Int());
  task.set_started_time(row.Int());
  task.set_total_size(row.Bigint());
  task.set_current_size(row.Bigint());
  task.set_current_rate(row.Int());
  task.set_total_peers(row.Int());
  task.set_connected_peers(row.Int());
  task.set_total_pieces(row.Int());
  task.set_downloaded_pieces(row.Int());
  task.set_available_pieces(row.Int());
  task.set_upload_rate(row.Int());
  task.set_total_upload(row.Bigint());
  task.set_seeding_ratio(row.Int());
  task.set_seeding_interval(row.Int());
  task.set_seeding_elapsed(row.Int());
  task.set_task_flags(row.Int());
  task.set_seeders(row.Int());
  task.set_leechers(row.Int());
  row.To(task.mutable_destination());
  row.To(task.mutable_unzip_password());
  task.set_unzip_progress(row.Int());
  row.To(task.mutable_given_filename());
  row.To(task.mutable_referer());
  row.To(task.mutable_cookie_path());
  task.set_thumbnail_status(row.Int());
  row.To(task.mutable_extra_data());
  task.set_completed_time(row.Int());
  task.set_waiting_until_time(row.Int());
  task.set_file_oid(row.Int());
}

}  // namespace

RawTasks::RawTasks(PGconn* connection, std::string user)
    : connection_(connection), user_(std::move(user)) {}

std::vector<Task> RawTasks::List() {
  const Result result = Execute(
      connection_,
      R"(SELECT "task_id", "username", "pid", "url", "filename", "status", "created_time", )"
      R"("started_time", "total_size", "current_size", "current_rate", "total_peers", )"
      R"("connected_peers", "total_pieces", "downloaded_pieces", "available_pieces", )"
      R"("upload_rate", "total_upload", "seeding_ratio", "seeding_interval", "seeding_elapsed", )"
      R"("task_flags", "seeders", "leechers", "destination", "unzip_password", )"
      R"("unzip_progress", "given_filename", "referer", "cookie_path", "thumbnail_status", )"
      R"("extra_data", "completed_time", "waiting_until_time", "file_oid" )"
      R"(FROM "download_queue" WHERE lower(username) = $1 ORDER BY "task_id" ASC)",
      {user_.c_str()});
  return DecodeAll(result, Decode);
}

Task RawTasks::Get(int id) {
  const Result result = Execute(
      connection_, R"(SELECT * FROM "download_queue" WHERE task_id = $1 AND lower(username) = $2)",
      {std::to_string(id).c_str(), user_.c_str()});
  Task task;
  if (PQntuples(result.get()) > 0) {
    Decode({result.get(), 0}, task);
  }
  return task;
}

void RawTasks::Update(const Task& task) {
  Execute(connection_,
          R"(UPDATE "download_queue" SET "current_size" = $1, "current_rate" = $2, )"
          R"("connected_peers" = $3, "downloaded_pieces" = $4, "upload_rate" = $5, )"
          R"("total_upload" = $6 WHERE task_id = $7 AND lower(username) = $8)",
          {std::to_string(task.current_size()).c_str(), std::to_string(task.current_rate()).c_str(),
           std::to_string(task.connected_peers()).c_str(),
           std::to_string(task.downloaded_pieces()).c_str(),
           std::to_string(task.upload_rate()).c_str(), std::to_string(task.total_upload()).c_str(),
           std::to_string(task.task_id()).c_str(), user_.c_str()});
}

void RawTasks::Create(Task& task) {
  const Result result = Execute(
      connection_,
      R"(INSERT INTO "download_queue" ("username", "url", "filename", "status", "created_time", )"
      R"("total_size", "task_flags", "destination", "extra_data") )"
      R"(VALUES ($1, $2, $3, $4, $5, $6, $7, $8, $9) RETURNING "task_id")",
      {task.username().c_str(), task.url().c_str(), task.filename().c_str(),
       std::to_string(task.status()).c_str(), std::to_string(task.created_time()).c_str(),
       std::to_string(task.total_size()).c_str(), std::to_string(task.task_flags()).c_str(),
       task.destination().c_str(), task.extra_data().c_str()});
  task.set_task_id(Row(result.get(), 0).Int());
}

}  // namespace bench
