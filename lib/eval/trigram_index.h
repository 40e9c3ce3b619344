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
// Ownership: its tables, outside the accounted memory.
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

  size_t nb_ids() const { return leaf_pair_.size(); }

  // The leaf of the trigram a b c. `Count` counts the set bits of a word.
  template <typename Count>
  uint32_t find(unsigned pair, unsigned char c, Count count) const {
    const Node& node = nodes_[node_of_pair_[pair]];
    const uint64_t word = node.bits[c >> 6];
    const uint64_t bit = uint64_t{1} << (c & 63);
    const uint32_t id = node.first[c >> 6] + count(word & (bit - 1));
    return (word & bit) != 0 ? id : kNone;
  }

  // The last byte of a leaf's trigram.
  unsigned char leaf_byte(uint32_t id) const {
    return static_cast<unsigned char>(leaf_pair_[id] & 0xFF);
  }

  // The walk's state after two bytes.
  int state_after(unsigned pair) const {
    const int node = node_of_pair_[pair];
    return node != 0 ? node_state_[static_cast<size_t>(node)] : state_of_byte_[pair & 0xFF];
  }

  // Whether a walk can stand in `state` after the byte `last`.
  bool is_consistent(int state, int last) const;

 private:
  bool add_pair(const CLidMGroup& group, int a, int b, int state, std::vector<bool>* leaf_seen);
  bool check_default_successors(const CLidMGroup& group) const;

  std::vector<uint16_t> node_of_pair_;  // 65536; 0 for a pair that begins no trigram
  std::vector<Node> nodes_;             // node 0 has no leaves
  std::vector<uint16_t> node_state_;
  std::vector<int16_t> state_last_;  // last byte of each internal state, -1 for the root
  int state_of_byte_[256];
  std::vector<uint16_t> leaf_pair_;  // by identifier: second and third byte of the trigram
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_TRIGRAM_INDEX_H_
