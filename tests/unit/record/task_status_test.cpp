#include <dorvdl/record/task_status.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

namespace dorvdl::record {
namespace {

// The value under which other programs know the enumerator; 0 for what is none. The compiler
// refuses a switch that leaves an enumerator out.
int CodeOf(TaskStatus status) {
  switch (status) {
    case kStatusWaiting:
      return 1;
    case kStatusDownloading:
      return 2;
    case kStatusPaused:
      return 3;
    case kStatusFinishing:
      return 4;
    case kStatusFinished:
      return 5;
    case kStatusHashChecking:
      return 6;
    case kStatusPreseeding:
      return 7;
    case kStatusSeeding:
      return 8;
    case kStatusFileHostingWaiting:
      return 9;
    case kStatusExtracting:
      return 10;
    case kStatusPreparing:
      return 11;
    case kStatusReconnecting:
      return 12;
    case kStatusJoining:
      return 13;
    case kStatusVerifying:
      return 14;
    case kStatusCaptchaNeeded:
      return 15;
    case kStatusError:
      return 101;
    case kStatusBrokenLink:
      return 102;
    case kStatusDestinationMissing:
      return 103;
    case kStatusDestinationDenied:
      return 104;
    case kStatusDiskFull:
      return 105;
    case kStatusQuotaReached:
      return 106;
    case kStatusTimeout:
      return 107;
    case kStatusFileTooBig:
      return 108;
    case kStatusFileTooBigForTemp:
      return 109;
    case kStatusFileTooBigForDestination:
      return 110;
    case kStatusNameTooLongForEncryption:
      return 111;
    case kStatusPathTooLong:
      return 112;
    case kStatusDuplicateTorrent:
      return 113;
    case kStatusNoFilesLeft:
      return 114;
    case kStatusPremiumAccountNeeded:
      return 115;
    case kStatusUnsupportedType:
      return 116;
    case kStatusUnsupportedFtpEncryption:
      return 117;
    case kStatusExtractFailed:
      return 118;
    case kStatusWrongPassword:
      return 119;
    case kStatusInvalidArchive:
      return 120;
    case kStatusExtractQuotaReached:
      return 121;
    case kStatusExtractDiskFull:
      return 122;
    case kStatusInvalidTorrent:
      return 123;
    case kStatusAccountNeeded:
      return 124;
    case kStatusTryLater:
      return 125;
    case kStatusDestinationLocked:
      return 126;
    case kStatusPythonMissing:
      return 127;
    case kStatusPrivateVideo:
      return 128;
    case kStatusExtractFolderMissing:
      return 129;
    case kStatusArticlesMissing:
      return 130;
  }
  return 0;
}

TEST(TaskStatusTest, TheCodesThatHaveANameAreTheEnumerators) {
  for (int status = -1000; status <= 1000; ++status) {
    EXPECT_EQ(CodeOf(static_cast<TaskStatus>(status)), HasStatusName(status) ? status : 0);
  }
}

std::string ShownName(int status) {
  const StatusName name = GetStatusName(status);
  return std::string(name.section) + "/" + name.key;
}

TEST(StatusNameTest, EveryCodeHasItsName) {
  const std::map<int, std::string> names = {
      {1, "download/download_task_waiting"},
      {2, "download/download_task_downloading"},
      {3, "download/download_task_paused"},
      {4, "download/download_task_finishing"},
      {5, "download/download_task_finished"},
      {6, "download/download_task_hash_checking"},
      {7, "download/download_task_preseeding"},
      {8, "download/download_task_seeding"},
      {9, "download/download_task_filehosting_waiting"},
      {10, "download/download_task_extracting"},
      {11, "download/download_task_waiting"},
      {12, "download/download_task_waiting"},
      {13, "download/download_task_finishing"},
      {14, "download/download_task_finishing"},
      {15, "download/captcha_needed"},
      {101, "download/download_task_error"},
      {102, "download/download_task_broken_link"},
      {103, "download/download_task_dest_not_exist"},
      {104, "download/download_task_dest_deny"},
      {105, "download/download_task_disk_full"},
      {106, "download/download_task_quota_reached"},
      {107, "download/download_task_timeout"},
      {108, "download/download_error_exceed_fs_max_size_short"},
      {109, "download/download_error_exceed_temp_fs_max_size_short"},
      {110, "download/download_error_exceed_dest_fs_max_size_short"},
      {111, "error/error_encryption_long_path"},
      {112, "error/error_long_path"},
      {113, "error/error_duplicate_torrent"},
      {114, "download/download_err_no_file_to_end"},
      {115, "dlqueue/premium_account_require_status"},
      {116, "download/not_support_type"},
      {117, "download/download_ftp_encrption_not_support_type"},
      {118, "download/download_error_extract_fail"},
      {119, "download/wrong_password"},
      {120, "download/invalid_archive"},
      {121, "download/download_task_quota_reached"},
      {122, "download/download_task_disk_full"},
      {123, "error/error_invalid_torrent"},
      {124, "download/account_require_status"},
      {125, "download/download_error_try_it_later"},
      {126, "dlqueue/error_task_encryption"},
      {127, "dlqueue/error_missing_python"},
      {128, "dlqueue/error_private_video"},
      {129, "download/download_error_extract_folder_not_exist"},
      {130, "download/download_err_nzb_missing_article"},
  };
  for (const auto& [status, name] : names) {
    EXPECT_EQ(ShownName(status), name) << status;
  }
}

TEST(StatusNameTest, AnyOtherCodeIsTheGeneralError) {
  const auto expect_error = [](int status) {
    EXPECT_EQ(ShownName(status), "download/download_task_error") << status;
  };
  for (int status = 16; status <= 100; ++status) {
    expect_error(status);
  }
  for (const int status : {-2147483647 - 1, -1, 0, 131, 2147483647}) {
    expect_error(status);
  }
}

}  // namespace
}  // namespace dorvdl::record
