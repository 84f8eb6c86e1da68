#include "help.h"

#include "rendering/text.h"

namespace dorvdl::ctl {
namespace {

constexpr int kPageWidth = 80;
constexpr int kNameWidth = 26;

constexpr char kForAllCommands[] =
    R"(Each command explains itself: dorvdlctl task list --help

The server is found through libpq's environment (PGHOST, PGPORT, PGSERVICE ...);
the role is Tarnwick, the database download. Data goes to the standard output,
messages to the standard error. What the library logs goes to the system log,
and with --verbose to the standard error, too.

Exit status:
  0  done
  1  failed for any other reason: the server refused, a file cannot be had ...
  2  wrong usage
  3  no such record, or none of the user given by --user
  4  refused by the library: no such thing may be written, or not by this user
  5  the server cannot be reached, or the connection was lost

With --json the last line on the standard error is then an object:
  {"error":{"kind":"server","message":"...","sqlstate":"42P01"}}
The kind is not-found, refused, unreachable, usage, server, retry (refused by
the server, and worth another try) or failed; sqlstate is the server's code, if
it sent one.
)";

}  // namespace

std::string Footer(const Help& help) {
  std::string footer = Wrap(help.remark, kPageWidth);
  footer += footer.empty() ? "" : "\n\n";
  if (help.examples.size() == 1) {
    return footer + "Example: dorvdlctl " + help.examples.front();
  }
  footer += "Examples:";
  for (const std::string& example : help.examples) {
    footer += "\n  dorvdlctl " + example;
  }
  return footer;
}

HelpFormatter::HelpFormatter() {
  column_width(kNameWidth);
  label("SUBCOMMAND", "COMMAND");
}

// The name of the value alone: the usage and the descriptions tell how often it may be given and
// which options go together.
std::string HelpFormatter::make_option_opts(const CLI::Option* option) const {
  const bool has_value = option->get_type_size() != 0 && !option->get_type_name().empty();
  return has_value ? " " + option->get_type_name() : "";
}

std::string HelpFormatter::make_option_desc(const CLI::Option* option) const {
  return Wrap(option->get_description(), kPageWidth - kNameWidth);
}

std::string HelpFormatter::make_footer(const CLI::App* app) const {
  if (app->get_parent() == nullptr) {
    return kForAllCommands;
  }
  return app->get_footer() + (app->get_footer().empty() ? "" : "\n\n") +
         "Every command also takes --user NAME, --json, --verbose; see dorvdlctl --help.\n";
}

}  // namespace dorvdl::ctl
