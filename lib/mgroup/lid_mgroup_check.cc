// What a group must satisfy so that no walk over it leaves an array. A built group always does; a
// file may hold anything.
#include <algorithm>

#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"

namespace {

using orva::kNbBytes;

class GroupChecker {
 public:
  explicit GroupChecker(const CLidMGroup& group)
      : group_(group),
        nb_indices_(group.nb_models + group.models_part.nb_facts),
        nb_leaves_(std::min(group.lstates_tsize, group.def_so_tsize)) {}

  std::string defect() {
    // A group is sound as a rule, which a pass over its arrays tells.
    std::string found = states_are_sound() ? std::string() : check_states();
    if (found.empty()) found = check_depth();
    if (found.empty()) found = check_unigrams();
    return found;
  }

 private:
  // Reports `what` of item `i`.
  static std::string at(const char* item, int i, const char* what) {
    return std::string(item) + " " + std::to_string(i) + " " + what;
  }

  // True only if check_states() finds nothing. Leaves and values that nothing refers to count, too.
  bool states_are_sound() const {
    const int64_t nb_nodes = int64_t{group_.nb_istates} + nb_leaves_;
    bool sound = values_are_sound() && leaves_are_sound();
    for (int i = 0; i < group_.nb_istates && sound; ++i) {
      const CLidMGState& state = group_.istates[i];
      const int first = orva::state_first(state.info);
      const int count = orva::state_count(state.info);
      if (first == 0) {
        for (int c = 0; c < kNbBytes; ++c) {
          sound &= state.ref.dnxts[c] >= 0 && state.ref.dnxts[c] < nb_nodes;
        }
        continue;
      }
      sound = int64_t{first} + count <= nb_nodes;
      for (int k = 1; k < count; ++k) sound &= state.ref.chrs[k] > state.ref.chrs[k - 1];
    }
    return sound;
  }

  bool leaves_are_sound() const {
    bool sound = true;
    for (int leaf = 0; leaf < nb_leaves_; ++leaf) {
      const int first = orva::leaf_first(group_.lstates[leaf]);
      const int count = std::max(orva::leaf_count(group_.lstates[leaf]), 0);
      sound &= group_.def_so[leaf] < group_.nb_istates;
      sound &= first >= 0 && int64_t{first} + count <= group_.lstates_vals_tsize;
    }
    return sound;
  }

  bool values_are_sound() const {
    int most = 0;
    for (int v = 0; v < group_.lstates_vals_tsize; ++v) {
      most = std::max(most, orva::value_index(group_.lstates_vals[v]));
    }
    return most < nb_indices_;
  }

  std::string check_states() {
    std::string found;
    for (int i = 0; i < group_.nb_istates && found.empty(); ++i) {
      const CLidMGState& state = group_.istates[i];
      const int first = orva::state_first(state.info);
      found = first != 0 ? check_sparse(i, first) : check_direct(i);
    }
    return found;
  }

  std::string check_sparse(int i, int first) {
    const CLidMGState& state = group_.istates[i];
    const int count = orva::state_count(state.info);
    for (int k = 0; k < count; ++k) {
      if (k > 0 && state.ref.chrs[k] <= state.ref.chrs[k - 1]) {
        return at("internal state", i, "has bytes that do not ascend");
      }
      std::string found = check_successor(i, int64_t{first} + k);
      if (!found.empty()) return found;
    }
    return {};
  }

  std::string check_direct(int i) {
    for (int c = 0; c < kNbBytes; ++c) {
      std::string found = check_successor(i, group_.istates[i].ref.dnxts[c]);
      if (!found.empty()) return found;
    }
    return {};
  }

  std::string check_successor(int i, int64_t next) {
    if (next < 0 || next >= int64_t{group_.nb_istates} + nb_leaves_) {
      return at("internal state", i, "has a successor that does not exist");
    }
    return next < group_.nb_istates ? std::string()
                                    : check_leaf(static_cast<int>(next) - group_.nb_istates);
  }

  std::string check_leaf(int leaf) {
    if (group_.def_so[leaf] >= group_.nb_istates) {
      return at("leaf", leaf, "goes on from a state that does not exist");
    }
    const int first = orva::leaf_first(group_.lstates[leaf]);
    const int count = orva::leaf_count(group_.lstates[leaf]);
    if (count <= 0) return {};  // credits nothing
    if (first < 0 || int64_t{first} + count > group_.lstates_vals_tsize) {
      return at("leaf", leaf, "has values outside their table");
    }
    for (int v = first; v < first + count; ++v) {
      if (orva::value_index(group_.lstates_vals[v]) >= nb_indices_) {
        return at("value", v, "is of a model or fact set that does not exist");
      }
    }
    return {};
  }

  // The walk goes back to states of depth 1 and 2, which must not be leaves.
  std::string check_depth() {
    for (int c1 = 0; c1 < kNbBytes; ++c1) {
      const int s1 = group_.child(0, static_cast<unsigned char>(c1));
      if (s1 == 0) continue;
      if (s1 >= group_.nb_istates) return at("root child by byte", c1, "is a leaf");
      for (int c2 = 0; c2 < kNbBytes; ++c2) {
        if (group_.child(s1, static_cast<unsigned char>(c2)) >= group_.nb_istates) {
          return at("child of the root child by byte", c1, "is a leaf");
        }
      }
    }
    return {};
  }

  std::string check_unigrams() {
    const CUniChrMG& part = group_.unigram_part;
    if (part.nb_models != group_.nb_models || part.nb_facts != group_.models_part.nb_facts) {
      return "unigram section is for another number of models or fact sets";
    }
    for (int b = 0; b < kNbBytes; ++b) {
      const int first = orva::unigram_first(part.uch_lps[b]);
      const int count = orva::unigram_count(part.uch_lps[b]);
      if (count > 0 && first + count > part.uch_lps_buff_tsize) {
        return at("byte", b, "has unigram pairs outside their table");
      }
      for (int p = first; p < first + count; ++p) {
        if (part.uch_lps_buff[p].index >= nb_indices_) {
          return at("unigram pair", p, "is of a model or fact set that does not exist");
        }
      }
    }
    return {};
  }

  const CLidMGroup& group_;
  const int nb_indices_;
  const int nb_leaves_;
};

}  // namespace

namespace orva {

std::string group_defect(const CLidMGroup& group) { return GroupChecker(group).defect(); }

}  // namespace orva
