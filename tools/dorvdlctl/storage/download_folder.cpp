#include "storage/download_folder.h"

#include <dorvdl/file.h>

#include <array>

#include "outcome.h"

namespace dorvdl::ctl {

std::string DownloadFolder() {
  std::array<char, 4097> path{};  // one byte more than is asked for, to end a path that fills it
  if (GetTmpDownloadDir(path.data(), path.size() - 1) != 0) {
    throw Failure(
        "there is no download folder that can be used: /var/services/download must point to a "
        "folder on a writable volume");
  }
  return path.data();
}

}  // namespace dorvdl::ctl
