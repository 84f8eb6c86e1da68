// dorvdlctl: the data of the download service at the command line. Each group of commands adds
// itself to the application; a command is a callback that throws when it fails (outcome.h).
#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "argument.h"
#include "global_options.h"
#include "groups.h"
#include "help.h"
#include "outcome.h"
#include "rendering/text.h"

namespace dorvdl::ctl {
namespace {

// On one line and safe for a terminal, for messages quote file names and the server.
void Complain(const std::string& message) {
  std::cerr << "dorvdlctl: " << Printable(JoinLines(message)) << '\n';
}

ExitStatus ComplainAboutUsage(const std::string& message) {
  Complain(message);
  std::cerr << "Run with --help to see what a command takes.\n";
  return kWrongUsage;
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
  app.add_flag("--json", global.json, "Print data as JSON");
}

ExitStatus Run(int argc, char** argv) {
  GlobalOptions global;
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
    return ComplainAboutUsage(unknown.empty() ? error.what()
                                              : "not understood: " + unknown.front());
  } catch (const CLI::ParseError& error) {
    return ComplainAboutUsage(error.what());
  } catch (const WrongUsage& error) {
    return ComplainAboutUsage(error.what());
  }
  if (!std::cout.flush()) {
    throw Failure("the output could not be written");
  }
  return kDone;
}

}  // namespace
}  // namespace dorvdl::ctl

int main(int argc, char** argv) {
  using namespace dorvdl::ctl;
  try {
    UseUtf8();
    return Run(argc, argv);
  } catch (const std::exception& error) {
    Complain(error.what());
    return kFailed;
  }
}
