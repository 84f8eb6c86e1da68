#include "task/criteria.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "reading/parse_number.h"
#include "record/criterion.h"
#include "rendering/status_word.h"

namespace dorvdl::ctl {
namespace {

using control::option::task::FileType;
using control::option::task::ListOption;

const std::map<std::string, bool FileType::*>& Types() {
  static const std::map<std::string, bool FileType::*> types = {
      {"bt", &FileType::bt},           {"nzb", &FileType::nzb},
      {"http", &FileType::http},       {"https", &FileType::https},
      {"ftp", &FileType::ftp},         {"ftps", &FileType::ftps},
      {"sftp", &FileType::sftp},       {"emule", &FileType::emule},
      {"thunder", &FileType::thunder}, {"flashget", &FileType::flashget},
      {"qqdl", &FileType::qqdl},
  };
  return types;
}

std::int32_t FlagsOf(const std::vector<std::string>& names) {
  FileType chosen;
  for (const std::string& name : names) {
    chosen.*Types().at(name) = true;
  }
  return chosen.ToTaskFlag();
}

// The statuses that a code or a word stands for; none for any other text.
std::vector<std::int32_t> StatusesOf(const std::string& text) {
  std::int32_t code = 0;
  return ParseNumber(text, code) ? std::vector<std::int32_t>{code} : StatusesCalled(text);
}

std::string CheckStatus(const std::string& text) {
  return StatusesOf(text).empty() ? "\"" + text + "\" is no status" : "";
}

// A pair of options that exclude each other. Each may be given several times, one value a time.
struct Pair {
  std::string name;
  std::string value_name;
  std::string description;
  std::string opposite_description;
  CLI::Validator check;
};

// @p apply is told the values, and whether they are those of the opposite.
template <typename Apply>
void AddPair(CLI::App& command, const Pair& pair, Apply apply) {
  using Values = std::vector<std::string>;
  CLI::Option* const wanted = command.add_option_function<Values>(
      "--" + pair.name, [apply](const Values& values) { apply(values, false); }, pair.description);
  CLI::Option* const unwanted = command.add_option_function<Values>(
      "--not-" + pair.name, [apply](const Values& values) { apply(values, true); },
      pair.opposite_description);
  for (CLI::Option* const option : {wanted, unwanted}) {
    option->type_name(pair.value_name)->allow_extra_args(false)->check(pair.check);
  }
  wanted->excludes(unwanted);
}

void AddStatus(CLI::App& command, ListOption& option) {
  const Pair pair{"status", "STATUS",
                  "Only tasks in STATUS: a code, a word as the list shows it, or \"failed\" for "
                  "every error; give it again for more",
                  "Only tasks in any other status", CLI::Validator(&CheckStatus, "", "")};
  AddPair(command, pair, [&option](const std::vector<std::string>& texts, bool exclude) {
    option.status.emplace();
    for (const std::string& text : texts) {
      const std::vector<std::int32_t> statuses = StatusesOf(text);
      option.status->insert(option.status->end(), statuses.begin(), statuses.end());
    }
    option.exclude_status = exclude;
  });
}

void AddType(CLI::App& command, ListOption& option) {
  const Pair pair{"type", "TYPE",
                  "Only tasks that download by TYPE: bt, nzb, http, https, ftp, ftps, sftp, "
                  "emule, thunder, flashget or qqdl; give it again for more",
                  "Only tasks that download by anything else",
                  CLI::IsMember(&Types()).description("")};
  AddPair(command, pair, [&option](const std::vector<std::string>& names, bool exclude) {
    option.task_flags = FlagsOf(names);
    option.exclude_task_flags = exclude;
  });
}

}  // namespace

void AddTaskCriteria(CLI::App& command, ListOption& option) {
  AddTextCriterion(command, "--name", "Only tasks whose file name contains TEXT (case counts)",
                   option.filename);
  AddStatus(command, option);
  AddType(command, option);
  AddNumberCriterion(command, "--waiting-after",
                     "Only tasks that wait for a time after EPOCH (seconds since 1970)", 0,
                     option.waiting_until_time)
      .type_name("EPOCH");
}

}  // namespace dorvdl::ctl
