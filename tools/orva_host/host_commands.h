// The commands of orva-host, one function each. Results go to standard output, errors, prefixed
// with "orva-host: ", to standard error.
//
// Results: kHostOk, or kHostError for anything that failed.
#ifndef ORVA_TOOLS_ORVA_HOST_HOST_COMMANDS_H_
#define ORVA_TOOLS_ORVA_HOST_HOST_COMMANDS_H_

#include <cstddef>
#include <string>
#include <vector>

#include "tools/orva_host/faults.h"

namespace orva {

enum HostExit { kHostOk = 0, kHostError = 2 };

struct HostOptions {
  std::string registry_file = "orva-registry.txt";
  std::string models;  // folder of Model.grp and Model.stc
  std::string library;
  Faults faults;

  bool string_detector = false;
  size_t block = 4096;  // 0 for the whole document at once
  bool json = false;
  std::vector<std::string> files;
};

// Lets the library register or unregister itself, and writes the registry file.
int run_register(const HostOptions& options);
int run_unregister(const HostOptions& options);

// Prints what the registry file holds.
int run_list(const HostOptions& options);

// Registers the library in memory and detects the files.
int run_host_detect(const HostOptions& options);

}  // namespace orva

#endif  // ORVA_TOOLS_ORVA_HOST_HOST_COMMANDS_H_
