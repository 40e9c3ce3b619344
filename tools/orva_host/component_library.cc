#include "tools/orva_host/component_library.h"

#include <dlfcn.h>

#include "tools/orva_host/host_text.h"

namespace orva {
namespace {

// A leak that is reported after its library has gone has no function names, which the sanitizer
// needs to tell the intended leaks from others. So such builds keep libraries mapped.
#ifdef __SANITIZE_ADDRESS__
constexpr int kOpenMode = RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE;
#else
constexpr int kOpenMode = RTLD_NOW | RTLD_LOCAL;
#endif

}  // namespace

nsresult ComponentLibrary::open(const std::string& path, nsIComponentManager* manager,
                                nsIFile* file) {
  handle_ = dlopen(path.c_str(), kOpenMode);
  if (handle_ == nullptr) {
    error_ = dlerror();
    return NS_ERROR_FACTORY_NOT_LOADED;
  }
  const auto entry = reinterpret_cast<nsGetModuleProc>(dlsym(handle_, NS_GET_MODULE_SYMBOL));
  if (entry == nullptr) {
    error_ = "it does not export " + std::string(NS_GET_MODULE_SYMBOL);
    close();
    return NS_ERROR_FACTORY_NOT_LOADED;
  }
  const nsresult rv = entry(manager, file, &module_);
  if (NS_FAILED(rv) || module_ == nullptr) {
    error_ = "no module: " + result_text(rv);
    module_ = nullptr;
    close();
    return NS_FAILED(rv) ? rv : NS_ERROR_FACTORY_NOT_LOADED;
  }
  return NS_OK;
}

bool ComponentLibrary::can_unload(nsIComponentManager* manager) const {
  PRBool ok = PR_FALSE;
  return module_ != nullptr && NS_SUCCEEDED(module_->CanUnload(manager, &ok)) && ok != PR_FALSE;
}

void ComponentLibrary::close() {
  if (module_ != nullptr) module_->Release();
  module_ = nullptr;
  if (handle_ != nullptr) dlclose(handle_);
  handle_ = nullptr;
}

}  // namespace orva
