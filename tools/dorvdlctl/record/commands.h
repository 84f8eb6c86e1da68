// The commands that every group on records has: list, show, add, set and remove.
#ifndef DORVDLCTL_RECORD_COMMANDS_H_
#define DORVDLCTL_RECORD_COMMANDS_H_

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "global_options.h"
#include "outcome.h"
#include "record/criterion.h"
#include "record/key.h"
#include "record/kind.h"
#include "record/print.h"
#include "record/rows.h"

namespace dorvdl::ctl {

// Adds the group itself.
CLI::App& AddGroup(CLI::App& app, const Description& kind);

// Adds the positional argument KEY=VALUE.
void AddAssignments(CLI::App& command, std::vector<std::string>& assignments);

// Lists the rows that meet @p option, or tells their number.
template <typename KindType>
void List(const KindType& kind, typename KindType::Option& option, bool count_only,
          const GlobalOptions& global) {
  Work work(global);
  Rows rows(work, kind);
  if (count_only) {
    const int count = rows.Count(option);
    work.Commit();
    std::cout << count << '\n';
    return;
  }
  const auto records = rows.List(option);
  work.Commit();
  Print(kind, records, global);
}

template <typename KindType>
void Show(const KindType& kind, const typename KindType::Key& key, const GlobalOptions& global) {
  Work work(global);
  const auto record = Rows(work, kind).GetExisting(key);
  work.Commit();
  Print(kind, record, global);
}

// Writes the present columns of @p changes, which carries the key, to an existing row.
template <typename KindType>
void Change(const KindType& kind, const typename KindType::Key& key,
            const typename KindType::Record& changes, const GlobalOptions& global) {
  Work work(global);
  Rows rows(work, kind);
  rows.GetExisting(key);
  // A key that names the parent does not change: there the parent may be gone.
  if (kind.parent != nullptr && kind.parent->column != kind.key &&
      NamesParent(*kind.parent, changes.proto())) {
    RequireParent(work, *kind.parent, ParentOf(*kind.parent, changes.proto()));
  }
  rows.Update(changes);
  work.Commit();
}

// Inserts @p record, which carries @p key where the kind's keys are given.
template <typename KindType>
void Insert(const KindType& kind, const typename KindType::Key& key,
            typename KindType::Record record, const GlobalOptions& global) {
  Work work(global);
  if (kind.parent != nullptr) {
    RequireParent(work, *kind.parent, ParentOf(*kind.parent, record.proto()));
  }
  Rows rows(work, kind);
  if (kind.key_is_given && rows.Get(key).IsValid()) {
    throw Failure(kind.noun + " " + KeyText(key) + " exists already");
  }
  rows.Create(record);
  work.Commit();
  if (global.json) {
    Print(kind, record, global);
  } else {
    std::cout << kind.to_json(record)[kind.key].asString() << '\n';
  }
}

template <typename KindType>
void Remove(const KindType& kind, const std::vector<typename KindType::Key>& keys,
            const GlobalOptions& global) {
  using Keys = std::vector<typename KindType::Key>;
  Work work(global);
  Rows rows(work, kind);
  Keys found;
  Keys missing;
  for (const auto& key : keys) {
    (rows.Get(key).IsValid() ? found : missing).push_back(key);
  }
  if (!found.empty()) {
    rows.Delete(found);
  }
  work.Commit();
  if (!missing.empty()) {
    throw Missing(kind.noun, missing, global.user);
  }
}

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
  command.footer(kind.footers.list);
  command.callback([arguments, &kind, &global] {
    List(kind, arguments->option, arguments->count_only, global);
  });
}

// Adds a list that takes no options: what @p list returns, as far as the acting user may see it.
template <typename KindType>
CLI::App& AddFixedList(CLI::App& group, const KindType& kind, const GlobalOptions& global,
                       const std::string& name, const std::string& description,
                       std::vector<typename KindType::Record> (*list)(Work& work)) {
  CLI::App& command = *group.add_subcommand(name, description);
  command.callback([list, &kind, &global] {
    Work work(global);
    const auto records = KeepOwn(work, *kind.parent, list(work));
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
  command.footer(kind.footers.show);
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
  command.footer(kind.footers.add);
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
  command.footer(kind.footers.set);
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
  command.footer("Those that do not exist are named; the others are removed all the same.\n" +
                 kind.footers.remove);
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
