// Comparing names whose case does not count.
#ifndef DORV_LINUX_ANY_CASE_H_
#define DORV_LINUX_ANY_CASE_H_

#include <string>

namespace dorv {

// A name in a form that is the same for all names that differ in case only, as the package's
// database sees it: UTF-8, character by character, with other bytes as they are. For comparing
// only.
std::wstring WithoutCase(const std::string& name);

}  // namespace dorv

#endif  // DORV_LINUX_ANY_CASE_H_
