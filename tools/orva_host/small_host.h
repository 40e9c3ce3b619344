// A host of components in a few lines: the component manager, and the services that a component
// asks for.
//
//   SmallHost host("models", Faults());
//   std::string error;
//   if (host.register_library("liborvacharset.so", &error)) ...
//   nsCOMPtr<nsICharsetDetector> detector;
//   host.components()->CreateInstanceByContractID(...);
//
// Life cycle: one at a time, since services belong to the process: the constructor registers them,
// the
//             destructor drops them after the libraries.
// Ownership:  owns everything it hands out but detectors, which must be released before it goes.
#ifndef ORVA_TOOLS_ORVA_HOST_SMALL_HOST_H_
#define ORVA_TOOLS_ORVA_HOST_SMALL_HOST_H_

#include <string>

#include "platform/com_ptr.h"
#include "tools/orva_host/component_manager.h"
#include "tools/orva_host/faults.h"
#include "tools/orva_host/registry_file.h"

namespace orva {

class SmallHost {
 public:
  // `resources` is the folder that the directory service answers.
  SmallHost(const std::string& resources, const Faults& faults);
  ~SmallHost();
  SmallHost(const SmallHost&) = delete;
  SmallHost& operator=(const SmallHost&) = delete;

  // Loads a library and lets it register or unregister itself. False, with the reason in `error`,
  // when it cannot be loaded or says that it failed.
  bool register_library(const std::string& path, std::string* error);
  bool unregister_library(const std::string& path, std::string* error);

  // Whether the library, once loaded, agrees to be unloaded.
  bool can_unload(const std::string& path);

  ComponentManager* components() { return components_.get(); }
  // What was registered; may be filled before the first call.
  RegistryData& data() { return data_; }

 private:
  Faults faults_;
  RegistryData data_;
  nsCOMPtr<ComponentManager> components_;
};

}  // namespace orva

#endif  // ORVA_TOOLS_ORVA_HOST_SMALL_HOST_H_
