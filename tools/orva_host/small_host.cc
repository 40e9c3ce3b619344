#include "tools/orva_host/small_host.h"

#include <filesystem>

#include "platform/service_manager.h"
#include "tools/orva_host/host_text.h"
#include "tools/orva_host/local_file.h"
#include "tools/orva_host/registry.h"

namespace orva {
namespace {

constexpr char kComponentType[] = "application/x-orva-native";

// The path under which a library is known, however it was named.
std::string library_path(const std::string& path) {
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::canonical(path, error);
  return error ? path : absolute.string();
}

}  // namespace

SmallHost::SmallHost(const std::string& resources, const Faults& faults)
    : faults_(faults), components_(new ComponentManager(&data_, faults)) {
  if (!faults.directory_service) {
    const nsCOMPtr<nsIDirectoryService> service = new DirectoryService(resources, faults);
    nsServiceManager::RegisterService(NS_DIRECTORY_SERVICE_CONTRACTID, service);
    nsServiceManager::RegisterService(NS_DIRECTORY_SERVICE_CID, service);
  }
  if (!faults.registry_service) {
    const nsCOMPtr<nsIRegistry> service = new Registry(&data_, faults);
    nsServiceManager::RegisterService(NS_REGISTRY_CONTRACTID, service);
    nsServiceManager::RegisterService(NS_REGISTRY_CID, service);
  }
}

SmallHost::~SmallHost() {
  components_ = nullptr;
  nsServiceManager::ShutdownGlobalServiceManager(nullptr);
}

bool SmallHost::register_library(const std::string& path, std::string* error) {
  const std::string known_path = library_path(path);
  const ComponentLibrary* library = components_->library_at(known_path, error);
  if (library == nullptr) return false;
  const nsCOMPtr<nsIFile> file = new LocalFile(known_path, faults_);
  const nsresult rv = library->module()->RegisterSelf(components_, file, "", kComponentType);
  if (NS_FAILED(rv)) *error = "it did not register: " + result_text(rv);
  return NS_SUCCEEDED(rv);
}

bool SmallHost::unregister_library(const std::string& path, std::string* error) {
  const std::string known_path = library_path(path);
  const ComponentLibrary* library = components_->library_at(known_path, error);
  if (library == nullptr) return false;
  const nsCOMPtr<nsIFile> file = new LocalFile(known_path, faults_);
  const nsresult rv = library->module()->UnregisterSelf(components_, file, "");
  if (NS_FAILED(rv)) *error = "it did not unregister: " + result_text(rv);
  return NS_SUCCEEDED(rv);
}

bool SmallHost::can_unload(const std::string& path) {
  std::string error;
  const ComponentLibrary* library = components_->library_at(library_path(path), &error);
  return library != nullptr && library->can_unload(components_);
}

}  // namespace orva
