// The registry service over RegistryData: opening, subtrees and narrow string values.
//
// Ownership: the data outlive the object.
#ifndef ORVA_TOOLS_ORVA_HOST_REGISTRY_H_
#define ORVA_TOOLS_ORVA_HOST_REGISTRY_H_

#include <string>
#include <vector>

#include "tools/orva_host/counted.h"
#include "tools/orva_host/faults.h"
#include "tools/orva_host/registry_file.h"
#include "tools/orva_host/unimplemented.h"

namespace orva {

class Registry : public Counted<nsIRegistry, UnimplementedRegistry> {
 public:
  Registry(RegistryData* data, const Faults& faults) : data_(data), faults_(faults) {}

  nsresult OpenWellKnownRegistry(nsWellKnownRegistry id) override;
  nsresult IsOpen(PRBool* result) override;
  nsresult Flush() override { return NS_OK; }
  nsresult AddSubtree(nsRegistryKey base, const char* path, nsRegistryKey* result) override;
  nsresult GetSubtree(nsRegistryKey base, const char* path, nsRegistryKey* result) override;
  nsresult GetStringUTF8(nsRegistryKey base, const char* name, char** result) override;
  nsresult SetStringUTF8(nsRegistryKey base, const char* name, const char* value) override;

 private:
  // Keys from kFirstKey on stand for subtrees, in the order of `subtrees_`.
  static constexpr nsRegistryKey kFirstKey = 16;
  struct Subtree {
    nsRegistryKey root;
    std::string path;
  };

  const Subtree* subtree_of(nsRegistryKey key) const;
  ValueRecord* find_value(const Subtree& subtree, const std::string& name) const;

  RegistryData* data_;
  Faults faults_;
  nsWellKnownRegistry open_ = 0;
  std::vector<Subtree> subtrees_;
};

}  // namespace orva

#endif  // ORVA_TOOLS_ORVA_HOST_REGISTRY_H_
