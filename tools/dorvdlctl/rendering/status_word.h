// The status of a task in a word.
#ifndef DORVDLCTL_RENDERING_STATUS_WORD_H_
#define DORVDLCTL_RENDERING_STATUS_WORD_H_

#include <cstdint>
#include <string>
#include <vector>

namespace dorvdl::ctl {

// "downloading", "disk-full"; the number of a status that has no word.
std::string StatusWord(int status);

// Every status with this word; "failed" means all errors. None for any other text.
std::vector<std::int32_t> StatusesCalled(const std::string& word);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RENDERING_STATUS_WORD_H_
