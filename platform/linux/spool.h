// Putting notifications into the spool.
#ifndef DORV_LINUX_SPOOL_H_
#define DORV_LINUX_SPOOL_H_

#include <dorv/notification_spool.h>

namespace dorv {

// Keeps a notification as of now, whatever its time says; the folder is made when only it is
// missing. On return the notification has reached the disk. Otherwise throws std::system_error,
// having left nothing behind, or std::bad_alloc.
void Keep(dorvdl::common::KeptNotification notification);

}  // namespace dorv

#endif  // DORV_LINUX_SPOOL_H_
