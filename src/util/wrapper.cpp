#include <dorvdl/util/wrapper.h>

namespace dorvdl::util {

std::string Wrapper::Wrap(const std::string& function, const std::string& argument) {
  return argument.empty() ? std::string() : function + "(" + argument + ")";
}

std::string Wrapper::Lower(const std::string& argument) { return Wrap("lower", argument); }

}  // namespace dorvdl::util
