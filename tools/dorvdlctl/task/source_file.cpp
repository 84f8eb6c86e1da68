// The commands on the torrent or NZB file that is stored with a task.
#include <memory>
#include <string>

#include "help.h"
#include "outcome.h"
#include "record/key.h"
#include "record/rows.h"
#include "task/commands.h"
#include "task/kind.h"

namespace dorvdl::ctl {
namespace {

struct Arguments {
  std::int32_t id = 0;
  std::string path;
};

// Ends the work; throws Failure with @p complaint unless it @p is_done. (An empty path is no
// failure to the library.)
void End(Work& work, bool is_done, const std::string& complaint) {
  work.Commit(is_done ? "" : complaint);
  if (!is_done) {
    throw Failure(complaint);
  }
}

void Import(const Arguments& arguments, const GlobalOptions& global) {
  Work work(global);
  GetExisting(work, Tasks(), arguments.id);
  const bool is_stored = work.Use<control::TaskControl>().LoImport(arguments.id, arguments.path);
  End(work, is_stored, arguments.path + " could not be stored");
}

void Export(const Arguments& arguments, const GlobalOptions& global) {
  Work work(global);
  if (GetExisting(work, Tasks(), arguments.id).proto().file_oid() == 0) {
    throw Failure("no file is stored with task " + std::to_string(arguments.id));
  }
  const bool is_written = work.Use<control::TaskControl>().LoExport(arguments.id, arguments.path);
  End(work, is_written, arguments.path + " could not be written");
}

void AddSourceFileCommand(CLI::App& group, const GlobalOptions& global, const char* name,
                          const char* description, const char* path_description,
                          void (*run)(const Arguments&, const GlobalOptions&)) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App& command = *group.add_subcommand(name, description);
  AddKey(command, Tasks(), arguments->id);
  command.add_option("FILE", arguments->path, path_description)->type_name("")->required();
  command.footer(Footer({"", {std::string("task ") + name + " 7 film.torrent"}}));
  command.callback([arguments, run, &global] { run(*arguments, global); });
}

}  // namespace

void AddTaskImport(CLI::App& group, const GlobalOptions& global) {
  AddSourceFileCommand(group, global, "import", "Store a torrent or NZB file with a task",
                       "The file; replaces the one that is stored", &Import);
}

void AddTaskExport(CLI::App& group, const GlobalOptions& global) {
  AddSourceFileCommand(group, global, "export", "Write out the file that is stored with a task",
                       "Where to; an existing file is replaced", &Export);
}

}  // namespace dorvdl::ctl
