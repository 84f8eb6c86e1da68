// The commands that every group on records has: list, show, add, set and remove.
#ifndef DORVDLCTL_RECORD_COMMANDS_H_
#define DORVDLCTL_RECORD_COMMANDS_H_

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "global_options.h"
#include "help.h"
#include "outcome.h"
#include "record/criterion.h"
#include "record/key.h"
#include "record/kind.h"
#include "record/operations.h"
#include "record/parent.h"
#include "record/print.h"

namespace dorvdl::ctl {

// Adds the group itself.
CLI::App& AddGroup(CLI::App& app, const Description& kind);

// Adds the positional argument KEY=VALUE.
void AddAssignments(CLI::App& command, std::vector<std::string>& assignments);

// The columns that may be assigned, with their notes.
std::string ColumnList(const Description& kind);

// Each of the following adds a command to @p group. @p kind and @p global must outlive it.

template <typename KindType>
void AddList(CLI::App& group, const KindType& kind, const GlobalOptions& global) {
  struct Arguments {
    typename KindType::Option option;
    bool count_only = false;
  };
  const auto arguments = std::make_shared<Arguments>();
  CLI::App& command = *group.add_subcommand("list", "List " + kind.noun + "s");
  if (kind.add_criteria != nullptr) {
    kind.add_criteria(command, arguments->option);
  }
  AddOrderAndPage(command, kind, CommonPart(arguments->option));
  command.add_flag("--count", arguments->count_only, "Print only how many there are on all pages");
  command.footer(Footer(kind.help.list));
  command.callback([arguments, &kind, &global] {
    List(kind, arguments->option, arguments->count_only, global);
  });
}

// Adds a list that takes no options: what @p list returns.
template <typename KindType>
CLI::App& AddFixedList(CLI::App& group, const KindType& kind, const GlobalOptions& global,
                       const std::string& name, const std::string& description,
                       std::vector<typename KindType::Record> (KindType::Control::*list)()) {
  CLI::App& command = *group.add_subcommand(name, description);
  command.callback([list, &kind, &global] {
    Work work(global);
    const auto records = (work.Use<typename KindType::Control>().*list)();
    work.Commit();
    Print(kind, records, global);
  });
  return command;
}

template <typename KindType>
void AddShow(CLI::App& group, const KindType& kind, const GlobalOptions& global) {
  const auto key = std::make_shared<typename KindType::Key>();
  CLI::App& command = *group.add_subcommand("show", "Show all columns of one " + kind.noun);
  AddKey(command, kind, *key);
  command.footer(Footer(kind.help.show));
  command.callback([key, &kind, &global] { Show(kind, *key, global); });
}

template <typename KindType>
struct AssignmentArguments {
  typename KindType::Key key{};
  std::vector<std::string> assignments;

  // The record that the assignments make.
  typename KindType::Record Carry(const KindType& kind) const {
    typename KindType::Record record;
    for (const std::string& assignment : assignments) {
      Assign(kind, assignment, record.mutable_proto());
    }
    return record;
  }
};

template <typename KindType>
void AddAdd(CLI::App& group, const KindType& kind, const GlobalOptions& global) {
  const auto arguments = std::make_shared<AssignmentArguments<KindType>>();
  CLI::App& command = *group.add_subcommand("add", "Add one " + kind.noun + " and print its key");
  if (kind.key_is_given) {
    AddKey(command, kind, arguments->key);
  }
  AddAssignments(command, arguments->assignments);
  command.footer(Footer(
      {"Columns: " + ColumnList(kind) + ". " + kind.help.add.remark, kind.help.add.examples}));
  command.callback([arguments, &kind, &global] {
    auto record = arguments->Carry(kind);
    if (kind.key_is_given) {
      SetKey(kind, arguments->key, record.mutable_proto());
    }
    if (kind.complete != nullptr) {
      kind.complete(record, global);
    }
    if (kind.parent != nullptr && !NamesParent(*kind.parent, record.proto())) {
      throw WrongUsage("a new " + kind.noun + " needs " + kind.parent->column +
                       "=ID, which it belongs to");
    }
    Insert(kind, arguments->key, record, global);
  });
}

template <typename KindType>
void AddSet(CLI::App& group, const KindType& kind, const GlobalOptions& global) {
  const auto arguments = std::make_shared<AssignmentArguments<KindType>>();
  CLI::App& command = *group.add_subcommand("set", "Change columns of one " + kind.noun);
  AddKey(command, kind, arguments->key);
  AddAssignments(command, arguments->assignments);
  command.footer(Footer(
      {"Only the columns named are written: " + ColumnList(kind) + ". " + kind.help.set.remark,
       kind.help.set.examples}));
  command.callback([arguments, &kind, &global] {
    if (arguments->assignments.empty()) {
      throw WrongUsage("nothing to set: give KEY=VALUE");
    }
    auto changes = arguments->Carry(kind);
    SetKey(kind, arguments->key, changes.mutable_proto());
    Change(kind, arguments->key, changes, global);
  });
}

template <typename KindType>
void AddRemove(CLI::App& group, const KindType& kind, const GlobalOptions& global) {
  const auto keys = std::make_shared<std::vector<typename KindType::Key>>();
  CLI::App& command = *group.add_subcommand("remove", "Remove " + kind.noun + "s");
  AddKeys(command, kind, *keys);
  command.footer(
      Footer({"Those that do not exist are named; the others are removed all the same. " +
                  kind.help.remove.remark,
              kind.help.remove.examples}));
  command.callback([keys, &kind, &global] { Remove(kind, *keys, global); });
}

// Adds the group with all five.
template <typename KindType>
CLI::App& AddRecordGroup(CLI::App& app, const KindType& kind, const GlobalOptions& global) {
  CLI::App& group = AddGroup(app, kind);
  AddList(group, kind, global);
  AddShow(group, kind, global);
  AddAdd(group, kind, global);
  AddSet(group, kind, global);
  AddRemove(group, kind, global);
  return group;
}

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RECORD_COMMANDS_H_
