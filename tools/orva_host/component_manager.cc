#include "tools/orva_host/component_manager.h"

#include "platform/com_ptr.h"
#include "tools/orva_host/host_text.h"
#include "tools/orva_host/local_file.h"

namespace orva {

nsresult ComponentManager::FindFactory(const nsCID& id, nsIFactory** result) {
  if (result == nullptr) return NS_ERROR_NULL_POINTER;
  void* found = nullptr;
  const nsresult rv = GetClassObject(id, nsIFactory::GetIID(), &found);
  *result = static_cast<nsIFactory*>(found);
  return rv;
}

nsresult ComponentManager::GetClassObject(const nsCID& id, const nsIID& iid, void** result) {
  if (result == nullptr) return NS_ERROR_NULL_POINTER;
  *result = nullptr;
  const ComponentRecord* record = record_of(id);
  if (record == nullptr) return NS_ERROR_FACTORY_NOT_REGISTERED;
  std::string error;
  const ComponentLibrary* library = library_at(record->library, &error);
  if (library == nullptr) return NS_ERROR_FACTORY_NOT_LOADED;
  return library->module()->GetClassObject(this, id, iid, result);
}

nsresult ComponentManager::ContractIDToClassID(const char* contract, nsCID* id) {
  if (contract == nullptr || id == nullptr) return NS_ERROR_NULL_POINTER;
  for (const ComponentRecord& record : data_->components) {
    if (record.contract_id != contract) continue;
    *id = record.class_id;
    return NS_OK;
  }
  return NS_ERROR_FACTORY_NOT_REGISTERED;
}

nsresult ComponentManager::CreateInstance(const nsCID& id, nsISupports* outer, const nsIID& iid,
                                          void** result) {
  if (result == nullptr) return NS_ERROR_NULL_POINTER;
  *result = nullptr;
  nsCOMPtr<nsIFactory> factory;
  const nsresult rv = FindFactory(id, getter_AddRefs(factory));
  return NS_FAILED(rv) ? rv : factory->CreateInstance(outer, iid, result);
}

nsresult ComponentManager::CreateInstanceByContractID(const char* contract, nsISupports* outer,
                                                      const nsIID& iid, void** result) {
  nsCID id;
  const nsresult rv = ContractIDToClassID(contract, &id);
  return NS_FAILED(rv) ? rv : CreateInstance(id, outer, iid, result);
}

nsresult ComponentManager::RegisterComponentSpec(const nsCID& id, const char* description,
                                                 const char* contract, nsIFile* library,
                                                 PRBool replace, PRBool /*persist*/) {
  if (faults_.component) return NS_ERROR_FAILURE;
  const std::string path = path_text(library);
  if (path.empty() || description == nullptr || contract == nullptr) return NS_ERROR_NULL_POINTER;
  for (ComponentRecord& record : data_->components) {
    if (!record.class_id.Equals(id)) continue;
    if (replace == PR_FALSE) return NS_ERROR_FAILURE;
    record = {id, description, contract, path};
    return NS_OK;
  }
  data_->components.push_back({id, description, contract, path});
  return NS_OK;
}

nsresult ComponentManager::UnregisterComponentSpec(const nsCID& id, nsIFile* library) {
  if (faults_.component) return NS_ERROR_FAILURE;
  const std::string path = path_text(library);
  const size_t removed = std::erase_if(data_->components, [&](const ComponentRecord& record) {
    return record.class_id.Equals(id) && record.library == path;
  });
  return removed != 0 ? NS_OK : NS_ERROR_FACTORY_NOT_REGISTERED;
}

nsresult ComponentManager::FreeLibraries() {
  std::erase_if(libraries_, [this](const auto& entry) { return entry.second->can_unload(this); });
  return NS_OK;
}

nsresult ComponentManager::IsRegistered(const nsCID& id, PRBool* result) {
  if (result == nullptr) return NS_ERROR_NULL_POINTER;
  *result = record_of(id) != nullptr ? PR_TRUE : PR_FALSE;
  return NS_OK;
}

ComponentLibrary* ComponentManager::library_at(const std::string& path, std::string* error) {
  const auto known = libraries_.find(path);
  if (known != libraries_.end()) return known->second.get();
  auto library = std::make_unique<ComponentLibrary>();
  const nsCOMPtr<nsIFile> file = new LocalFile(path, faults_);
  if (NS_FAILED(library->open(path, this, file))) {
    *error = library->error();
    return nullptr;
  }
  return (libraries_[path] = std::move(library)).get();
}

const ComponentRecord* ComponentManager::record_of(const nsCID& id) const {
  for (const ComponentRecord& record : data_->components) {
    if (record.class_id.Equals(id)) return &record;
  }
  return nullptr;
}

}  // namespace orva
