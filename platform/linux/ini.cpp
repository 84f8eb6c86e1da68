#include "ini.h"

#include <boost/property_tree/ini_parser.hpp>
#include <boost/property_tree/ptree.hpp>
#include <cerrno>
#include <locale>
#include <sstream>

#include "fail.h"
#include "file.h"

namespace dorv {

Sections ReadIni(const std::string& path) {
  const std::string content = ReadFile(path);
  if (content.empty() || content.back() != '\n') {
    Fail(EBADMSG, path + ": cut short");
  }
  std::istringstream lines(content);
  lines.imbue(std::locale::classic());  // in another one parts of UTF-8 characters may be blanks
  boost::property_tree::ptree tree;
  try {
    read_ini(lines, tree);
  } catch (const boost::property_tree::ini_parser_error& error) {
    Fail(EBADMSG, path + ": line " + std::to_string(error.line()) + ": " + error.message());
  }
  Sections sections;
  for (const auto& [name, node] : tree) {
    if (node.empty()) {
      sections[""].emplace(name, node.data());
    }
    for (const auto& [key, text] : node) {
      sections[name].emplace(key, text.data());
    }
  }
  return sections;
}

}  // namespace dorv
