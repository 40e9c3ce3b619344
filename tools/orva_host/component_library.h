// A component library in memory, with the module that its entry gave.
//
//   ComponentLibrary library;
//   if (!NS_SUCCEEDED(library.open(path, manager, file))) puts(library.error().c_str());
//   library.module()->RegisterSelf(manager, file, "", "");
//   if (library.can_unload(manager)) library.close();
//
// Life cycle: open once; close, or the destructor, releases the module and then the library.
// Ownership:  holds the one reference to the module that NSGetModule returned.
#ifndef ORVA_TOOLS_ORVA_HOST_COMPONENT_LIBRARY_H_
#define ORVA_TOOLS_ORVA_HOST_COMPONENT_LIBRARY_H_

#include <string>

#include "platform/component_manager.h"
#include "platform/file.h"

namespace orva {

class ComponentLibrary {
 public:
  ComponentLibrary() = default;
  ~ComponentLibrary() { close(); }
  ComponentLibrary(const ComponentLibrary&) = delete;
  ComponentLibrary& operator=(const ComponentLibrary&) = delete;

  // NS_ERROR_FACTORY_NOT_LOADED, with the reason in error(), when it cannot be loaded or is no
  // component; else the result of its entry.
  nsresult open(const std::string& path, nsIComponentManager* manager, nsIFile* file);

  // Whether the module agrees to go.
  bool can_unload(nsIComponentManager* manager) const;
  void close();

  nsIModule* module() const { return module_; }
  // The system's handle.
  void* handle() const { return handle_; }
  const std::string& error() const { return error_; }

 private:
  void* handle_ = nullptr;
  nsIModule* module_ = nullptr;
  std::string error_;
};

}  // namespace orva

#endif  // ORVA_TOOLS_ORVA_HOST_COMPONENT_LIBRARY_H_
