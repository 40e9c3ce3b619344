// Model group files, seen from the program.
#ifndef ORVA_TOOLS_GROUP_FILES_H_
#define ORVA_TOOLS_GROUP_FILES_H_

#include <string>
#include <vector>

#include "lib/mgroup/lid_mgroup.h"

namespace orva {

// Loads `path`; empty when that worked, else what is wrong with it and where.
std::string load_group(const std::string& path, CLidMGroup* group);

// What load_group says of a file that the library refused.
std::string refusal_of_group(const std::string& path);

// The limits of the format that a group exceeds, in words, each with its worst case. A group within
// them has none.
std::vector<std::string> exceeded_limits(const CLidMGroup& group);

}  // namespace orva

#endif  // ORVA_TOOLS_GROUP_FILES_H_
