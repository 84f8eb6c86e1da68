// The command that looks at the space for downloads.
#include <dorvdl/file.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <system_error>

#include "groups.h"
#include "help.h"
#include "outcome.h"
#include "record/print.h"
#include "rendering/record_view.h"
#include "rendering/units.h"
#include "storage/download_folder.h"

namespace dorvdl::ctl {
namespace {

std::string Volume() {
  std::array<char, 4096> path{};
  if (GetTmpDownloadDirVol(path.data(), path.size()) != 0) {
    throw Failure("the volume cannot be told; --verbose shows why");
  }
  return path.data();
}

std::uint64_t FreeBytes(const std::string& folder) {
  std::error_code error;
  const std::filesystem::space_info space = std::filesystem::space(folder, error);
  if (error) {
    throw Failure(folder + ": " + error.message());
  }
  return space.available;
}

bool HasRoom() {
  const int answer = TmpVolumeSpaceCheck();
  if (answer < 0) {
    throw Failure("the free space cannot be checked; --verbose shows why");
  }
  return answer == 0;  // 1 means that there is too little
}

void ShowSpace(const GlobalOptions& global) {
  Json::Value space;
  space["folder"] = DownloadFolder();
  space["volume"] = Volume();
  const std::uint64_t free_bytes = FreeBytes(space["folder"].asString());
  space["free"] = Json::UInt64(free_bytes);
  space["enough"] = HasRoom();
  if (global.json) {
    PrintJson(space);
    return;
  }
  space["free"] = Size(static_cast<std::int64_t>(free_bytes));
  space["enough"] = space["enough"].asBool() ? "yes" : "no";
  PrintRow(std::cout, {"folder", "volume", "free", "enough"}, space);
}

}  // namespace

void AddSpace(CLI::App& app, const GlobalOptions& global) {
  CLI::App& command = *app.add_subcommand("space", "Look at the temporary download folder");
  command.footer(
      Footer({"Shows the folder, its volume, what is free for ordinary users (bytes in JSON), and "
              "whether that is enough for the download service to go on: 1 MiB or more.",
              {"space --json"}}));
  command.callback([&global] { ShowSpace(global); });
}

}  // namespace dorvdl::ctl
