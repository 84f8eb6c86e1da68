#include "filter/test.h"

#include <dorvdl/control/rss_filter_control.h>

#include <boost/algorithm/string/replace.hpp>
#include <iostream>
#include <memory>
#include <string>

#include "argument.h"
#include "help.h"
#include "record/print.h"
#include "work.h"

namespace dorvdl::ctl {
namespace {

struct Arguments {
  std::string text;
  std::string pattern;
  bool regex = false;
};

// The library takes a text that looks like an SQL literal for what the literal denotes: so as one,
// every text stands for itself.
std::string Literal(const std::string& text) {
  return "'" + boost::replace_all_copy(text, "'", "''") + "'";
}

void Test(const Arguments& arguments, const GlobalOptions& global) {
  Work work(global);
  auto filters = work.Use<control::RssFilterControl>();
  const std::string subject = Literal(arguments.text);
  const bool matches = arguments.regex ? filters.TestRegexp(subject, arguments.pattern)
                                       : filters.TestLike(subject, arguments.pattern);
  work.Commit();
  if (global.json) {
    PrintJson(matches);
  } else {
    std::cout << (matches ? "matches" : "does not match") << '\n';
  }
}

}  // namespace

void AddFilterTest(CLI::App& group, const GlobalOptions& global) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App& command = *group.add_subcommand("test", "Try a pattern on a text");
  command.add_option("TEXT", arguments->text, "A title")
      ->type_name("")
      ->required()
      ->check(Utf8Text());
  command
      .add_option("PATTERN", arguments->pattern,
                  "A LIKE pattern for the whole text (% any text, _ any character, any case)")
      ->type_name("")
      ->required()
      ->check(Utf8Text());
  command.add_flag("--regex", arguments->regex,
                   "PATTERN is a POSIX regular expression for any part (case counts)");
  command.footer(Footer(
      {"The database tries it, with the operators of `item list`. Prints \"matches\" or \"does "
       "not match\", in JSON true or false; the exit status is 0 in either case.",
       {"filter test 'Some.Film.1080p' '%1080P%'",
        "filter test --regex 'Show S01E07' 'S[0-9]{2}E[0-9]{2}'"}}));
  command.callback([arguments, &global] { Test(*arguments, global); });
}

}  // namespace dorvdl::ctl
