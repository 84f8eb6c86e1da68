// An outside program: uses something of each installed part, through its header and its library.
// Each check is a function that returns whether all is well, listed in main().
#include <dorv/credentials.h>
#include <dorvdl/control/option/task.h>
#include <dorvdl/proto/list_request/task.pb.h>
#include <dorvdl/util/to_lower.h>
#include <json/json.h>
#include <soci/soci.h>

#include <cstdlib>
#include <iostream>

namespace {

bool HelpersWork() { return dorvdl::util::ToLower("Ägir") == "ägir"; }

bool OptionsTravelInMessages() {
  dorvdl::control::option::task::FileType type;
  type.bt = true;
  dorvdl::control::option::task::ListOption option;
  option.task_flags = type.ToTaskFlag();

  dorvdl::rpc::proto::task::ListRequest request;
  option.toProto(request);
  return request.has_common() && request.task_flags() == 4;
}

bool PlatformIsLinked() { return InitCredentialsByName("nobody", 1) == 0; }

// Public headers hand out values of these libraries, so a program gets them with the package.
bool LibrariesOfThePublicHeadersAreLinked() {
  const soci::session session;
  return Json::Value("text").asString() == "text" && !session.is_connected();
}

}  // namespace

int main() {
  const bool good = HelpersWork() && OptionsTravelInMessages() && PlatformIsLinked() &&
                    LibrariesOfThePublicHeadersAreLinked();
  std::cout << (good ? "all is well\n" : "something is wrong\n");
  return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
