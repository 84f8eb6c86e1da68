// Numbers of a task as people read them.
#ifndef DORVDLCTL_RENDERING_UNITS_H_
#define DORVDLCTL_RENDERING_UNITS_H_

#include <cstdint>
#include <string>

namespace dorvdl::ctl {

// "512 B", "1.5 GiB": powers of 1024, one digit behind the point.
std::string Size(std::int64_t bytes);

// "1.2 MiB/s"; "-" for none.
std::string Rate(std::int64_t bytes_per_second);

// The two greatest units: "3d 4h", "2h 5m", "1m 30s", "45s".
std::string Duration(std::int64_t seconds);

// "2025-02-03 04:05:06 +0100" in the time zone of the environment; "-" for 0, which stands for
// never.
std::string LocalTime(std::int64_t seconds_since_epoch);

// How much of @p total @p current is, in whole percent, rounded down: 100 means all of it. From 0
// to 100 whatever the numbers are; 0 when the total is unknown (0).
int Percent(std::int64_t current, std::int64_t total);

// "[#####-----]  50%"
std::string ProgressBar(int percent);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RENDERING_UNITS_H_
