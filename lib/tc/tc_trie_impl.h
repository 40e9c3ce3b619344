// The operations of the trie and of its enumerator; included where their instances are made
// (tc_instances.cc).
#ifndef ORVA_LIB_TC_TC_TRIE_IMPL_H_
#define ORVA_LIB_TC_TC_TRIE_IMPL_H_

#include "lib/tc/expt_sort.h"
#include "lib/tc/tc_trie.h"
#include "lib/tc/trie_fsa_enum.h"

template <typename C>
void TCTrie<C>::init0() {
  nb_nodes_ = 0;
  add_node();
}

template <typename C>
void TCTrie<C>::clean() {
  for (int i = 0; i < nb_nodes_; ++i) nodes_[static_cast<unsigned>(i)].clean();
  nb_nodes_ = 0;
}

template <typename C>
int TCTrie<C>::add_node() {
  nodes_.expand(static_cast<unsigned>(nb_nodes_) + 1);
  nodes_[static_cast<unsigned>(nb_nodes_)] = Node();
  return nb_nodes_++;
}

template <typename C>
TrieNodeSeg* TCTrie<C>::add_path(const C* path, int len) {
  int node = 0;
  for (int i = 0;; ++i) {
    int added = 0;
    TrieNodeSeg* seg = nodes_[static_cast<unsigned>(node)].find_or_add(path[i], &added);
    if (added != 0) *seg = {-1, -1};
    if (i + 1 == len) return seg;
    // A new node may move the table of nodes, never what they point to; only an inline child lies
    // in the node itself, so it is looked up again.
    if (seg->node < 0) {
      const int child = add_node();
      nodes_[static_cast<unsigned>(node)].find_or_add(path[i], &added)->node = child;
      node = child;
    } else {
      node = seg->node;
    }
  }
}

template <typename C>
int TCTrie<C>::get_children(int node, TCExpndTable<SegSortStr>& out) const {
  if (node < 0) return 0;
  const Node& children = nodes_[static_cast<unsigned>(node)];
  C chrs[256];
  TrieNodeSeg segs[256];
  static_assert(sizeof(C) == 1, "a node has at most 256 children");
  const int count = children.count();
  children.get_contents(chrs, segs);
  out.expand(static_cast<unsigned>(count));
  for (int i = 0; i < count; ++i) out[static_cast<unsigned>(i)] = {chrs[i], segs[i]};
  if (count > 1) TCExpTSort<SegSortStr>(&out, &SegSortStr_lower).sort(0, count);
  return count;
}

template <typename C>
void TCTrieFsaEnum<C>::init0(const TCTrie<C>* trie) {
  clean();
  trie_ = trie;
  push({0, -1, 0});
}

template <typename C>
bool TCTrieFsaEnum<C>::next(int* nb_chrs, C* chrs, int* word) {
  if (first_ == nullptr || (first_ == last_ && read_at_ == write_at_)) return false;
  const Entry entry = first_->entries[read_at_++];
  const int count = trie_->get_children(entry.node, children_);
  for (int i = 0; i < count; ++i) {
    const auto& child = children_[static_cast<unsigned>(i)];
    chrs[i] = child.chr;
    push({child.seg.node, child.seg.word, entry.depth + 1});
  }
  *nb_chrs = count;
  *word = entry.word;
  if (read_at_ == kBlockSize) pop_block();
  return true;
}

template <typename C>
void TCTrieFsaEnum<C>::clean() {
  while (first_ != nullptr) pop_block();
  trie_ = nullptr;
}

template <typename C>
void TCTrieFsaEnum<C>::push(const Entry& entry) {
  if (last_ == nullptr || write_at_ == kBlockSize) {
    auto* block = static_cast<Block*>(orva::new_block(1, sizeof(Block), kCountedBlock));
    block->next = nullptr;
    (last_ == nullptr ? first_ : last_->next) = block;
    last_ = block;
    write_at_ = 0;
  }
  last_->entries[write_at_++] = entry;
}

template <typename C>
void TCTrieFsaEnum<C>::pop_block() {
  Block* next = first_->next;
  free_chk(first_, kCountedBlock);
  first_ = next;
  if (next == nullptr) last_ = nullptr;
  read_at_ = 0;
}

#endif  // ORVA_LIB_TC_TC_TRIE_IMPL_H_
