// Keys on the command line and in records.
#ifndef DORVDLCTL_RECORD_KEY_H_
#define DORVDLCTL_RECORD_KEY_H_

#include <google/protobuf/message.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <string>
#include <vector>

#include "record/kind.h"

namespace dorvdl::ctl {

// What a key on the command line must be, by its type.
CLI::Validator KeyCheck(std::int32_t type);
CLI::Validator KeyCheck(const std::string& type);

template <typename Key>
CLI::Validator KeyCheck(const std::vector<Key>& /*type*/) {
  return KeyCheck(Key());
}

// Adds a positional argument that takes a key, or several.
template <typename Keys>
CLI::Option& AddId(CLI::App& command, const std::string& label, const std::string& description,
                   Keys& keys) {
  return *command.add_option(label, keys, description)
              ->type_name("")
              ->required()
              ->check(KeyCheck(keys));
}

// The same for the one that names a record, or several, of a kind.
template <typename Key>
CLI::Option& AddKey(CLI::App& command, const Description& kind, Key& key) {
  return AddId(command, kind.key_label, "The " + kind.noun + "'s " + kind.key, key);
}

template <typename Key>
CLI::Option& AddKeys(CLI::App& command, const Description& kind, std::vector<Key>& keys) {
  return AddId(command, kind.key_label, "Each " + kind.noun + "'s " + kind.key, keys);
}

void SetKey(const Description& kind, std::int32_t key, google::protobuf::Message& message);
void SetKey(const Description& kind, const std::string& key, google::protobuf::Message& message);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RECORD_KEY_H_
