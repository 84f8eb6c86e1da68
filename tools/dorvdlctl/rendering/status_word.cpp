#include "rendering/status_word.h"

#include <dorvdl/record/task_status.h>

namespace dorvdl::ctl {
namespace {

struct Word {
  record::TaskStatus status;
  const char* text;
};

// Short forms of the names under which the user is told (record::GetStatusName), which are too long
// for a column. Codes that share a name share a word.
constexpr Word kWords[] = {
    {record::kStatusWaiting, "waiting"},
    {record::kStatusDownloading, "downloading"},
    {record::kStatusPaused, "paused"},
    {record::kStatusFinishing, "finishing"},
    {record::kStatusFinished, "finished"},
    {record::kStatusHashChecking, "checking"},
    {record::kStatusPreseeding, "preseeding"},
    {record::kStatusSeeding, "seeding"},
    {record::kStatusFileHostingWaiting, "hoster-wait"},
    {record::kStatusExtracting, "extracting"},
    {record::kStatusPreparing, "waiting"},
    {record::kStatusReconnecting, "waiting"},
    {record::kStatusJoining, "finishing"},
    {record::kStatusVerifying, "finishing"},
    {record::kStatusCaptchaNeeded, "captcha"},
    {record::kStatusError, "error"},
    {record::kStatusBrokenLink, "broken-link"},
    {record::kStatusDestinationMissing, "no-destination"},
    {record::kStatusDestinationDenied, "access-denied"},
    {record::kStatusDiskFull, "disk-full"},
    {record::kStatusQuotaReached, "quota-reached"},
    {record::kStatusTimeout, "timeout"},
    {record::kStatusFileTooBig, "too-big"},
    {record::kStatusFileTooBigForTemp, "too-big-for-temp"},
    {record::kStatusFileTooBigForDestination, "too-big-for-dest"},
    {record::kStatusNameTooLongForEncryption, "long-crypt-path"},
    {record::kStatusPathTooLong, "long-path"},
    {record::kStatusDuplicateTorrent, "duplicate"},
    {record::kStatusNoFilesLeft, "no-file"},
    {record::kStatusPremiumAccountNeeded, "needs-premium"},
    {record::kStatusUnsupportedType, "unsupported"},
    {record::kStatusUnsupportedFtpEncryption, "no-ftp-encryption"},
    {record::kStatusExtractFailed, "extract-failed"},
    {record::kStatusWrongPassword, "wrong-password"},
    {record::kStatusInvalidArchive, "invalid-archive"},
    {record::kStatusExtractQuotaReached, "quota-reached"},
    {record::kStatusExtractDiskFull, "disk-full"},
    {record::kStatusInvalidTorrent, "invalid-torrent"},
    {record::kStatusAccountNeeded, "needs-account"},
    {record::kStatusTryLater, "try-later"},
    {record::kStatusDestinationLocked, "encryption"},
    {record::kStatusPythonMissing, "needs-python"},
    {record::kStatusPrivateVideo, "private-video"},
    {record::kStatusExtractFolderMissing, "no-extract-folder"},
    {record::kStatusArticlesMissing, "missing-article"},
};

}  // namespace

std::string StatusWord(int status) {
  for (const Word& word : kWords) {
    if (word.status == status) {
      return word.text;
    }
  }
  return std::to_string(status);
}

std::vector<std::int32_t> StatusesCalled(const std::string& word) {
  std::vector<std::int32_t> statuses;
  for (const Word& candidate : kWords) {
    if (word == candidate.text || (word == "failed" && candidate.status >= record::kStatusError)) {
      statuses.push_back(candidate.status);
    }
  }
  return statuses;
}

}  // namespace dorvdl::ctl
