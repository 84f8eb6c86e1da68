/// @file
/// The status codes of download tasks.
#ifndef DORVDL_RECORD_TASK_STATUS_H_
#define DORVDL_RECORD_TASK_STATUS_H_

#include <dorvdl/util/export.h>

namespace dorvdl::record {

/// The values of a task's `status`: 1 to 15 are states of a live task, from 101 on are errors.
/// docs/task-states.md tells who takes a task from which to which. The value 0 has no name: it is
/// that of a task that was created without a status, which nobody starts.
///
/// The user is told the codes marked (*) in the words of another one. What they mean beyond that is
/// described nowhere else: it is our own programs' convention.
enum TaskStatus : int {
  kStatusWaiting = 1,             ///< waits for a worker
  kStatusDownloading = 2,         ///< data is being fetched
  kStatusPaused = 3,              ///< until its user resumes it
  kStatusFinishing = 4,           ///< all data has arrived and is moved to its destination
  kStatusFinished = 5,            ///< nothing is left to do
  kStatusHashChecking = 6,        ///< data that is there is checked against the torrent
  kStatusPreseeding = 7,          ///< the upload to peers is being prepared
  kStatusSeeding = 8,             ///< the files are being shared with peers
  kStatusFileHostingWaiting = 9,  ///< parked until the file host allows the download
  kStatusExtracting = 10,         ///< an archive is being extracted
  kStatusPreparing = 11,          ///< told as waiting: the source is asked, no data yet (*)
  kStatusReconnecting = 12,       ///< told as waiting: the transfer broke off, is tried again (*)
  kStatusJoining = 13,            ///< told as finishing: parts are put together (*)
  kStatusVerifying = 14,          ///< told as finishing: what arrived is checked (*)
  kStatusCaptchaNeeded = 15,      ///< parked until its user has solved a captcha

  kStatusError = 101,                     ///< told as well for any code without a name
  kStatusBrokenLink = 102,                ///< the address leads to no file
  kStatusDestinationMissing = 103,        ///< the destination folder does not exist
  kStatusDestinationDenied = 104,         ///< the user may not write to the destination
  kStatusDiskFull = 105,                  ///< the volume has no space left
  kStatusQuotaReached = 106,              ///< the user has no storage quota left
  kStatusTimeout = 107,                   ///< the server did not answer in time
  kStatusFileTooBig = 108,                ///< more than the file system allows
  kStatusFileTooBigForTemp = 109,         ///< more than that of the temporary folder allows
  kStatusFileTooBigForDestination = 110,  ///< more than that of the destination allows
  kStatusNameTooLongForEncryption = 111,  ///< for the encrypted shared folder
  kStatusPathTooLong = 112,               ///< the file name or the path to it
  kStatusDuplicateTorrent = 113,          ///< the torrent is in the queue already
  kStatusNoFilesLeft = 114,               ///< the task has no files left to download
  kStatusPremiumAccountNeeded = 115,      ///< the file host wants one for this file
  kStatusUnsupportedType = 116,           ///< this kind of download is not supported
  kStatusUnsupportedFtpEncryption = 117,  ///< the FTP server has none that was asked for
  kStatusExtractFailed = 118,             ///< the archive could not be extracted
  kStatusWrongPassword = 119,             ///< the password of the archive
  kStatusInvalidArchive = 120,            ///< damaged or of no supported kind
  kStatusExtractQuotaReached = 121,       ///< told as 106: while an archive was extracted (*)
  kStatusExtractDiskFull = 122,           ///< told as 105: while an archive was extracted (*)
  kStatusInvalidTorrent = 123,            ///< the torrent file is not valid
  kStatusAccountNeeded = 124,             ///< the file host wants one
  kStatusTryLater = 125,                  ///< the server is busy at the moment
  kStatusDestinationLocked = 126,         ///< an encrypted shared folder that is locked
  kStatusPythonMissing = 127,             ///< the download needs it
  kStatusPrivateVideo = 128,              ///< the video cannot be downloaded
  kStatusExtractFolderMissing = 129,      ///< the folder for extracted files does not exist
  kStatusArticlesMissing = 130,           ///< the news server does not have all of them
};

/// The name under which a status is reported to the user: the key of a localised text, and the
/// section of texts that it belongs to.
struct StatusName {
  const char* section;
  const char* key;
};

/// Whether @p status has a name of its own.
DORVDL_EXPORT bool HasStatusName(int status);

/// The name of @p status; that of the general error for any code without a name of its own.
DORVDL_EXPORT StatusName GetStatusName(int status);

}  // namespace dorvdl::record

#endif  // DORVDL_RECORD_TASK_STATUS_H_
