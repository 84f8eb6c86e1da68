#include "item/import.h"

#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "help.h"
#include "item/kind.h"
#include "outcome.h"
#include "reading/json_text.h"
#include "record/key.h"
#include "record/parent.h"
#include "record/print.h"
#include "work.h"

namespace dorvdl::ctl {
namespace {

struct Arguments {
  std::int32_t feed_id = 0;
  std::string path;
};

// The item that a line describes.
record::RssItem ItemFrom(const std::string& line, std::int32_t feed_id) {
  record::RssItem item;
  const std::optional<Json::Value> columns = ParseJson(line);
  if (!columns || !columns->isObject()) {
    throw WrongUsage("no JSON object");
  }
  for (const std::string& column : columns->getMemberNames()) {
    const Json::Value& value = (*columns)[column];
    if (value.isNull() || value.isArray() || value.isObject()) {
      throw WrongUsage(column + ": neither a text nor a number nor a truth value");
    }
    AssignColumn(Items(), column, value.asString(), item.mutable_proto());
  }
  item.mutable_proto().set_feed_id(feed_id);
  return item;
}

std::vector<record::RssItem> ReadItems(std::istream& in, const Arguments& arguments) {
  std::vector<record::RssItem> items;
  std::string line;
  while (std::getline(in, line)) {
    try {
      items.push_back(ItemFrom(line, arguments.feed_id));
    } catch (const WrongUsage& error) {  // of the file, not of the command
      throw Failure(arguments.path + ":" + std::to_string(items.size() + 1) + ": " + error.what());
    }
  }
  if (in.bad() || items.empty()) {
    throw Failure("no items can be read from " + arguments.path);
  }
  return items;
}

std::vector<record::RssItem> ReadItems(const Arguments& arguments) {
  if (arguments.path == "-") {
    return ReadItems(std::cin, arguments);
  }
  std::ifstream file(arguments.path);
  return ReadItems(file, arguments);
}

void Import(const Arguments& arguments, const GlobalOptions& global) {
  std::vector<record::RssItem> items = ReadItems(arguments);
  Work work(global);
  RequireParent(work, FeedParent(), arguments.feed_id);
  auto control = work.Use<control::RssItemControl>();
  for (record::RssItem& item : items) {
    if (!control.Create(item)) {
      break;  // the commit complains
    }
  }
  work.Commit("no item was added");
  const auto count = static_cast<Json::UInt64>(items.size());
  if (global.json) {
    PrintJson(count);
  } else {
    std::cout << count << " items added\n";
  }
}

}  // namespace

void AddItemImport(CLI::App& group, const GlobalOptions& global) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App& command = *group.add_subcommand("import", "Add items that a file lists");
  AddId(command, "FEED", "The id of the feed that they belong to", arguments->feed_id);
  command
      .add_option("FILE", arguments->path,
                  "A file with one JSON object per line, whose members are columns; - for the "
                  "standard input")
      ->type_name("")
      ->required();
  command.footer(Footer({"When one line is no good, none is added.",
                         {"item import 3 - <<<'{\"title\": \"Some film\", \"is_new\": true}'"}}));
  command.callback([arguments, &global] { Import(*arguments, global); });
}

}  // namespace dorvdl::ctl
