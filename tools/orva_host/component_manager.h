// The component manager of the small host: knows which library makes which class, loads libraries
// when they are first needed, and creates objects by class ID or contract ID. It keeps no
// factories.
//
// Ownership: the data outlive the object; the loaded libraries belong to it.
#ifndef ORVA_TOOLS_ORVA_HOST_COMPONENT_MANAGER_H_
#define ORVA_TOOLS_ORVA_HOST_COMPONENT_MANAGER_H_

#include <map>
#include <memory>
#include <string>

#include "tools/orva_host/component_library.h"
#include "tools/orva_host/counted.h"
#include "tools/orva_host/faults.h"
#include "tools/orva_host/registry_file.h"
#include "tools/orva_host/unimplemented.h"

namespace orva {

class ComponentManager : public Counted<nsIComponentManager, UnimplementedComponentManager> {
 public:
  ComponentManager(RegistryData* data, const Faults& faults) : data_(data), faults_(faults) {}

  nsresult FindFactory(const nsCID& id, nsIFactory** result) override;
  nsresult GetClassObject(const nsCID& id, const nsIID& iid, void** result) override;
  nsresult ContractIDToClassID(const char* contract, nsCID* id) override;
  nsresult CreateInstance(const nsCID& id, nsISupports* outer, const nsIID& iid,
                          void** result) override;
  nsresult CreateInstanceByContractID(const char* contract, nsISupports* outer, const nsIID& iid,
                                      void** result) override;
  nsresult RegisterComponentSpec(const nsCID& id, const char* description, const char* contract,
                                 nsIFile* library, PRBool replace, PRBool persist) override;
  nsresult UnregisterComponentSpec(const nsCID& id, nsIFile* library) override;
  nsresult FreeLibraries() override;
  nsresult IsRegistered(const nsCID& id, PRBool* result) override;

  // The library at `path`, loaded if need be; null with the reason in `error`.
  ComponentLibrary* library_at(const std::string& path, std::string* error);

 private:
  const ComponentRecord* record_of(const nsCID& id) const;

  RegistryData* data_;
  Faults faults_;
  std::map<std::string, std::unique_ptr<ComponentLibrary>> libraries_;
};

}  // namespace orva

#endif  // ORVA_TOOLS_ORVA_HOST_COMPONENT_MANAGER_H_
