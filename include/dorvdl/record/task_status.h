/// @file
/// The status codes of download tasks.
#ifndef DORVDL_RECORD_TASK_STATUS_H_
#define DORVDL_RECORD_TASK_STATUS_H_

#include <dorvdl/util/export.h>

namespace dorvdl::record {

/// The values of a task's `status` that programs name. Codes 1 to 15 are states of a live task,
/// codes from 101 on are errors; GetStatusName() knows them all.
enum TaskStatus : int {
  kStatusWaiting = 1,
  kStatusDownloading = 2,
  kStatusPaused = 3,
  kStatusFinishing = 4,
  kStatusFinished = 5,
  kStatusHashChecking = 6,
  kStatusPreseeding = 7,
  kStatusSeeding = 8,
  kStatusFileHostingWaiting = 9,
  kStatusExtracting = 10,
  kStatusCaptchaNeeded = 15,
  kStatusError = 101,
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
