// What the small host remembers between runs: registered components and registry values, in a plain
// text file.
//
//   # comment
//   component <TAB> class ID <TAB> description <TAB> contract ID <TAB> library
//   value <TAB> registry <TAB> root key <TAB> subtree <TAB> name <TAB> text
//
// "registry" and "root key" are the platform's numbers. In every field "\t", "\n" and "\\" stand
// for TAB, LF and the backslash.
#ifndef ORVA_TOOLS_ORVA_HOST_REGISTRY_FILE_H_
#define ORVA_TOOLS_ORVA_HOST_REGISTRY_FILE_H_

#include <string>
#include <vector>

#include "platform/registry.h"

namespace orva {

struct ComponentRecord {
  nsCID class_id;
  std::string description;
  std::string contract_id;
  std::string library;  // path
};

struct ValueRecord {
  nsWellKnownRegistry registry;
  nsRegistryKey root;
  std::string subtree;
  std::string name;
  std::string text;
};

struct RegistryData {
  std::vector<ComponentRecord> components;
  std::vector<ValueRecord> values;
};

// The whole file as text.
std::string registry_text(const RegistryData& data);

// Reads what registry_text wrote. False, with the reason in `error`, when a line is damaged.
bool parse_registry(const std::string& text, RegistryData* data, std::string* error);

// Reads the file `path`; one that does not exist is empty. False with the reason in `error`.
bool load_registry(const std::string& path, RegistryData* data, std::string* error);

// Writes the file `path`. False with the reason in `error`.
bool save_registry(const std::string& path, const RegistryData& data, std::string* error);

}  // namespace orva

#endif  // ORVA_TOOLS_ORVA_HOST_REGISTRY_FILE_H_
