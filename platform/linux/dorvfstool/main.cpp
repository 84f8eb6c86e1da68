// dorvfstool: answers questions about file systems by its exit status.
//
// The answer "yes" is the status 1, which is also what programs like to fail with. Everything that
// goes wrong therefore ends with one of the others, whatever the libraries would have chosen.
#include <sys/statvfs.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <string>

namespace {

enum ExitStatus : int { kNo = 0, kYes = 1, kFailed = 2 };

ExitStatus IsVolumeWritable(const std::string& path) {
  struct statvfs volume {};
  return statvfs(path.c_str(), &volume) == 0 && (volume.f_flag & ST_RDONLY) == 0 ? kYes : kNo;
}

int Run(int argc, char** argv) {
  CLI::App app("Answers questions about file systems by its exit status.", "dorvfstool");
  app.footer("Exit status: 1 yes, 0 no, 2 the question was not understood.");
  std::string path;
  app.add_option("--check-volume-writable", path,
                 "Is the volume that holds PATH writable? No when there is no such path.")
      ->type_name("PATH")
      ->required();
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& reason) {
    return app.exit(reason) == 0 ? 0 : kFailed;  // the help ends up here too, with 0
  }
  return IsVolumeWritable(path);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& reason) {
    std::cerr << "dorvfstool: " << reason.what() << '\n';
    return kFailed;
  }
}
