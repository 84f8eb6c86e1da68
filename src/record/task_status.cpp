#include <dorvdl/record/task_status.h>

#include <algorithm>
#include <iterator>

namespace dorvdl::record {
namespace {

struct NamedStatus {
  TaskStatus status;
  StatusName name;
};

constexpr StatusName kGeneralError = {"download", "download_task_error"};

constexpr NamedStatus kNames[] = {
    {kStatusWaiting, {"download", "download_task_waiting"}},
    {kStatusDownloading, {"download", "download_task_downloading"}},
    {kStatusPaused, {"download", "download_task_paused"}},
    {kStatusFinishing, {"download", "download_task_finishing"}},
    {kStatusFinished, {"download", "download_task_finished"}},
    {kStatusHashChecking, {"download", "download_task_hash_checking"}},
    {kStatusPreseeding, {"download", "download_task_preseeding"}},
    {kStatusSeeding, {"download", "download_task_seeding"}},
    {kStatusFileHostingWaiting, {"download", "download_task_filehosting_waiting"}},
    {kStatusExtracting, {"download", "download_task_extracting"}},
    {kStatusPreparing, {"download", "download_task_waiting"}},
    {kStatusReconnecting, {"download", "download_task_waiting"}},
    {kStatusJoining, {"download", "download_task_finishing"}},
    {kStatusVerifying, {"download", "download_task_finishing"}},
    {kStatusCaptchaNeeded, {"download", "captcha_needed"}},
    {kStatusError, kGeneralError},
    {kStatusBrokenLink, {"download", "download_task_broken_link"}},
    {kStatusDestinationMissing, {"download", "download_task_dest_not_exist"}},
    {kStatusDestinationDenied, {"download", "download_task_dest_deny"}},
    {kStatusDiskFull, {"download", "download_task_disk_full"}},
    {kStatusQuotaReached, {"download", "download_task_quota_reached"}},
    {kStatusTimeout, {"download", "download_task_timeout"}},
    {kStatusFileTooBig, {"download", "download_error_exceed_fs_max_size_short"}},
    {kStatusFileTooBigForTemp, {"download", "download_error_exceed_temp_fs_max_size_short"}},
    {kStatusFileTooBigForDestination, {"download", "download_error_exceed_dest_fs_max_size_short"}},
    {kStatusNameTooLongForEncryption, {"error", "error_encryption_long_path"}},
    {kStatusPathTooLong, {"error", "error_long_path"}},
    {kStatusDuplicateTorrent, {"error", "error_duplicate_torrent"}},
    {kStatusNoFilesLeft, {"download", "download_err_no_file_to_end"}},
    {kStatusPremiumAccountNeeded, {"dlqueue", "premium_account_require_status"}},
    {kStatusUnsupportedType, {"download", "not_support_type"}},
    {kStatusUnsupportedFtpEncryption,
     {"download", "download_ftp_encrption_not_support_type"}},  // spelt so in the text files
    {kStatusExtractFailed, {"download", "download_error_extract_fail"}},
    {kStatusWrongPassword, {"download", "wrong_password"}},
    {kStatusInvalidArchive, {"download", "invalid_archive"}},
    {kStatusExtractQuotaReached, {"download", "download_task_quota_reached"}},
    {kStatusExtractDiskFull, {"download", "download_task_disk_full"}},
    {kStatusInvalidTorrent, {"error", "error_invalid_torrent"}},
    {kStatusAccountNeeded, {"download", "account_require_status"}},
    {kStatusTryLater, {"download", "download_error_try_it_later"}},
    {kStatusDestinationLocked, {"dlqueue", "error_task_encryption"}},
    {kStatusPythonMissing, {"dlqueue", "error_missing_python"}},
    {kStatusPrivateVideo, {"dlqueue", "error_private_video"}},
    {kStatusExtractFolderMissing, {"download", "download_error_extract_folder_not_exist"}},
    {kStatusArticlesMissing, {"download", "download_err_nzb_missing_article"}},
};

// The name of @p status; null when it has none of its own.
const StatusName* Find(int status) {
  const auto* const found =
      std::find_if(std::begin(kNames), std::end(kNames),
                   [status](const NamedStatus& named) { return named.status == status; });
  return found != std::end(kNames) ? &found->name : nullptr;
}

}  // namespace

bool HasStatusName(int status) { return Find(status) != nullptr; }

StatusName GetStatusName(int status) {
  const StatusName* const name = Find(status);
  return name != nullptr ? *name : kGeneralError;
}

}  // namespace dorvdl::record
