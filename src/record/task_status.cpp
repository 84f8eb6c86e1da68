#include <dorvdl/record/task_status.h>

#include <cstddef>

namespace dorvdl::record {
namespace {

// Names of the codes from 1 on. Codes 11 to 14 are steps that the user sees as waiting and
// finishing.
constexpr StatusName kLiveNames[] = {
    {"download", "download_task_waiting"},
    {"download", "download_task_downloading"},
    {"download", "download_task_paused"},
    {"download", "download_task_finishing"},
    {"download", "download_task_finished"},
    {"download", "download_task_hash_checking"},
    {"download", "download_task_preseeding"},
    {"download", "download_task_seeding"},
    {"download", "download_task_filehosting_waiting"},
    {"download", "download_task_extracting"},
    {"download", "download_task_waiting"},
    {"download", "download_task_waiting"},
    {"download", "download_task_finishing"},
    {"download", "download_task_finishing"},
    {"download", "captcha_needed"},
};

// Names of the codes from 101 on.
constexpr StatusName kErrorNames[] = {
    {"download", "download_task_error"},
    {"download", "download_task_broken_link"},
    {"download", "download_task_dest_not_exist"},
    {"download", "download_task_dest_deny"},
    {"download", "download_task_disk_full"},
    {"download", "download_task_quota_reached"},
    {"download", "download_task_timeout"},
    {"download", "download_error_exceed_fs_max_size_short"},
    {"download", "download_error_exceed_temp_fs_max_size_short"},
    {"download", "download_error_exceed_dest_fs_max_size_short"},
    {"error", "error_encryption_long_path"},
    {"error", "error_long_path"},
    {"error", "error_duplicate_torrent"},
    {"download", "download_err_no_file_to_end"},
    {"dlqueue", "premium_account_require_status"},
    {"download", "not_support_type"},
    {"download", "download_ftp_encrption_not_support_type"},  // spelt so in the text files
    {"download", "download_error_extract_fail"},
    {"download", "wrong_password"},
    {"download", "invalid_archive"},
    {"download", "download_task_quota_reached"},
    {"download", "download_task_disk_full"},
    {"error", "error_invalid_torrent"},
    {"download", "account_require_status"},
    {"download", "download_error_try_it_later"},
    {"dlqueue", "error_task_encryption"},
    {"dlqueue", "error_missing_python"},
    {"dlqueue", "error_private_video"},
    {"download", "download_error_extract_folder_not_exist"},
    {"download", "download_err_nzb_missing_article"},
};

// The entry of @p status in names that start with the code @p first; null outside of them.
template <std::size_t kSize>
const StatusName* FindIn(const StatusName (&names)[kSize], int first, int status) {
  const bool listed = status >= first && status - first < static_cast<int>(kSize);
  return listed ? &names[status - first] : nullptr;
}

const StatusName* Find(int status) {
  const StatusName* const name = FindIn(kLiveNames, kStatusWaiting, status);
  return name != nullptr ? name : FindIn(kErrorNames, kStatusError, status);
}

}  // namespace

bool HasStatusName(int status) { return Find(status) != nullptr; }

StatusName GetStatusName(int status) {
  const StatusName* const name = Find(status);
  return name != nullptr ? *name : kErrorNames[0];
}

}  // namespace dorvdl::record
