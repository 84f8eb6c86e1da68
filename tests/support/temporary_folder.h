// A folder of a test's own.
#ifndef TESTS_SUPPORT_TEMPORARY_FOLDER_H_
#define TESTS_SUPPORT_TEMPORARY_FOLDER_H_

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace test_support {

// Made empty, removed with all its content at the end. Names are relative to it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "dorvdl-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
      throw std::runtime_error("cannot make " + name);
    }
    path_ = name;
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string Path(const std::string& name) const { return path_ + "/" + name; }

  // Writes a file and returns its path.
  std::string Write(const std::string& name, const std::string& content) const {
    std::ofstream(Path(name), std::ios::binary) << content;
    return Path(name);
  }

  std::string Read(const std::string& name) const {
    std::ifstream file(Path(name), std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
  }

  bool Exists(const std::string& name) const { return std::filesystem::exists(Path(name)); }

  void MakeFifo(const std::string& name) const {
    if (mkfifo(Path(name).c_str(), 0600) != 0) {
      throw std::runtime_error("cannot make " + Path(name));
    }
  }

 private:
  std::string path_;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_TEMPORARY_FOLDER_H_
