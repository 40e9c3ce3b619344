#include "lib/eval/trigram_index.h"

#include <bit>

#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"

namespace orva {
namespace {

constexpr int kNbPairs = 65536;
constexpr int kMaxStates = 65536;  // what a 16-bit number can name

}  // namespace

bool TrigramIndex::build(const CLidMGroup& group) {
  if (group.nb_istates > kMaxStates) return false;
  node_of_pair_.assign(kNbPairs, 0);
  nodes_.assign(1, Node{});
  node_state_.assign(1, 0);
  Proof proof;
  proof.state_seen.assign(static_cast<size_t>(group.nb_istates), false);
  proof.state_seen[0] = true;
  proof.leaf_seen.assign(static_cast<size_t>(group.lstates_tsize), false);
  proof.pair_of_node.assign(1, 0);
  for (int a = 0; a < kNbBytes; ++a) {
    const int state = group.child(0, static_cast<unsigned char>(a));
    state_of_byte_[a] = state;
    if (state == 0) continue;
    if (state >= group.nb_istates || proof.state_seen[static_cast<size_t>(state)]) return false;
    proof.state_seen[static_cast<size_t>(state)] = true;
  }
  for (int a = 0; a < kNbBytes; ++a) {
    if (state_of_byte_[a] == 0) continue;
    unsigned char buffer[kNbBytes];
    int count = 0;
    int offset = 0;
    const unsigned char* bytes =
        group.istate_get_chrs_and_offset(state_of_byte_[a], buffer, &count, &offset);
    for (int k = 0; k < count; ++k) {
      const int state = group.child(state_of_byte_[a], bytes[k]);
      const auto pair = static_cast<unsigned>(a << 8 | bytes[k]);
      if (!add_pair(group, pair, state, &proof)) return false;
    }
  }
  return check_default_successors(group, proof);
}

// Adds the node of a pair, whose state is `state`.
bool TrigramIndex::add_pair(const CLidMGroup& group, unsigned pair, int state, Proof* proof) {
  if (state == 0) return true;
  if (state >= group.nb_istates || proof->state_seen[static_cast<size_t>(state)]) return false;
  proof->state_seen[static_cast<size_t>(state)] = true;
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
    const auto leaf = static_cast<size_t>(next - group.nb_istates);
    if (proof->leaf_seen[leaf]) return false;
    proof->leaf_seen[leaf] = true;
    const int word = bytes[k] >> 6;
    if (node.bits[word] == 0) node.before[word] = static_cast<uint32_t>(leaf);
    node.bits[word] |= uint64_t{1} << (bytes[k] & 63);
  }
  node_of_pair_[swapped(pair)] = static_cast<uint16_t>(nodes_.size());
  nodes_.push_back(node);
  node_state_.push_back(static_cast<uint16_t>(state));
  proof->pair_of_node.push_back(static_cast<uint16_t>(pair));
  return true;
}

// After a leaf the walk must go on from the state of the trigram's last two bytes.
bool TrigramIndex::check_default_successors(const CLidMGroup& group, const Proof& proof) const {
  for (size_t n = 1; n < nodes_.size(); ++n) {
    const unsigned first_of_next = (proof.pair_of_node[n] & 0xFFU) << 8;
    for (unsigned word = 0; word < 4; ++word) {
      uint32_t leaf = nodes_[n].before[word];
      for (uint64_t left = nodes_[n].bits[word]; left != 0; left &= left - 1, ++leaf) {
        const unsigned last = word * 64 + static_cast<unsigned>(std::countr_zero(left));
        if (group.def_so[leaf] != state_after(first_of_next | last)) return false;
      }
    }
  }
  return true;
}

// In two steps, so that the look-ups of one step need not wait for each other.
__attribute__((always_inline)) inline void TrigramIndex::find_any(const Trigram* trigrams, size_t n,
                                                                  uint32_t* leaves) const {
  const Node* nodes[kMostFound];
  const uint16_t* const node_of_pair = node_of_pair_.data();
  const Node* const first = nodes_.data();
  for (size_t i = 0; i < n; ++i) {
    nodes[i] = first + node_of_pair[trigrams[i].pair()];
    __builtin_prefetch(nodes[i]);
  }
  for (size_t i = 0; i < n; ++i) {
    const unsigned char c = trigrams[i].last_byte();
    // The bits up to that of `c`, which is the highest.
    const uint64_t bits = nodes[i]->bits[c >> 6] << (~c & 63);
    const uint32_t is_there = 0 - static_cast<uint32_t>(bits >> 63);
    const auto rank = static_cast<uint32_t>(__builtin_popcountll(bits));
    leaves[i] = (nodes[i]->before[c >> 6] + rank) & is_there;
  }
}

void TrigramIndex::find_plain(const TrigramIndex& index, const Trigram* trigrams, size_t n,
                              uint32_t* leaves) {
  index.find_any(trigrams, n, leaves);
}

__attribute__((target("popcnt"))) void TrigramIndex::find_popcnt(const TrigramIndex& index,
                                                                 const Trigram* trigrams, size_t n,
                                                                 uint32_t* leaves) {
  index.find_any(trigrams, n, leaves);
}

}  // namespace orva
