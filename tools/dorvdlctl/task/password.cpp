#include "task/password.h"

#include <fstream>
#include <iostream>

#include "outcome.h"
#include "rendering/text.h"

namespace dorvdl::ctl {

void AddPasswordFile(CLI::App& command, std::string& path) {
  command
      .add_option("--password-file", path,
                  "Take the password for unpacking from the first line of FILE, or of the "
                  "standard input when FILE is -")
      ->type_name("FILE");
}

std::string ReadPassword(const std::string& path) {
  std::ifstream file;
  if (path != "-") {
    file.open(path);
  }
  std::string password;
  if (!std::getline(path == "-" ? std::cin : file, password) || password.empty()) {
    throw Failure("no password can be read from " + path);
  }
  if (!IsUtf8(password) || password.find('\0') != std::string::npos) {
    throw Failure("what " + path + " holds is no text");
  }
  return password;
}

}  // namespace dorvdl::ctl
