#include "rendering/status_word.h"

#include <dorvdl/record/task_status.h>

namespace dorvdl::ctl {
namespace {

struct Word {
  std::int32_t status;
  const char* text;
};

// Short forms of the names under which the user is told (record::GetStatusName), which are too long
// for a column. Codes that share a name share a word.
constexpr Word kWords[] = {
    {1, "waiting"},
    {2, "downloading"},
    {3, "paused"},
    {4, "finishing"},
    {5, "finished"},
    {6, "checking"},
    {7, "preseeding"},
    {8, "seeding"},
    {9, "hoster-wait"},
    {10, "extracting"},
    {11, "waiting"},
    {12, "waiting"},
    {13, "finishing"},
    {14, "finishing"},
    {15, "captcha"},
    {101, "error"},
    {102, "broken-link"},
    {103, "no-destination"},
    {104, "access-denied"},
    {105, "disk-full"},
    {106, "quota-reached"},
    {107, "timeout"},
    {108, "too-big"},
    {109, "too-big-for-temp"},
    {110, "too-big-for-dest"},
    {111, "long-crypt-path"},
    {112, "long-path"},
    {113, "duplicate"},
    {114, "no-file"},
    {115, "needs-premium"},
    {116, "unsupported"},
    {117, "no-ftp-encryption"},
    {118, "extract-failed"},
    {119, "wrong-password"},
    {120, "invalid-archive"},
    {121, "quota-reached"},
    {122, "disk-full"},
    {123, "invalid-torrent"},
    {124, "needs-account"},
    {125, "try-later"},
    {126, "encryption"},
    {127, "needs-python"},
    {128, "private-video"},
    {129, "no-extract-folder"},
    {130, "missing-article"},
};

}  // namespace

std::string StatusWord(int status) {
  for (const Word& word : kWords) {
    if (word.status == status) {
      return word.text;
    }
  }
  return std::to_string(status);
}

std::vector<std::int32_t> StatusesCalled(const std::string& word) {
  std::vector<std::int32_t> statuses;
  for (const Word& candidate : kWords) {
    if (word == candidate.text || (word == "failed" && candidate.status >= record::kStatusError)) {
      statuses.push_back(candidate.status);
    }
  }
  return statuses;
}

}  // namespace dorvdl::ctl
