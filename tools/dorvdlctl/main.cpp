// dorvdlctl: the data of the download service at the command line. Each group of commands adds
// itself to the application; a command is a callback that throws when it fails (outcome.h).
#include <soci/error.h>
#include <syslog.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include "argument.h"
#include "global_options.h"
#include "groups.h"
#include "help.h"
#include "outcome.h"
#include "rendering/complaint.h"
#include "rendering/message_json.h"
#include "rendering/text.h"

namespace dorvdl::ctl {
namespace {

// The message on one line and safe for a terminal, for messages quote file names and the server.
ExitStatus Complain(const Failure& failure, bool as_json) {
  const Failure shown(Printable(JoinLines(failure.what())), failure.reason(), failure.sqlstate());
  const ExitStatus status = StatusOf(shown);
  if (as_json) {
    std::cerr << CompactJsonText(FailureToJson(shown)) << '\n';
    return status;
  }
  std::cerr << "dorvdlctl: " << shown.what() << '\n';
  if (status == kWrongUsage) {
    std::cerr << "Run with --help to see what a command takes.\n";
  }
  return status;
}

// Whether the words of a command line that may not have been read to its end ask for JSON.
bool AskForJson(int argc, char** argv) {
  char** const end = std::find(argv, argv + argc, std::string("--"));
  return std::find(argv, end, std::string("--json")) != end;
}

void AddGlobalOptions(CLI::App& app, GlobalOptions& global) {
  app.set_version_flag("--version", "dorvdlctl " DORVDLCTL_VERSION, "Print the version and exit");
  app.add_option("--user", global.user,
                 "Act as the user NAME (case does not count), not as all users")
      ->type_name("NAME")
      ->check([](const std::string& name) {
        // To the library no name means every user, which a forgotten variable must not.
        return name.empty() ? "must not be empty" : "";
      })
      ->check(Utf8Text());
  app.add_flag("--json", global.json, "Print data, and errors, as JSON");
  app.add_flag_callback(
      "--verbose", [] { openlog("dorvdlctl", LOG_PERROR, LOG_USER); },
      "Print to the standard error what goes to the system log");
}

void Run(int argc, char** argv, GlobalOptions& global) {
  CLI::App app("Looks at and changes the data of the download service.", "dorvdlctl");
  app.set_help_flag("-h,--help", "Print this help and exit");
  app.formatter(std::make_shared<HelpFormatter>());
  app.group("Commands");  // the heading of the commands, in the help
  app.fallthrough();      // global options may stand behind a command
  app.require_subcommand(1);
  AddGlobalOptions(app, global);
  AddTaskCommands(app, global);
  AddFeedCommands(app, global);
  AddFilterCommands(app, global);
  AddItemCommands(app, global);
  AddThumbnailCommands(app, global);
  AddPluginCommands(app, global);
  AddNotificationCommands(app, global);
  AddSettingCommands(app, global);
  AddSpace(app, global);
  AddQuota(app, global);
  try {
    app.parse(argc, argv);  // runs the command
  } catch (const CLI::Success& request) {
    app.exit(request);  // prints the help or the version
  } catch (const CLI::RequiredError& error) {
    // Mostly because what was given instead has a typing mistake.
    const std::vector<std::string> unknown = app.remaining(true);
    throw WrongUsage(unknown.empty() ? error.what() : "not understood: " + unknown.front());
  } catch (const CLI::ParseError& error) {
    throw WrongUsage(error.what());
  }
  if (!std::cout.flush()) {
    throw Failure("the output could not be written");
  }
}

// Runs the tool; throws Failure.
void RunToEnd(int argc, char** argv, GlobalOptions& global) {
  try {
    UseUtf8();
    Run(argc, argv, global);
  } catch (const Failure&) {
    throw;
  } catch (const soci::soci_error& error) {
    throw Failure(std::string("a row cannot be read: ") + error.what());
  } catch (const std::bad_cast&) {
    throw Failure("a row cannot be read: a column is of another type than the schema's");
  } catch (const std::exception& error) {
    throw Failure(error.what());
  }
}

}  // namespace
}  // namespace dorvdl::ctl

int main(int argc, char** argv) {
  using namespace dorvdl::ctl;
  GlobalOptions global;
  try {
    RunToEnd(argc, argv, global);
    return kDone;
  } catch (const Failure& failure) {
    return Complain(failure, global.json || AskForJson(argc, argv));
  }
}
