// The temporary download folder.
#ifndef DORVDLCTL_STORAGE_DOWNLOAD_FOLDER_H_
#define DORVDLCTL_STORAGE_DOWNLOAD_FOLDER_H_

#include <string>

namespace dorvdl::ctl {

// Its path. Throws Failure when it cannot be used.
std::string DownloadFolder();

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_STORAGE_DOWNLOAD_FOLDER_H_
