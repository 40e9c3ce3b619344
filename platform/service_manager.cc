#include "platform/service_manager.h"

#include <new>
#include <string>
#include <utility>
#include <vector>

namespace orva {
namespace {

// Services under keys of one kind, each with one reference.
template <class Key>
class ServiceList {
 public:
  nsresult add(const Key& key, nsISupports* service) {
    if (service == nullptr) return NS_ERROR_NULL_POINTER;
    try {
      for (auto& entry : entries_) {
        if (entry.first == key) {
          entry.second = service;
          return NS_OK;
        }
      }
      entries_.emplace_back(key, service);
    } catch (const std::bad_alloc&) {
      return NS_ERROR_OUT_OF_MEMORY;
    }
    return NS_OK;
  }

  nsresult remove(const Key& key) {
    for (auto it = entries_.begin(); it != entries_.end(); ++it) {
      if (it->first == key) {
        entries_.erase(it);
        return NS_OK;
      }
    }
    return NS_ERROR_FACTORY_NOT_REGISTERED;
  }

  template <class AnyKey>
  nsresult get(const AnyKey& key, const nsIID& iid, nsISupports** result) const {
    if (result == nullptr) return NS_ERROR_NULL_POINTER;
    *result = nullptr;
    for (const auto& entry : entries_) {
      if (!(entry.first == key)) continue;
      void* found = nullptr;
      const nsresult rv = entry.second->QueryInterface(iid, &found);
      // The caller knows that it holds the interface that it asked for.
      *result = NS_SUCCEEDED(rv) ? static_cast<nsISupports*>(found) : nullptr;
      return rv;
    }
    return NS_ERROR_FACTORY_NOT_REGISTERED;
  }

 private:
  std::vector<std::pair<Key, nsCOMPtr<nsISupports>>> entries_;
};

// A class ID that can be a key.
struct ClassKey {
  nsCID id;
  bool operator==(const ClassKey& other) const { return id.Equals(other.id); }
};

nsresult release(nsISupports* service) {
  if (service == nullptr) return NS_ERROR_NULL_POINTER;
  service->Release();
  return NS_OK;
}

// The one manager of the process.
class ServiceManager : public nsIServiceManager {
 public:
  virtual ~ServiceManager() = default;

  nsresult QueryInterface(const nsIID& iid, void** result) override {
    if (result == nullptr) return NS_ERROR_NULL_POINTER;
    *result = nullptr;
    if (!iid.Equals(nsIServiceManager::GetIID()) && !iid.Equals(nsISupports::GetIID())) {
      return NS_NOINTERFACE;
    }
    AddRef();
    *result = this;
    return NS_OK;
  }
  nsrefcnt AddRef() override { return ++references_; }
  nsrefcnt Release() override {
    const nsrefcnt left = --references_;
    if (left == 0) delete this;
    return left;
  }

  nsresult RegisterService(const nsCID& id, nsISupports* service) override {
    return by_class_.add({id}, service);
  }
  nsresult UnregisterService(const nsCID& id) override { return by_class_.remove({id}); }
  nsresult GetService(const nsCID& id, const nsIID& iid, nsISupports** result,
                      nsIShutdownListener* /*listener*/) override {
    return by_class_.get(ClassKey{id}, iid, result);
  }
  nsresult ReleaseService(const nsCID& /*id*/, nsISupports* service,
                          nsIShutdownListener* /*listener*/) override {
    return release(service);
  }

  nsresult RegisterService(const char* contract, nsISupports* service) override {
    if (contract == nullptr) return NS_ERROR_NULL_POINTER;
    try {
      return by_contract_.add(contract, service);
    } catch (const std::bad_alloc&) {
      return NS_ERROR_OUT_OF_MEMORY;
    }
  }
  nsresult UnregisterService(const char* contract) override {
    if (contract == nullptr) return NS_ERROR_NULL_POINTER;
    try {
      return by_contract_.remove(contract);
    } catch (const std::bad_alloc&) {
      return NS_ERROR_OUT_OF_MEMORY;
    }
  }
  nsresult GetService(const char* contract, const nsIID& iid, nsISupports** result,
                      nsIShutdownListener* /*listener*/) override {
    if (contract == nullptr) return NS_ERROR_NULL_POINTER;
    return by_contract_.get(contract, iid, result);
  }
  nsresult ReleaseService(const char* /*contract*/, nsISupports* service,
                          nsIShutdownListener* /*listener*/) override {
    return release(service);
  }

 private:
  nsrefcnt references_ = 0;
  ServiceList<ClassKey> by_class_;
  ServiceList<std::string> by_contract_;
};

// Holds one reference while the manager lives.
nsIServiceManager* g_manager = nullptr;

nsIServiceManager* manager() {
  if (g_manager == nullptr) {
    g_manager = new (std::nothrow) ServiceManager;
    if (g_manager != nullptr) g_manager->AddRef();
  }
  return g_manager;
}

}  // namespace
}  // namespace orva

nsresult nsServiceManager::RegisterService(const nsCID& aClass, nsISupports* aService) {
  nsIServiceManager* manager = orva::manager();
  return manager != nullptr ? manager->RegisterService(aClass, aService) : NS_ERROR_OUT_OF_MEMORY;
}

nsresult nsServiceManager::UnregisterService(const nsCID& aClass) {
  nsIServiceManager* manager = orva::manager();
  return manager != nullptr ? manager->UnregisterService(aClass) : NS_ERROR_OUT_OF_MEMORY;
}

nsresult nsServiceManager::GetService(const nsCID& aClass, const nsIID& aIID, nsISupports** result,
                                      nsIShutdownListener* shutdownListener) {
  nsIServiceManager* manager = orva::manager();
  return manager != nullptr ? manager->GetService(aClass, aIID, result, shutdownListener)
                            : NS_ERROR_OUT_OF_MEMORY;
}

nsresult nsServiceManager::ReleaseService(const nsCID& /*aClass*/, nsISupports* service,
                                          nsIShutdownListener* /*shutdownListener*/) {
  return orva::release(service);
}

nsresult nsServiceManager::RegisterService(const char* aContractID, nsISupports* aService) {
  nsIServiceManager* manager = orva::manager();
  return manager != nullptr ? manager->RegisterService(aContractID, aService)
                            : NS_ERROR_OUT_OF_MEMORY;
}

nsresult nsServiceManager::UnregisterService(const char* aContractID) {
  nsIServiceManager* manager = orva::manager();
  return manager != nullptr ? manager->UnregisterService(aContractID) : NS_ERROR_OUT_OF_MEMORY;
}

nsresult nsServiceManager::GetService(const char* aContractID, const nsIID& aIID,
                                      nsISupports** result, nsIShutdownListener* shutdownListener) {
  nsIServiceManager* manager = orva::manager();
  return manager != nullptr ? manager->GetService(aContractID, aIID, result, shutdownListener)
                            : NS_ERROR_OUT_OF_MEMORY;
}

nsresult nsServiceManager::ReleaseService(const char* /*aContractID*/, nsISupports* service,
                                          nsIShutdownListener* /*shutdownListener*/) {
  return orva::release(service);
}

nsresult nsServiceManager::GetGlobalServiceManager(nsIServiceManager** result) {
  if (result == nullptr) return NS_ERROR_NULL_POINTER;
  *result = orva::manager();
  if (*result == nullptr) return NS_ERROR_OUT_OF_MEMORY;
  (*result)->AddRef();
  return NS_OK;
}

nsresult nsServiceManager::ShutdownGlobalServiceManager(nsIServiceManager** result) {
  if (result != nullptr && *result != nullptr) {
    (*result)->Release();
    *result = nullptr;
  }
  if (orva::g_manager != nullptr) orva::g_manager->Release();
  orva::g_manager = nullptr;
  return NS_OK;
}
