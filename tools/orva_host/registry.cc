#include "tools/orva_host/registry.h"

#include "tools/orva_host/host_text.h"

namespace orva {

nsresult Registry::OpenWellKnownRegistry(nsWellKnownRegistry id) {
  if (faults_.registry_open) return NS_ERROR_FAILURE;
  open_ = id;
  return NS_OK;
}

nsresult Registry::IsOpen(PRBool* result) {
  if (result == nullptr) return NS_ERROR_NULL_POINTER;
  *result = open_ != 0 ? PR_TRUE : PR_FALSE;
  return NS_OK;
}

nsresult Registry::AddSubtree(nsRegistryKey base, const char* path, nsRegistryKey* result) {
  if (path == nullptr || result == nullptr) return NS_ERROR_NULL_POINTER;
  if (open_ == 0) return NS_ERROR_UNEXPECTED;
  if (faults_.registry_subtree) return NS_ERROR_FAILURE;
  if (NS_SUCCEEDED(GetSubtree(base, path, result))) return NS_OK;
  subtrees_.push_back({base, path});
  *result = kFirstKey + static_cast<nsRegistryKey>(subtrees_.size()) - 1;
  return NS_OK;
}

nsresult Registry::GetSubtree(nsRegistryKey base, const char* path, nsRegistryKey* result) {
  if (path == nullptr || result == nullptr) return NS_ERROR_NULL_POINTER;
  for (size_t i = 0; i < subtrees_.size(); ++i) {
    if (subtrees_[i].root != base || subtrees_[i].path != path) continue;
    *result = kFirstKey + static_cast<nsRegistryKey>(i);
    return NS_OK;
  }
  return NS_ERROR_REG_NOT_FOUND;
}

nsresult Registry::GetStringUTF8(nsRegistryKey base, const char* name, char** result) {
  if (name == nullptr || result == nullptr) return NS_ERROR_NULL_POINTER;
  const Subtree* subtree = subtree_of(base);
  const ValueRecord* value = subtree != nullptr ? find_value(*subtree, name) : nullptr;
  if (value == nullptr) return NS_ERROR_REG_NOT_FOUND;
  *result = host_copy(value->text);
  return *result != nullptr ? NS_OK : NS_ERROR_OUT_OF_MEMORY;
}

nsresult Registry::SetStringUTF8(nsRegistryKey base, const char* name, const char* value) {
  if (name == nullptr || value == nullptr) return NS_ERROR_NULL_POINTER;
  if (faults_.registry_value) return NS_ERROR_FAILURE;
  const Subtree* subtree = subtree_of(base);
  if (subtree == nullptr) return NS_ERROR_REG_NOT_FOUND;
  if (ValueRecord* former = find_value(*subtree, name); former != nullptr) {
    former->text = value;
  } else {
    data_->values.push_back({open_, subtree->root, subtree->path, name, value});
  }
  return NS_OK;
}

const Registry::Subtree* Registry::subtree_of(nsRegistryKey key) const {
  if (key < kFirstKey || key - kFirstKey >= subtrees_.size()) return nullptr;
  return &subtrees_[key - kFirstKey];
}

ValueRecord* Registry::find_value(const Subtree& subtree, const std::string& name) const {
  for (ValueRecord& value : data_->values) {
    if (value.registry == open_ && value.root == subtree.root && value.subtree == subtree.path &&
        value.name == name) {
      return &value;
    }
  }
  return nullptr;
}

}  // namespace orva
