// Steps of compiling a group that making one and changing one have in common. Each reports what is
// wrong before it returns false.
#ifndef ORVA_TOOLS_GROUP_STEPS_H_
#define ORVA_TOOLS_GROUP_STEPS_H_

#include <set>
#include <string>
#include <vector>

#include "lib/mgroup/lid_mgroup.h"
#include "tools/commands.h"

namespace orva {

inline constexpr size_t kMaxModels = 199;
inline constexpr int kMinForDirect = 128;

// The models of a group: paths, file names and model names in order.
struct ModelList {
  std::vector<std::string> paths;
  std::vector<std::string> files;
  std::vector<std::string> names;
};

// Adds a model file; `seen` holds the names that are taken.
bool add_model(const std::string& path, ModelList* list, std::set<std::string>* seen);

// Looks at each model file from `first` on for itself. False when one cannot be loaded or has other
// switches than `switches`; without these, than the first one.
bool check_models(const ModelList& list, size_t first, const std::string* switches);

// Compiles the models; `sets` names the fact set of each.
bool compile_models(const GroupOptions& options, ModelList* list, std::vector<int>* sets,
                    int min_for_direct, CLidMGroup* group);

// Reports the limits of the format that a group exceeds. False when it may not be written.
bool within_limits(const CLidMGroup& group, const GroupOptions& options);

// Writes the group, reads it back, and gives it its name.
bool write_group(const CLidMGroup& group, const std::string& path);

// One line about a group that was written.
void print_summary(const CLidMGroup& group, const std::string& path);

}  // namespace orva

#endif  // ORVA_TOOLS_GROUP_STEPS_H_
