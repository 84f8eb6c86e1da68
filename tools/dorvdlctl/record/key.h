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

// What a key on the command line must be.
CLI::Validator KeyCheck(std::int32_t type);
CLI::Validator KeyCheck(const std::string& type);

// Adds the positional argument that names one record, or several.
template <typename Key>
void AddKey(CLI::App& command, const Description& kind, Key& key) {
  command.add_option(kind.key_label, key, "The " + kind.noun + "'s " + kind.key)
      ->type_name("")
      ->required()
      ->check(KeyCheck(Key()));
}

template <typename Key>
void AddKeys(CLI::App& command, const Description& kind, std::vector<Key>& keys) {
  command.add_option(kind.key_label, keys, "Each " + kind.noun + "'s " + kind.key)
      ->type_name("")
      ->required()
      ->check(KeyCheck(Key()));
}

void SetKey(const Description& kind, std::int32_t key, google::protobuf::Message& message);
void SetKey(const Description& kind, const std::string& key, google::protobuf::Message& message);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RECORD_KEY_H_
