#include "rendering/units.h"

#include <cstdio>
#include <ctime>
#include <iterator>

namespace dorvdl::ctl {
namespace {

constexpr const char* kSizeUnits[] = {"KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};

struct TimeUnit {
  std::int64_t seconds;
  char symbol;
};
constexpr TimeUnit kTimeUnits[] = {{86400, 'd'}, {3600, 'h'}, {60, 'm'}, {1, 's'}};

constexpr int kBarSegments = 10;

}  // namespace

std::string Size(std::int64_t bytes) {
  if (bytes < 1024) {
    return std::to_string(bytes) + " B";
  }
  double amount = static_cast<double>(bytes) / 1024;
  const char* const* unit = std::begin(kSizeUnits);
  while (amount >= 1023.95) {  // what would be printed as 1024.0
    amount /= 1024;
    ++unit;
  }
  char text[32];
  std::snprintf(text, sizeof(text), "%.1f %s", amount, *unit);
  return text;
}

std::string Rate(std::int64_t bytes_per_second) {
  return bytes_per_second == 0 ? "-" : Size(bytes_per_second) + "/s";
}

std::string Duration(std::int64_t seconds) {
  const auto* unit = std::begin(kTimeUnits);
  while (unit->seconds > 1 && seconds < unit->seconds) {
    ++unit;
  }
  std::string text = std::to_string(seconds / unit->seconds) + unit->symbol;
  if (unit->seconds > 1) {
    const std::int64_t rest = seconds % unit->seconds;
    ++unit;
    text.append(" ").append(std::to_string(rest / unit->seconds)).append(1, unit->symbol);
  }
  return text;
}

std::string LocalTime(std::int64_t seconds_since_epoch) {
  if (seconds_since_epoch == 0) {
    return "-";
  }
  const auto time = static_cast<std::time_t>(seconds_since_epoch);
  std::tm parts{};
  localtime_r(&time, &parts);
  char text[64];
  const std::size_t length = std::strftime(text, sizeof(text), "%Y-%m-%d %H:%M:%S %z", &parts);
  return std::string(text, length);
}

int Percent(std::int64_t current, std::int64_t total) {
  if (current <= 0 || total <= 0) {
    return 0;
  }
  if (current >= total) {
    return 100;
  }
  return static_cast<int>(static_cast<__int128>(current) * 100 / total);
}

std::string ProgressBar(int percent) {
  const int done = percent * kBarSegments / 100;
  char text[32];
  std::snprintf(text, sizeof(text), "[%.*s%.*s] %3d%%", done, "##########", kBarSegments - done,
                "----------", percent);
  return text;
}

}  // namespace dorvdl::ctl
