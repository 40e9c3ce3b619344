// TCTrieFsaEnum<C>: visits a trie breadth-first, as the numbering of an automaton wants it.
//
//   TCTrieFsaEnum<unsigned char> states;
//   states.init0(&trie);
//   int nb = 0, word = -1;
//   unsigned char chrs[256];
//   while (states.next(&nb, chrs, &word)) ...       // nb children, their bytes ascending
//
// Life cycle: init0 starts (again) at the root; next until false; clean.
// Ownership:  its queue; the trie is the caller's and must not change meanwhile.
// Results:    next throws where the queue cannot grow (tc_alloc.h).
#ifndef ORVA_LIB_TC_TRIE_FSA_ENUM_H_
#define ORVA_LIB_TC_TRIE_FSA_ENUM_H_

#include "lib/tc/tc_expnd_table.h"
#include "lib/tc/tc_trie.h"

template <typename C>
class TCTrieFsaEnum {
 public:
  static constexpr int kBlockSize = 4096;

  TCTrieFsaEnum() = default;
  ~TCTrieFsaEnum() { clean(); }
  TCTrieFsaEnum(const TCTrieFsaEnum&) = delete;
  TCTrieFsaEnum& operator=(const TCTrieFsaEnum&) = delete;

  void init0(const TCTrie<C>* trie);
  // The next state: its number of children, their values in ascending order (room for all of them
  // is needed), and its word, -1 where no path ends. False after the last.
  bool next(int* nb_chrs, C* chrs, int* word);
  void clean();

 private:
  struct Entry {
    int node;
    int word;
    int depth;
  };
  struct Block {
    Entry entries[kBlockSize];
    Block* next;
  };
  static constexpr int kCountedBlock = kBlockSize * static_cast<int>(sizeof(Entry)) + 4;

  void push(const Entry& entry);
  void pop_block();

  const TCTrie<C>* trie_ = nullptr;
  Block* first_ = nullptr;  // the block being read
  Block* last_ = nullptr;   // the block being written
  int read_at_ = 0;
  int write_at_ = 0;
  TCExpndTable<typename TCTrie<C>::SegSortStr> children_;
};

extern template class TCTrieFsaEnum<unsigned char>;

#endif  // ORVA_LIB_TC_TRIE_FSA_ENUM_H_
