#include <dorv/share_path.h>
#include <dorvdl/file.h>
#include <dorvdl/record/task.h>
#include <dorvdl/record/task_status.h>
#include <dorvdl/util/log.h>
#include <dorvdl/util/task_flag.h>

#include <algorithm>
#include <boost/algorithm/string/erase.hpp>
#include <cstdio>
#include <iterator>
#include <utility>

#include "record/message_record_impl.h"
#include "util/json.h"
#include "util/text.h"

namespace dorvdl::record {
namespace {

// The field keeps the column's text as a quoted JSON text, as extra_data() expects it.
std::string QuoteAsJson(const std::string& text) { return util::JsonToText(Json::Value(text)); }

struct Protocol {
  int flag;
  const char* text;
};

// In the order in which GetTaskType() tests them.
constexpr Protocol kTypeNames[] = {
    {task_flag::kBt, "bt"},           {task_flag::kNzb, "nzb"},
    {task_flag::kHttp, "http"},       {task_flag::kHttps, "https"},
    {task_flag::kFtp, "ftp"},         {task_flag::kFtps, "ftps"},
    {task_flag::kSftp, "sftp"},       {task_flag::kEmule, "emule"},
    {task_flag::kThunder, "thunder"}, {task_flag::kFlashget, "flashget"},
    {task_flag::kQqdl, "qqdl"},
};

// In the order in which GetFlagByURL() tests them.
constexpr Protocol kUrlPrefixes[] = {
    {task_flag::kHttp, "http://"},         {task_flag::kHttps, "https://"},
    {task_flag::kBt, "magnet:?"},          {task_flag::kEmule, "ed2k://"},
    {task_flag::kFtp, "ftp://"},           {task_flag::kFtps, "ftps://"},
    {task_flag::kSftp, "sftp://"},         {task_flag::kThunder, "thunder://"},
    {task_flag::kFlashget, "flashget://"}, {task_flag::kQqdl, "qqdl://"},
};

}  // namespace

template class MessageRecord<Task, proto::Task>;

const ColumnTable& Task::Columns() {
  using Message = proto::Task;
  static const auto& columns = *new ColumnTable({
      DORVDL_COLUMN(task_id).Key().Nullable(),
      DORVDL_COLUMN(username).Owner().Nullable(),
      DORVDL_COLUMN(pid).Nullable(),
      DORVDL_COLUMN(url).Nullable(),
      DORVDL_COLUMN(filename).Nullable(),
      DORVDL_COLUMN(status).Nullable(),
      DORVDL_COLUMN(created_time).Nullable(),
      DORVDL_COLUMN(started_time).Nullable(),
      DORVDL_COLUMN(total_size).Nullable(),
      DORVDL_COLUMN(current_size).Nullable(),
      DORVDL_COLUMN(current_rate).Nullable(),
      DORVDL_COLUMN(total_peers).Nullable(),
      DORVDL_COLUMN(connected_peers).Nullable(),
      DORVDL_COLUMN(total_pieces).Nullable(),
      DORVDL_COLUMN(downloaded_pieces).Nullable(),
      DORVDL_COLUMN(available_pieces).Nullable(),
      DORVDL_COLUMN(upload_rate).Nullable(),
      DORVDL_COLUMN(total_upload).Nullable(),
      DORVDL_COLUMN(seeding_ratio).Nullable(),
      DORVDL_COLUMN(seeding_interval).Nullable(),
      DORVDL_COLUMN(seeding_elapsed).Nullable(),
      DORVDL_COLUMN(task_flags).Nullable(),
      DORVDL_COLUMN(seeders).Nullable(),
      DORVDL_COLUMN(leechers).Nullable(),
      DORVDL_COLUMN(destination).Nullable(),
      DORVDL_COLUMN(unzip_password).Nullable(),
      DORVDL_COLUMN(unzip_progress).Nullable(),
      DORVDL_COLUMN(given_filename).Nullable(),
      DORVDL_COLUMN(referer).Nullable(),
      DORVDL_COLUMN(cookie_path).Nullable(),
      DORVDL_COLUMN(thumbnail_status).Nullable(),
      DORVDL_COLUMN(extra_data).Nullable("\"null\"").ReadThrough(&QuoteAsJson),
      DORVDL_COLUMN(completed_time).Nullable(),
      DORVDL_COLUMN(waiting_until_time).Nullable(),
      DORVDL_COLUMN(file_oid).Withheld().Nullable(),
  });
  return columns;
}

std::vector<std::string> Task::GetSelectFields() { return Columns().Names(); }

std::string Task::GetTaskType() const {
  const auto* const protocol =
      std::find_if(std::begin(kTypeNames), std::end(kTypeNames),
                   [this](const Protocol& candidate) { return IsFlagOn(candidate.flag); });
  return protocol != std::end(kTypeNames) ? protocol->text : "unknown";
}

int Task::GetFlagByURL(const std::string& url) {
  const auto* const protocol =
      std::find_if(std::begin(kUrlPrefixes), std::end(kUrlPrefixes),
                   [&url](const Protocol& candidate) { return url.rfind(candidate.text, 0) == 0; });
  return protocol != std::end(kUrlPrefixes) ? protocol->flag : 0;
}

bool Task::IsFlagOn(int flag) const { return (proto().task_flags() & flag) != 0; }

bool Task::IsCompleteTask() const {
  const int status = proto().status();
  return status == kStatusFinishing || status == kStatusFinished || status == kStatusPreseeding ||
         status == kStatusSeeding;
}

bool Task::IsDownloadTaskActive() const {
  const int status = proto().status();
  return status == kStatusDownloading || status == kStatusPreseeding || status == kStatusSeeding;
}

bool Task::IsActiveTorrent() const {
  return IsFlagOn(task_flag::kBt) &&
         (IsDownloadTaskActive() || proto().status() == kStatusHashChecking);
}

std::string Task::GetSourceFilePath() const {
  constexpr int kDirectorySize = 4096;
  char directory[kDirectorySize + 1] = {};  // the byte beyond ends a target that fills the buffer
  if (GetTmpDownloadDir(directory, kDirectorySize) == -1) {
    DORVDL_LOG(LOG_ERR, "GetTmpDownloadDir failed");
    return "";
  }
  const int id = proto().task_id();
  // Everything that is no torrent is named as an NZB file, whatever its protocol: the programs that
  // write these files know the two kinds only. A longer path is cut, as those programs cut it.
  const char* const extension = IsFlagOn(task_flag::kBt) ? "torrent" : "nzb";
  char path[1024];
  const int length = std::snprintf(path, sizeof(path), "%s/%d/%d.%s", directory, id, id, extension);
  return length < 0 ? "" : path;
}

std::string Task::GetDestRealPath() const {
  const std::string& destination = proto().destination();
  const bool is_text = !util::HasNul(destination) && !util::HasNul(proto().username());
  std::string path =
      is_text ? common::GetRealPathFromSharePath(destination, proto().username()) : "";
  if (path.empty()) {
    DORVDL_LOG(LOG_ERR, "Failed to get real path of destination[%s] of task[%d]",
               destination.c_str(), proto().task_id());
  }
  return path;
}

Json::Value Task::extra_data() const {
  Json::Value value;
  const std::string& text = proto().extra_data();
  if (text.size() < 3) {
    return value;
  }
  std::string json = text.substr(1, text.size() - 2);
  // Undoes the quoting of the column's text, and drops the backslashes of its own texts with it.
  // Programs have stored their data with that in mind, so it has to stay.
  boost::erase_all(json, "\\");
  if (!util::JsonFromText(std::move(json), value)) {
    DORVDL_LOG(LOG_ERR, "Failed to parse extra_data");
  }
  return value;
}

void Task::set_extra_data(const Json::Value& value) {
  mutable_proto().set_extra_data(util::JsonToText(value));
}

}  // namespace dorvdl::record
