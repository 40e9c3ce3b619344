#include "tools/orva_host/faults.h"

namespace orva {
namespace {

struct NamedFault {
  const char* name;
  bool Faults::*field;
};

constexpr NamedFault kFaults[] = {
    {"directory-service", &Faults::directory_service},
    {"directory", &Faults::directory},
    {"path", &Faults::path},
    {"registry-service", &Faults::registry_service},
    {"registry-open", &Faults::registry_open},
    {"registry-subtree", &Faults::registry_subtree},
    {"registry-value", &Faults::registry_value},
    {"component", &Faults::component},
};

}  // namespace

std::vector<std::string> fault_names() {
  std::vector<std::string> names;
  for (const NamedFault& fault : kFaults) names.emplace_back(fault.name);
  return names;
}

void set_fault(const std::string& name, Faults* faults) {
  for (const NamedFault& fault : kFaults) {
    if (name == fault.name) faults->*fault.field = true;
  }
}

}  // namespace orva
