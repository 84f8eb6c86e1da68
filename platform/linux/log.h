// The lines that this library writes to the system log.
#ifndef DORV_LINUX_LOG_H_
#define DORV_LINUX_LOG_H_

#include <syslog.h>

// Writes one line at error priority: the name of the source file, which it keeps in the constant
// kLogSource ("platform/cgi"), the line number, then the printf-like format (a string literal) with
// its arguments.
#define DORV_LOG(format, ...) syslog(LOG_ERR, "%s:%d " format, kLogSource, __LINE__, ##__VA_ARGS__)

#endif  // DORV_LINUX_LOG_H_
