// TCSparseTable<K,V>: a map that is mostly tiny: one pair inline, up to four in a list, then a
// table.
//
//   TCSparseTable<int, unsigned> map;
//   int added = 0;
//   *map.find_or_add(3, &added) = 9;
//   map.clean();
//
//   mode 0: 0 or 1 pair, inline
//   mode 1: 2 to 4 pairs in one block, searched in order
//   mode 2: 5 or more, a TCIntHTable
// The first word holds the mode in its top two bits and the number of pairs below them.
//
// Life cycle: construct empty (all zeros are an empty map too), find_or_add, clean. Nothing is
//             released on destruction: maps live in tables that are moved as raw memory.
// Ownership:  the list or table behind it, given back by clean.
#ifndef ORVA_LIB_TC_SPARSE_TABLE_H_
#define ORVA_LIB_TC_SPARSE_TABLE_H_

#include <cstdint>
#include <memory>
#include <type_traits>

#include "lib/tc/int_htable.h"
#include "lib/tc/tc_alloc.h"
#include "lib/util/accounting.h"

template <typename K, typename V>
class TCSparseTable {
 public:
  using Table = TCIntHTable<K, V>;
  struct Pair {
    K key;
    V val;
  };
  static_assert(std::is_trivially_copyable_v<Pair>);
  static constexpr int kListSize = 4;

  int mode() const { return static_cast<int>(word_ >> kModeShift); }
  int count() const { return static_cast<int>(word_ & kCountMask); }

  // The value of `key`; *found tells whether it is there. An absent key gives a value of no
  // meaning.
  V* get(K key, int* found);
  // The value of `key`, added when missing; an added value is the caller's to set.
  V* find_or_add(K key, int* added);
  // Keys and values in storage order; either array may be null.
  void get_contents(K* keys, V* vals) const;
  void clean();

 private:
  static constexpr unsigned kModeShift = 30;
  static constexpr uint32_t kCountMask = 0x3fffffffu;
  static constexpr int kListBytes = kListSize * static_cast<int>(sizeof(Pair));

  void set_word(unsigned mode, int count) {
    word_ = mode << kModeShift | static_cast<uint32_t>(count);
  }
  V* append(int at, K key, int* added) {
    store_.pairs[at].key = key;
    set_word(1, at + 1);
    *added = 1;
    return &store_.pairs[at].val;
  }
  void inline_to_list();
  void list_to_table();

  static V dummy_;

  uint32_t word_ = 0;
  union Store {
    Pair one;
    Pair* pairs;
    Table* table;
  } store_ = {};
};

// Where a pointer is no wider than a pair, the inline pair decides the size.
template <typename K, typename V>
struct orva::CountedSize<TCSparseTable<K, V>> {
  static constexpr int value = 4 + static_cast<int>(sizeof(typename TCSparseTable<K, V>::Pair));
};

template <typename K, typename V>
V TCSparseTable<K, V>::dummy_;

template <typename K, typename V>
V* TCSparseTable<K, V>::get(K key, int* found) {
  if (mode() == 2) {
    int ins_pos = 0;
    return &store_.table
                ->entries[static_cast<unsigned>(store_.table->find_pos(key, &ins_pos, found))]
                .val;
  }
  Pair* pairs = mode() == 0 ? &store_.one : store_.pairs;
  for (int i = 0; i < count(); ++i) {
    if (pairs[i].key == key) {
      *found = 1;
      return &pairs[i].val;
    }
  }
  *found = 0;
  return &dummy_;
}

template <typename K, typename V>
V* TCSparseTable<K, V>::find_or_add(K key, int* added) {
  if (mode() != 2) {
    int found = 0;
    V* val = get(key, &found);
    if (found != 0) {
      *added = 0;
      return val;
    }
  }
  if (mode() == 0 && count() == 0) {
    store_.one.key = key;
    set_word(0, 1);
    *added = 1;
    return &store_.one.val;
  }
  if (mode() == 0) inline_to_list();
  if (mode() == 1 && count() < kListSize) return append(count(), key, added);
  if (mode() == 1) list_to_table();
  V* val = store_.table->find_or_add(key, added);
  if (*added != 0) set_word(2, count() + 1);
  return val;
}

template <typename K, typename V>
void TCSparseTable<K, V>::inline_to_list() {
  auto* pairs = static_cast<Pair*>(orva::new_block(kListSize, sizeof(Pair), sizeof(Pair)));
  pairs[0] = store_.one;
  store_.pairs = pairs;
  set_word(1, 1);
}

template <typename K, typename V>
void TCSparseTable<K, V>::list_to_table() {
  auto table = std::make_unique<Table>();
  for (int i = 0; i < kListSize; ++i) {
    int added = 0;
    *table->find_or_add(store_.pairs[i].key, &added) = store_.pairs[i].val;
  }
  free_chk(store_.pairs, kListBytes);
  store_.table = table.release();
  set_word(2, kListSize);
}

template <typename K, typename V>
void TCSparseTable<K, V>::get_contents(K* keys, V* vals) const {
  if (mode() == 2) {
    store_.table->get_contents(keys, vals);
    return;
  }
  const Pair* pairs = mode() == 0 ? &store_.one : store_.pairs;
  for (int i = 0; i < count(); ++i) {
    if (keys != nullptr) keys[i] = pairs[i].key;
    if (vals != nullptr) vals[i] = pairs[i].val;
  }
}

template <typename K, typename V>
void TCSparseTable<K, V>::clean() {
  if (mode() == 1) free_chk(store_.pairs, kListBytes);
  if (mode() == 2) delete store_.table;
  word_ = 0;
}

extern template class TCSparseTable<int, unsigned>;

#endif  // ORVA_LIB_TC_SPARSE_TABLE_H_
