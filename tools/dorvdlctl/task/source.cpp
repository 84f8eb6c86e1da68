#include "task/source.h"

#include <dorvdl/util/task_flag.h>

#include <boost/algorithm/string/predicate.hpp>
#include <filesystem>
#include <locale>
#include <system_error>

#include "outcome.h"
#include "rendering/text.h"

namespace dorvdl::ctl {
namespace {

int FlagByEnding(const std::string& path) {
  const auto ends_with = [&path](const char* ending) {
    return boost::iends_with(path, ending, std::locale::classic());
  };
  if (ends_with(".torrent")) {
    return task_flag::kBt;
  }
  return ends_with(".nzb") ? task_flag::kNzb : 0;
}

}  // namespace

NewTask TaskFrom(const std::string& source) {
  NewTask created;
  record::proto::Task& message = created.task.mutable_proto();
  if (!IsUtf8(source)) {
    throw Failure(source + ": not UTF-8");
  }
  if (const int flag = record::Task::GetFlagByURL(source)) {
    message.set_url(source);
    message.set_task_flags(flag);
    return created;
  }
  const int flag = FlagByEnding(source);
  if (flag == 0) {
    throw Failure(source + ": neither a URL of a known scheme nor a .torrent or .nzb file");
  }
  std::error_code error;
  if (!std::filesystem::is_regular_file(source, error)) {
    throw Failure(source + ": no such file");
  }
  message.set_filename(std::filesystem::path(source).filename());
  message.set_task_flags(flag);
  created.source_path = source;
  return created;
}

}  // namespace dorvdl::ctl
