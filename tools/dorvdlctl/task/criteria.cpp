#include "task/criteria.h"

#include <dorvdl/record/task.h>

#include <algorithm>
#include <boost/algorithm/string/predicate.hpp>
#include <cstdint>
#include <locale>
#include <map>
#include <string>
#include <vector>

#include "argument.h"
#include "parse_number.h"
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

// In any case, as the list itself takes it.
std::string CheckOrder(const std::string& name) {
  std::vector<std::string> known = record::Task::GetSelectFields();
  known.insert(known.end(), {"progress", "timeleft"});
  const bool found = std::any_of(known.begin(), known.end(), [&name](const std::string& candidate) {
    return boost::iequals(name, candidate, std::locale::classic());
  });
  return found ? "" : "\"" + name + "\" is neither a column nor progress nor timeleft";
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
    option->option_text(pair.value_name)->allow_extra_args(false)->check(pair.check);
  }
  wanted->excludes(unwanted);
}

void AddStatus(CLI::App& command, ListOption& option) {
  const Pair pair{"status", "STATUS",
                  "Only tasks in STATUS: a code, a word as the list shows it, or \"failed\" for\n"
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
                  "Only tasks that download by TYPE: bt, nzb, http, https, ftp, ftps, sftp,\n"
                  "emule, thunder, flashget or qqdl; give it again for more",
                  "Only tasks that download by anything else", CLI::IsMember(&Types())};
  AddPair(command, pair, [&option](const std::vector<std::string>& names, bool exclude) {
    option.task_flags = FlagsOf(names);
    option.exclude_task_flags = exclude;
  });
}

}  // namespace

void AddCriteria(CLI::App& command, ListOption& option) {
  command
      .add_option_function<std::string>(
          "--name", [&option](const std::string& text) { option.filename = text; },
          "Only tasks whose file name contains TEXT (case counts)")
      ->type_name("TEXT")
      ->check(Utf8Text());
  AddStatus(command, option);
  AddType(command, option);
  command
      .add_option_function<std::int32_t>(
          "--waiting-after", [&option](std::int32_t time) { option.waiting_until_time = time; },
          "Only tasks that wait for a time after EPOCH (seconds since 1970)")
      ->type_name("EPOCH")
      ->check(NumberFrom(0));
}

void AddOrderAndPage(CLI::App& command, control::option::common::ListOption& option) {
  command
      .add_option_function<std::string>(
          "--sort-by", [&option](const std::string& name) { option.sort_by = name; },
          "Order by a column (`task show` names them), by progress or by timeleft")
      ->type_name("COLUMN")
      ->check(CLI::Validator(&CheckOrder, "", ""));
  command.add_flag_callback(
      "--descending",
      [&option] {
        option.ascending = false;
        option.sort_by = option.sort_by.value_or("task_id");  // whose order is ascending otherwise
      },
      "Turn the order round");
  command
      .add_option_function<std::int32_t>(
          "--limit", [&option](std::int32_t rows) { option.limit = rows; }, "List N tasks at most")
      ->type_name("N")
      ->check(NumberFrom(0));
  command
      .add_option_function<std::int32_t>(
          "--offset", [&option](std::int32_t rows) { option.offset = rows; },
          "Leave out the first N tasks")
      ->type_name("N")
      ->check(NumberFrom(0));
}

}  // namespace dorvdl::ctl
