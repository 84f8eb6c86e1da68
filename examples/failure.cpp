// A search that may fail in any way, and what is done then: finds the RSS items whose titles match
// a pattern that somebody has typed.
//
// usage: failure PATTERN
#include <dorvdl/control/rss_item_control.h>
#include <soci/error.h>

#include <chrono>
#include <iostream>
#include <optional>
#include <thread>
#include <vector>

#include "tell.h"

namespace {

namespace control = dorvdl::control;
namespace option = dorvdl::control::option;
namespace record = dorvdl::record;
using dorvdbquery::Failure;

constexpr int kTries = 5;

// The list, which may be empty; nothing when it failed, for the reason in the controller.
std::optional<std::vector<record::RssItem>> Search(control::Controller& controller,
                                                   const option::rss_item::ListOption& wanted) {
  // [failure]
  for (int tries = 1;; ++tries) {
    try {
      const auto found = control::RssItemControl(controller).List(wanted);
      if (!controller.failure()) {
        return found;  // also when it is empty
      }
    } catch (const soci::soci_error&) {
      // The connection could not be opened, or a row not be read: failure() tells which.
    }
    const Failure::Kind kind = controller.failure().kind;
    const bool may_pass = kind == Failure::Kind::kRetry ||     // a lock, a deadlock, a timeout
                          kind == Failure::Kind::kConnection;  // the next call opens a new one
    if (!may_pass || tries == kTries) {
      return std::nullopt;
    }
    std::this_thread::sleep_for(tries * std::chrono::milliseconds(100));
  }
  // [failure]
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    return TellUsage("failure PATTERN");
  }
  control::Controller controller;
  option::rss_item::ListOption wanted;
  wanted.common.sort_by = "id";
  wanted.title_regex = argv[1];
  const auto found = Search(controller, wanted);
  if (!found) {
    const bool is_no_pattern = controller.failure().sqlstate == "2201B";
    return Tell(is_no_pattern ? "this is no regular expression" : "the search failed", controller);
  }
  std::cout << found->size() << " found\n";
  for (const record::RssItem& item : *found) {
    std::cout << item.primary_key() << ' ' << item.proto().title() << '\n';
  }
}
