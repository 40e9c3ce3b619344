// TCTrie<C>: a trie over short paths, whose nodes keep their children in sparse tables.
//
//   TCTrie<unsigned char> trie;
//   TrieNodeSeg* leaf = trie.add_path(bytes, 3);
//   if (leaf->word < 0) leaf->word = nb_words;      // the path was new
//
// Node 0 is the root. A child is a TrieNodeSeg in its parent's table, with the number of its own
// node (-1 while it has no children) and its word index (-1 where no path ends).
//
// Life cycle: construct (the root exists), add_path, clean and init0 to start over, destroy.
// Ownership:  its nodes. A TrieNodeSeg's address is valid until the next add_path.
// Results:    add_path throws where it cannot grow (tc_alloc.h).
#ifndef ORVA_LIB_TC_TC_TRIE_H_
#define ORVA_LIB_TC_TC_TRIE_H_

#include <cstdint>

#include "lib/tc/sparse_table.h"
#include "lib/tc/tc_expnd_table.h"

struct TrieNodeSeg {
  int32_t node;  // the child's node, -1 when it has no children
  int32_t word;  // the word that ends here, -1 when none
};
static_assert(sizeof(TrieNodeSeg) == 8);

template <typename C>
class TCTrie {
 public:
  using Node = TCSparseTable<C, TrieNodeSeg>;
  // One child of a node, for sorting.
  struct SegSortStr {
    C chr;
    TrieNodeSeg seg;
  };
  static bool SegSortStr_lower(const SegSortStr& a, const SegSortStr& b) { return a.chr < b.chr; }

  TCTrie() { init0(); }
  ~TCTrie() { clean(); }
  TCTrie(const TCTrie&) = delete;
  TCTrie& operator=(const TCTrie&) = delete;

  // Makes the root, alone. REQUIRES: new, or cleaned.
  void init0();
  // Releases what the nodes hold; init0 must follow.
  void clean();

  // Walks from the root along `path` (`len` at least 1), adding what is missing; returns the last
  // child, whose `word` is -1 when it is new.
  TrieNodeSeg* add_path(const C* path, int len);

  // Stores the children of `node` in `out`, in ascending order, and returns their number.
  int get_children(int node, TCExpndTable<SegSortStr>& out) const;

  int nb_nodes() const { return nb_nodes_; }

 private:
  int add_node();

  TCExpndTable<Node> nodes_;
  int nb_nodes_ = 0;
};

extern template class TCTrie<unsigned char>;

#endif  // ORVA_LIB_TC_TC_TRIE_H_
