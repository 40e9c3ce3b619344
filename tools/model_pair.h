// A model group and the table of its charset names, which only make sense together.
#ifndef ORVA_TOOLS_MODEL_PAIR_H_
#define ORVA_TOOLS_MODEL_PAIR_H_

#include <string>
#include <string_view>
#include <vector>

#include "lib/mgroup/lid_mgroup.h"

namespace orva {

inline constexpr char kGroupFile[] = "Model.grp";
inline constexpr char kNamesFile[] = "Model.stc";

// Sixteen hexadecimal digits that stand for the contents of both files: 64-bit FNV-1a over the
// group, its length as eight bytes (little-endian), and the names. It guards against mixing up
// files, not against who wants to deceive.
std::string pair_fingerprint(std::string_view group, std::string_view names);

// Why the names cannot be those of the group; empty when they can: there are as many names as
// models, and none names another charset than its model's name does.
std::string pair_defect(const CLidMGroup& group, const std::vector<std::string>& names);

}  // namespace orva

#endif  // ORVA_TOOLS_MODEL_PAIR_H_
