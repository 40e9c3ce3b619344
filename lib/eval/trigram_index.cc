#include "lib/eval/trigram_index.h"

#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"

namespace orva {
namespace {

constexpr int kNbPairs = 65536;
constexpr int kMaxStates = 65536;  // what a 16-bit number can name
constexpr int16_t kNotReached = -2;
constexpr int16_t kRootLast = -1;

}  // namespace

bool TrigramIndex::build(const CLidMGroup& group) {
  if (group.nb_istates > kMaxStates) return false;
  node_of_pair_.assign(kNbPairs, 0);
  nodes_.assign(1, Node{});
  node_state_.assign(1, 0);
  state_last_.assign(static_cast<size_t>(group.nb_istates), kNotReached);
  state_last_[0] = kRootLast;
  leaf_pair_.assign(static_cast<size_t>(group.lstates_tsize) + 1, 0);
  for (int a = 0; a < kNbBytes; ++a) {
    const int state = group.child(0, static_cast<unsigned char>(a));
    state_of_byte_[a] = state;
    if (state == 0) continue;
    if (state_last_[static_cast<size_t>(state)] != kNotReached) return false;
    state_last_[static_cast<size_t>(state)] = static_cast<int16_t>(a);
  }
  std::vector<bool> leaf_seen(leaf_pair_.size(), false);
  for (int a = 0; a < kNbBytes; ++a) {
    if (state_of_byte_[a] == 0) continue;
    unsigned char buffer[kNbBytes];
    int count = 0;
    int offset = 0;
    const unsigned char* bytes =
        group.istate_get_chrs_and_offset(state_of_byte_[a], buffer, &count, &offset);
    for (int k = 0; k < count; ++k) {
      const int state = group.child(state_of_byte_[a], bytes[k]);
      if (!add_pair(group, a, bytes[k], state, &leaf_seen)) return false;
    }
  }
  return check_default_successors(group);
}

// Adds the node of the pair a b, whose state is `state`.
bool TrigramIndex::add_pair(const CLidMGroup& group, int a, int b, int state,
                            std::vector<bool>* leaf_seen) {
  if (state == 0) return true;
  if (state_last_[static_cast<size_t>(state)] != kNotReached) return false;
  state_last_[static_cast<size_t>(state)] = static_cast<int16_t>(b);
  unsigned char buffer[kNbBytes];
  int count = 0;
  int offset = 0;
  const unsigned char* bytes = group.istate_get_chrs_and_offset(state, buffer, &count, &offset);
  if (count == 0) return false;
  Node node = {};
  for (int k = 0; k < count; ++k) {
    const int next = group.child(state, bytes[k]);
    // Leaves follow each other in the order of their bytes.
    if (next < group.nb_istates || next != offset + k) return false;
    const int leaf = next - group.nb_istates;
    const auto id = static_cast<size_t>(leaf) + 1;
    if ((*leaf_seen)[id]) return false;
    (*leaf_seen)[id] = true;
    leaf_pair_[id] = static_cast<uint16_t>(b << 8 | bytes[k]);
    const int word = bytes[k] >> 6;
    if (node.bits[word] == 0) node.first[word] = static_cast<uint32_t>(id);
    node.bits[word] |= uint64_t{1} << (bytes[k] & 63);
  }
  node_of_pair_[static_cast<size_t>(a << 8 | b)] = static_cast<uint16_t>(nodes_.size());
  nodes_.push_back(node);
  node_state_.push_back(static_cast<uint16_t>(state));
  return true;
}

// After a leaf the walk must go on from the state of the trigram's last two bytes.
bool TrigramIndex::check_default_successors(const CLidMGroup& group) const {
  for (const Node& node : nodes_) {
    for (int word = 0; word < 4; ++word) {
      const auto count = static_cast<uint32_t>(__builtin_popcountll(node.bits[word]));
      for (uint32_t id = node.first[word]; id < node.first[word] + count; ++id) {
        if (group.def_so[id - 1] != state_after(leaf_pair_[id])) return false;
      }
    }
  }
  return true;
}

bool TrigramIndex::is_consistent(int state, int last) const {
  const int16_t state_last = state_last_[static_cast<size_t>(state)];
  if (state_last == kRootLast) return state_of_byte_[last] == 0;
  return state_last == last;
}

}  // namespace orva
