// TrigramIndex: the leaf of a trigram found from its three bytes alone.
//
// In a built group the automaton is a trie of trigrams, and the state after two bytes depends on
// these two bytes only. Look-ups then need not wait for each other, as the steps of a walk must. A
// file may hold an automaton that is no such trie; build proves it or refuses.
//
//   orva::TrigramIndex index;
//   if (index.build(group)) uint32_t id = index.find(a, b, c);
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

class CLidMGroup;

namespace orva {

class TrigramIndex {
 public:
  // Identifiers of leaves are their numbers plus one; 0 stands for no leaf.
  static constexpr uint32_t kNone = 0;

  struct alignas(64) Node {
    uint64_t bits[4];   // bytes that continue the pair
    uint32_t first[4];  // identifier of the first leaf of each word of bits
  };

  // False when the automaton is not a trie of trigrams; the index is then unusable.
  bool build(const CLidMGroup& group);

  // The leaf of the trigram that continues a pair of bytes by `c`.
  uint32_t find(unsigned pair, unsigned char c) const;

  // The walk's state after two bytes.
  int state_after(unsigned pair) const {
    const int node = node_of_pair_[pair];
    return node != 0 ? node_state_[static_cast<size_t>(node)] : state_of_byte_[pair & 0xFF];
  }

 private:
  // What is known of the automaton while it is examined.
  struct Proof {
    std::vector<bool> state_seen;
    std::vector<bool> leaf_seen;
    std::vector<uint16_t> pair_of_node;
  };

  bool add_pair(const CLidMGroup& group, unsigned pair, int state, Proof* proof);
  bool check_default_successors(const CLidMGroup& group, const Proof& proof) const;

  std::vector<uint16_t> node_of_pair_;  // 65536; 0 for a pair that begins no trigram
  std::vector<Node> nodes_;             // node 0 has no leaves
  std::vector<uint16_t> node_state_;
  int state_of_byte_[256];
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_TRIGRAM_INDEX_H_
