// Services of the small host that can be made to fail, so that tests see how a component takes it.
#ifndef ORVA_TOOLS_ORVA_HOST_FAULTS_H_
#define ORVA_TOOLS_ORVA_HOST_FAULTS_H_

#include <string>
#include <vector>

namespace orva {

struct Faults {
  bool directory_service = false;  // there is no directory service
  bool directory = false;          // it does not know the resource directory
  bool path = false;               // files have no path
  bool registry_service = false;   // there is no registry
  bool registry_open = false;      // it does not open
  bool registry_subtree = false;   // it takes no keys
  bool registry_value = false;     // it takes no values
  bool component = false;          // the component manager registers nothing
};

// The names of the switches, those of the fields with "-" for "_".
std::vector<std::string> fault_names();

// Switches on the fault called `name`, one of the above.
void set_fault(const std::string& name, Faults* faults);

}  // namespace orva

#endif  // ORVA_TOOLS_ORVA_HOST_FAULTS_H_
