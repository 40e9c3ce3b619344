// TrigramIndex: the leaf of a trigram found from its three bytes alone.
//
// In a built group the automaton is a trie of trigrams, and the state after two bytes depends on
// these two bytes only. Look-ups then need not wait for each other, as the steps of a walk must. A
// file may hold an automaton that is no such trie; build proves it or refuses.
//
//   orva::TrigramIndex index;
//   if (index.build(group)) index.find(trigrams, n, leaves);
//
// A pair of bytes leads to a node: a bitmap of the bytes that continue it, whose leaves have
// consecutive numbers, so that a leaf's number is that of the node's first plus the rank of its
// byte.
//
// Ownership:  its tables, outside the accounted memory.
#ifndef ORVA_LIB_EVAL_TRIGRAM_INDEX_H_
#define ORVA_LIB_EVAL_TRIGRAM_INDEX_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lib/eval/trigram_numbers.h"

class CLidMGroup;

namespace orva {

class TrigramIndex {
 public:
  // Identifiers of leaves are their numbers plus one; 0 stands for no leaf.
  static constexpr uint32_t kNone = 0;

  static constexpr size_t kMostFound = 64;  // at once

  // False when the automaton is not a trie of trigrams; the index is then unusable.
  bool build(const CLidMGroup& group);

  // Stores the leaves of n <= kMostFound trigrams.
  void find(const Trigram* trigrams, size_t n, uint32_t* leaves) const {
    find_(*this, trigrams, n, leaves);
  }
  // Counts bits as machines do that cannot count them at once.
  void use_plain_bits() { find_ = find_plain; }

  // The walk's state after two bytes, the first one in the upper 8 bits of `pair`.
  int state_after(unsigned pair) const {
    const int node = node_of_pair_[swapped(pair)];
    return node != 0 ? node_state_[static_cast<size_t>(node)] : state_of_byte_[pair & 0xFF];
  }

 private:
  struct alignas(64) Node {
    uint64_t bits[4];    // bytes that continue the pair
    uint32_t before[4];  // leaves before those of each word of bits
  };
  using Find = void (*)(const TrigramIndex& index, const Trigram* trigrams, size_t n,
                        uint32_t* leaves);

  // What is known of the automaton while it is examined.
  struct Proof {
    std::vector<bool> state_seen;
    std::vector<bool> leaf_seen;
    std::vector<uint16_t> pair_of_node;
  };

  static unsigned swapped(unsigned pair) { return (pair & 0xFF) << 8 | pair >> 8; }
  void find_any(const Trigram* trigrams, size_t n, uint32_t* leaves) const;
  static void find_plain(const TrigramIndex& index, const Trigram* trigrams, size_t n,
                         uint32_t* leaves);
  static void find_popcnt(const TrigramIndex& index, const Trigram* trigrams, size_t n,
                          uint32_t* leaves);
  bool add_pair(const CLidMGroup& group, unsigned pair, int state, Proof* proof);
  bool check_default_successors(const CLidMGroup& group, const Proof& proof) const;

  // By pair with its first byte in the low 8 bits; 0 for one that begins no trigram.
  std::vector<uint16_t> node_of_pair_;
  std::vector<Node> nodes_;  // node 0 has no leaves
  std::vector<uint16_t> node_state_;
  int state_of_byte_[256];
  Find find_ = __builtin_cpu_supports("popcnt") != 0 ? find_popcnt : find_plain;
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_TRIGRAM_INDEX_H_
