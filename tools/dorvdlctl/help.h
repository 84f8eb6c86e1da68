// Help pages, which are 80 columns wide.
#ifndef DORVDLCTL_HELP_H_
#define DORVDLCTL_HELP_H_

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace dorvdl::ctl {

// What a command's help ends with.
struct Help {
  std::string remark;                 // prose, broken into lines where it is shown
  std::vector<std::string> examples;  // command lines without the program's name
};

// The footer of a command with this help.
std::string Footer(const Help& help);

// Shows what one command takes, and for the application what holds for all of them. Descriptions
// are prose, too.
class HelpFormatter : public CLI::Formatter {
 public:
  HelpFormatter();

  std::string make_option_opts(const CLI::Option* option) const override;
  std::string make_option_desc(const CLI::Option* option) const override;
  std::string make_footer(const CLI::App* app) const override;
};

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_HELP_H_
