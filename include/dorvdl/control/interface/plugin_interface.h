/// @file
/// What can be done with plug-ins' states.
#ifndef DORVDL_CONTROL_INTERFACE_PLUGIN_INTERFACE_H_
#define DORVDL_CONTROL_INTERFACE_PLUGIN_INTERFACE_H_

#include <dorvdl/record/plugin.h>
#include <dorvdl/util/export.h>

#include <vector>

namespace dorvdl::control::interface {

/// Operations on the plug-ins' states; `PluginControl`, which implements them, states what each
/// does and returns. Never owned through this type: it has no virtual destructor.
class DORVDL_EXPORT PluginInterface {
 public:
  virtual bool Create(record::Plugin& plugin) = 0;
  virtual bool Update(const record::Plugin& plugin) = 0;
  virtual bool Delete(const std::vector<int>& ids) = 0;
  virtual record::Plugin Get(int id) = 0;

 protected:
  ~PluginInterface() = default;
};

}  // namespace dorvdl::control::interface

#endif  // DORVDL_CONTROL_INTERFACE_PLUGIN_INTERFACE_H_
