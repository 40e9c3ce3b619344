#include "host/module.h"

#include <new>

#include "host/component_ids.h"
#include "host/counters.h"
#include "host/factory.h"
#include "host/no_exceptions.h"
#include "host/orva_detector.h"
#include "host/query_interface.h"
#include "platform/component_manager.h"
#include "platform/registry.h"
#include "platform/service_manager.h"

namespace orva {
namespace {

struct ComponentEntry {
  const char* description;
  nsCID class_id;
  const char* contract_id;
};

constexpr ComponentEntry kComponents[] = {
    {kStreamingDetectorName, kStreamingDetectorCID, kStreamingDetectorContractID},
    {kStringDetectorName, kStringDetectorCID, kStringDetectorContractID},
};

// The module that NSGetModule made last.
nsIModule* g_module = nullptr;

// Registers the entries in order up to the first failure.
nsresult register_components(nsIComponentManager* manager, nsIFile* library) {
  if (manager == nullptr) return NS_ERROR_NULL_POINTER;
  nsresult rv = NS_OK;
  for (const ComponentEntry& entry : kComponents) {
    rv = manager->RegisterComponentSpec(entry.class_id, entry.description, entry.contract_id,
                                        library, PR_TRUE, PR_TRUE);
    if (NS_FAILED(rv)) break;
  }
  return rv;
}

// Writes the detector's entry; the result of the last step that ran.
nsresult write_registry_values(nsIRegistry* registry) {
  nsresult rv = registry->OpenWellKnownRegistry(nsIRegistry::ApplicationComponentRegistry);
  if (NS_FAILED(rv)) return rv;
  nsRegistryKey key = 0;
  rv = registry->AddSubtree(nsIRegistry::Common, kRegistrySubtree, &key);
  if (NS_FAILED(rv)) return rv;
  registry->SetStringUTF8(key, kRegistryType, kRegistryTypeValue);
  return registry->SetStringUTF8(key, kRegistryText, kRegistryTextValue);
}

// Releases the memory of a factory whose destructor must not run.
void free_undestroyed(MyFactory* factory) { ::operator delete(static_cast<void*>(factory)); }

}  // namespace
}  // namespace orva

nsOrvaCharDetModule::nsOrvaCharDetModule() : mRefCnt(0), mInitialized(0) {}

nsOrvaCharDetModule::~nsOrvaCharDetModule() {
  Shutdown();
  if (orva::g_module == this) orva::g_module = nullptr;
}

nsresult nsOrvaCharDetModule::QueryInterface(const nsIID& aIID, void** aInstancePtr) {
  return orva::query_interface<nsIModule>(this, aIID, aInstancePtr);
}

nsrefcnt nsOrvaCharDetModule::AddRef() { return ++mRefCnt; }
nsrefcnt nsOrvaCharDetModule::Release() { return orva::release(this, &mRefCnt); }

nsresult nsOrvaCharDetModule::Initialize() {
  if (mInitialized != 0) return NS_OK;
  const nsresult rv = orva::without_exceptions(nsOrvaDetector::Initialize);
  // Kept: also after a failure, so that it is never tried again.
  mInitialized = 1;
  return rv;
}

void nsOrvaCharDetModule::Shutdown() {
  orva::without_exceptions([] {
    nsOrvaDetector::Shutdown();
    return NS_OK;
  });
}

nsresult nsOrvaCharDetModule::GetClassObject(nsIComponentManager* /*aCompMgr*/, const nsCID& aClass,
                                             const nsIID& aIID, void** aInstancePtr) {
  if (aInstancePtr == nullptr) return NS_ERROR_NULL_POINTER;
  *aInstancePtr = nullptr;
  if (mInitialized == 0) {
    const nsresult rv = Initialize();
    if (NS_FAILED(rv)) return rv;
  }
  if (!aClass.Equals(orva::kStringDetectorCID) && !aClass.Equals(orva::kStreamingDetectorCID)) {
    return NS_ERROR_FACTORY_NOT_REGISTERED;
  }
  MyFactory* factory = NEW_ORVADETECTOR_FACTORY(aClass);
  if (factory == nullptr) return NS_ERROR_OUT_OF_MEMORY;
  const nsresult rv = factory->QueryInterface(aIID, aInstancePtr);
  // Kept: the factory goes without its destructor, so that g_InstanceCount stays raised.
  if (NS_FAILED(rv)) orva::free_undestroyed(factory);
  return rv;
}

nsresult nsOrvaCharDetModule::RegisterSelf(nsIComponentManager* aCompMgr, nsIFile* aPath,
                                           const char* /*aLoaderStr*/, const char* /*aType*/) {
  // Kept: the registry is written, and answers for the whole, even when registration failed.
  orva::register_components(aCompMgr, aPath);

  nsISupports* service = nullptr;
  nsresult rv =
      nsServiceManager::GetService(NS_REGISTRY_CONTRACTID, nsIRegistry::GetIID(), &service);
  if (NS_FAILED(rv)) return rv;
  if (service == nullptr) return NS_ERROR_NOT_AVAILABLE;
  rv = orva::write_registry_values(static_cast<nsIRegistry*>(service));
  nsServiceManager::ReleaseService(NS_REGISTRY_CONTRACTID, service);
  return rv;
}

nsresult nsOrvaCharDetModule::UnregisterSelf(nsIComponentManager* aCompMgr, nsIFile* aPath,
                                             const char* /*aLoaderStr*/) {
  if (aCompMgr == nullptr) return NS_OK;
  // Kept: results are ignored, and the registry entry stays.
  for (const orva::ComponentEntry& entry : orva::kComponents) {
    aCompMgr->UnregisterComponentSpec(entry.class_id, aPath);
  }
  return NS_OK;
}

nsresult nsOrvaCharDetModule::CanUnload(nsIComponentManager* /*aCompMgr*/, PRBool* aOkToUnload) {
  if (aOkToUnload == nullptr) return NS_ERROR_NULL_POINTER;
  *aOkToUnload = g_InstanceCount == 0 && g_LockCount == 0 ? PR_TRUE : PR_FALSE;
  return NS_OK;
}

extern "C" NS_COM nsresult NSGetModule(nsIComponentManager* /*aCompMgr*/, nsIFile* /*aLocation*/,
                                       nsIModule** aModule) {
  auto* module = new (std::nothrow) nsOrvaCharDetModule;
  if (module == nullptr) return NS_ERROR_OUT_OF_MEMORY;
  void* found = nullptr;
  const nsresult rv =
      module->QueryInterface(nsIModule::GetIID(), aModule != nullptr ? &found : nullptr);
  if (NS_FAILED(rv)) {
    // Kept: its destructor releases the models, also those that an earlier module loaded.
    delete module;
    module = nullptr;
  }
  if (aModule != nullptr) *aModule = static_cast<nsIModule*>(found);
  orva::g_module = module;
  return rv;
}
