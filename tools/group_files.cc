#include "tools/group_files.h"

#include <cerrno>
#include <cstring>
#include <memory>

#include "lib/mgroup/group_format.h"
#include "lib/util/accounting.h"

namespace orva {
namespace {

// What one byte can count with a sign; what 16, 23 and 8 bits can number.
constexpr int kMaxLeafValues = 127;
constexpr int kMaxInternalStates = 65536;
constexpr int kMaxValues = 8388607;
constexpr int kMaxModelsAndSets = 255;

struct FileCloser {
  void operator()(FILE* stream) const { fclose(stream); }
};

// The bytes that lead to leaf `leaf`, as hexadecimal text; "??????" when no path does.
std::string path_to_leaf(const CLidMGroup& group, int leaf) {
  for (int c1 = 0; c1 < kNbBytes; ++c1) {
    const int s1 = group.child(0, static_cast<unsigned char>(c1));
    for (int c2 = 0; s1 != 0 && c2 < kNbBytes; ++c2) {
      const int s2 = group.child(s1, static_cast<unsigned char>(c2));
      for (int c3 = 0; s2 != 0 && c3 < kNbBytes; ++c3) {
        if (group.child(s2, static_cast<unsigned char>(c3)) != group.nb_istates + leaf) continue;
        char text[7];
        snprintf(text, sizeof text, "%02x%02x%02x", static_cast<unsigned>(c1 & 0xFF),
                 static_cast<unsigned>(c2 & 0xFF), static_cast<unsigned>(c3 & 0xFF));
        return text;
      }
    }
  }
  return "??????";
}

std::string leaf_limit(const CLidMGroup& group) {
  int nb_over = 0;
  int worst = -1;
  int worst_count = kMaxLeafValues;
  for (int leaf = 0; leaf < group.lstates_tsize; ++leaf) {
    const int count = leaf_count_unsigned(group.lstates[leaf]);
    if (count <= kMaxLeafValues) continue;
    ++nb_over;
    if (count > worst_count) {
      worst = leaf;
      worst_count = count;
    }
  }
  if (worst < 0) return {};
  return std::to_string(nb_over) +
         " trigrams have more than 127 values and count for no model; "
         "the worst, " +
         path_to_leaf(group, worst) + ", has " + std::to_string(worst_count) +
         " (fact sets let models share values)";
}

void add_above(const char* what, int value, int limit, std::vector<std::string>* found) {
  if (value <= limit) return;
  found->push_back(std::to_string(value) + " " + what + ", more than " + std::to_string(limit));
}

}  // namespace

std::string load_group(const std::string& path, CLidMGroup* group) {
  const std::unique_ptr<FILE, FileCloser> stream(fopen(path.c_str(), "rb"));
  if (stream == nullptr) return strerror(errno);
  _MallocChkExitOnErr = 0;
  std::string why;
  return group->load(stream.get(), &why) == kGroupOk ? std::string()
                                                     : "no valid model group: " + why;
}

std::string refusal_of_group(const std::string& path) {
  CLidMGroup group;
  const std::string why = load_group(path, &group);
  return why.empty() ? "out of memory" : why;
}

std::vector<std::string> exceeded_limits(const CLidMGroup& group) {
  std::vector<std::string> found;
  const std::string leaves = leaf_limit(group);
  if (!leaves.empty()) found.push_back(leaves);
  add_above("internal states", group.nb_istates, kMaxInternalStates, &found);
  add_above("values", group.lstates_vals_tsize, kMaxValues, &found);
  add_above("models plus fact sets", group.nb_models + group.models_part.nb_facts,
            kMaxModelsAndSets, &found);
  return found;
}

}  // namespace orva
