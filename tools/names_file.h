// Writing "Model.stc", the table of charset names that lib/api/model_names.h reads.
#ifndef ORVA_TOOLS_NAMES_FILE_H_
#define ORVA_TOOLS_NAMES_FILE_H_

#include <string>
#include <vector>

namespace orva {

// Writes the names in order. False after reporting why not.
bool write_model_names(const std::string& path, const std::vector<std::string>& names);

}  // namespace orva

#endif  // ORVA_TOOLS_NAMES_FILE_H_
