#include <dorv/cgi.h>

#include <cstdlib>
#include <exception>

#include "localised_texts.h"
#include "log.h"

namespace {

constexpr char kLogSource[] = "platform/cgi";

struct Loader {
  dorv::Sections sections;
  dorv::Texts loaded;
};

Loader* LoaderOf(const DorvCgiContext* context) { return static_cast<Loader*>(context->texts); }

}  // namespace

int DorvCgiInit(const char* dir, DorvCgiContext* context) {
  const char* const user = std::getenv("USERNAME");
  try {
    context->texts =
        new Loader{dorv::ReadLocalisedTexts(dir, "strings", user != nullptr ? user : ""), {}};
    return 1;
  } catch (const std::exception& error) {
    DORV_LOG("Failed to read texts: %s", error.what());
    return 0;
  }
}

int DorvCgiLoadText(DorvCgiContext* context, const char* section, int /*flag*/) {
  Loader* const loader = LoaderOf(context);
  if (loader == nullptr) {
    return 0;
  }
  const auto found = loader->sections.find(section);
  if (found == loader->sections.end()) {
    return 0;
  }
  loader->loaded.merge(found->second);  // moves the texts, which takes no memory
  return 1;
}

const char* DorvCgiGetText(DorvCgiContext* context, const char* key, const char* def) {
  const Loader* const loader = LoaderOf(context);
  if (loader == nullptr) {
    return def;
  }
  const auto found = loader->loaded.find(key);
  return found != loader->loaded.end() ? found->second.c_str() : def;
}

void DorvCgiFree(DorvCgiContext* context) {
  delete LoaderOf(context);
  *context = {};
}
