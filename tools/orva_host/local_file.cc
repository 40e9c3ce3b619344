#include "tools/orva_host/local_file.h"

#include <cstring>

#include "platform/com_ptr.h"
#include "tools/orva_host/host_text.h"

namespace orva {

nsresult LocalFile::Append(const char* node) {
  if (node == nullptr) return NS_ERROR_NULL_POINTER;
  path_ += '/';
  path_ += node;
  return NS_OK;
}

nsresult LocalFile::GetPath(char** path) {
  if (path == nullptr) return NS_ERROR_NULL_POINTER;
  *path = nullptr;
  if (faults_.path) return NS_ERROR_FAILURE;
  *path = host_copy(path_);
  return *path != nullptr ? NS_OK : NS_ERROR_OUT_OF_MEMORY;
}

nsresult LocalFile::Clone(nsIFile** copy) {
  if (copy == nullptr) return NS_ERROR_NULL_POINTER;
  *copy = new LocalFile(path_, faults_);
  (*copy)->AddRef();
  return NS_OK;
}

nsresult DirectoryService::QueryInterface(const nsIID& iid, void** result) {
  if (result == nullptr) return NS_ERROR_NULL_POINTER;
  *result = nullptr;
  if (iid.Equals(nsIProperties::GetIID())) {
    *result = static_cast<nsIProperties*>(this);
  } else if (iid.Equals(nsIDirectoryService::GetIID()) || iid.Equals(nsISupports::GetIID())) {
    *result = static_cast<nsIDirectoryService*>(this);
  } else {
    return NS_NOINTERFACE;
  }
  AddRef();
  return NS_OK;
}

nsrefcnt DirectoryService::Release() {
  const nsrefcnt left = --references_;
  if (left == 0) delete this;
  return left;
}

nsresult DirectoryService::Get(const char* prop, const nsIID& iid, void** result) {
  if (prop == nullptr || result == nullptr) return NS_ERROR_NULL_POINTER;
  *result = nullptr;
  if (faults_.directory || strcmp(prop, NS_APP_RES_DIR) != 0) return NS_ERROR_FAILURE;
  const nsCOMPtr<LocalFile> file = new LocalFile(resources_, faults_);
  return file->QueryInterface(iid, result);
}

nsresult DirectoryService::Has(const char* prop, PRBool* result) {
  if (prop == nullptr || result == nullptr) return NS_ERROR_NULL_POINTER;
  *result = strcmp(prop, NS_APP_RES_DIR) == 0 ? PR_TRUE : PR_FALSE;
  return NS_OK;
}

}  // namespace orva
