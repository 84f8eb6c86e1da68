// The columns of a plug-in's state that hold JSON.
#ifndef DORVDLCTL_RENDERING_PLUGIN_JSON_H_
#define DORVDLCTL_RENDERING_PLUGIN_JSON_H_

#include <dorvdl/record/plugin.h>
#include <json/value.h>

namespace dorvdl::ctl {

struct PluginJson {
  const char* name;
  Json::Value (record::Plugin::*value)() const;
};

inline constexpr PluginJson kPluginJson[] = {
    {"process", &record::Plugin::process},
    {"attributes", &record::Plugin::attributes},
    {"response", &record::Plugin::response},
    {"result", &record::Plugin::result},
};

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RENDERING_PLUGIN_JSON_H_
