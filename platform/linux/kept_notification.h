// The form that a notification has in its file.
#ifndef DORV_LINUX_KEPT_NOTIFICATION_H_
#define DORV_LINUX_KEPT_NOTIFICATION_H_

#include <dorv/notification_spool.h>

#include <string>

namespace dorv {

std::string ToJson(const dorvdl::common::KeptNotification& notification);

// Throws something derived from std::exception when the text is no notification's.
dorvdl::common::KeptNotification FromJson(const std::string& json);

}  // namespace dorv

#endif  // DORV_LINUX_KEPT_NOTIFICATION_H_
