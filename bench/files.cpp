#include "files.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>

namespace bench {
namespace {

std::string Content(const std::string& path) {
  std::string content(std::filesystem::file_size(path), '\0');
  std::ifstream file(path, std::ios::binary);
  Check(file.read(content.data(), static_cast<std::streamsize>(content.size())).good());
  return content;
}

}  // namespace

std::string MakeFile(const std::string& folder, int mebibytes) {
  constexpr std::size_t kNumbers = 1024UL * 1024 / sizeof(std::uint64_t);
  std::string path = folder + "/" + std::to_string(mebibytes) + "MiB";
  std::ofstream file(path, std::ios::binary);
  std::mt19937_64 random;  // NOLINT(bugprone-random-generator-seed): the same in every run
  for (auto left = static_cast<std::size_t>(mebibytes) * kNumbers; left > 0; --left) {
    const std::uint64_t number = random();
    file.write(reinterpret_cast<const char*>(&number), sizeof(number));
  }
  Check(file.flush().good());
  return path;
}

bool AreSameFiles(const std::string& path, const std::string& other) {
  return Content(path) == Content(other);
}

void DropUnusedFiles(Connection& database) {
  database.Run(
      "SELECT count(lo_unlink(oid)) FROM pg_largeobject_metadata "
      "WHERE oid NOT IN (SELECT file_oid::oid FROM download_queue WHERE file_oid <> 0)");
  database.Run("VACUUM pg_largeobject");
}

}  // namespace bench
