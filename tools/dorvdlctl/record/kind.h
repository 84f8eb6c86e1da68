// What the commands on records need to know of a kind of record. Each group of commands states its
// kind once, and the commands that all groups have (record/commands.h) follow from it.
#ifndef DORVDLCTL_RECORD_KIND_H_
#define DORVDLCTL_RECORD_KIND_H_

#include <dorvdl/control/option/common.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "global_options.h"
#include "help.h"
#include "reading/assignment.h"
#include "record/parent.h"
#include "rendering/message_json.h"
#include "rendering/record_view.h"

namespace dorvdl::ctl {

// What does not depend on the control. The key's column and what may be assigned are those of the
// base.
struct Description : Assignable {
  std::string title;                         // of the group of commands, in the help
  std::string key_label = "ID";              // what stands for the key in the help
  bool key_is_given = false;                 // the database makes no keys: `add` is told them
  std::vector<std::string> columns;          // all, in the order in which `show` has them
  std::vector<std::string> listed;           // the columns of `list`
  std::string shrinking;                     // the one that gives way in a narrow terminal
  std::vector<std::string> orders;           // the orders of `list` that are no columns
  const Parent* parent = nullptr;            // what the records belong to, if anything
  std::map<std::string, std::string> notes;  // on columns that may be assigned, in the help
  struct {
    Help list, show, add, set, remove;
  } help;             // what there is to say beyond what holds for every kind
  std::string group;  // the name of the group of commands where that is not the noun

  const std::string& GroupName() const { return group.empty() ? noun : group; }
};

// @tparam ControlType  the kind's control.
// @tparam Criteria     the list option that its List() takes; the common one for a control without
//                      criteria, which has ListAll() instead.
template <typename ControlType, typename Criteria = control::option::common::ListOption,
          typename KeyType = std::int32_t>
struct Kind : Description {
  using Control = ControlType;
  using Option = Criteria;
  using Key = KeyType;
  using Record = decltype(std::declval<Control&>().Get(std::declval<Key>()));

  static constexpr bool kHasCriteria = !std::is_same_v<Option, control::option::common::ListOption>;

  Kind() { columns = ColumnsOf(*Record().proto().GetDescriptor()); }

  // The record as JSON.
  Json::Value (*to_json)(const Record& record) = [](const Record& record) {
    return MessageToJson(record.proto());
  };
  // Adds options to `list` that say which records are wanted; may be null.
  void (*add_criteria)(CLI::App& command, Option& option) = nullptr;
  // Adds to a new record what the command line leaves open. Throws WrongUsage; may be null.
  void (*complete)(Record& record, const GlobalOptions& global) = nullptr;
  // The table for people, where it has more to it than the columns listed; the owners stand in it
  // when @p with_user.
  Table (*draw)(const std::vector<Record>& records, bool with_user) = nullptr;
};

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RECORD_KIND_H_
