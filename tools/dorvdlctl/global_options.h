// What every command understands, before or behind its own arguments.
#ifndef DORVDLCTL_GLOBAL_OPTIONS_H_
#define DORVDLCTL_GLOBAL_OPTIONS_H_

#include <string>

namespace dorvdl::ctl {

struct GlobalOptions {
  std::string user;  // the acting user; empty for all users
  bool json = false;
};

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_GLOBAL_OPTIONS_H_
