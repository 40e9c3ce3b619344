// TCIntHTable<K,V>: from a small integer key to a value, by open addressing.
//
//   TCIntHTable<int, unsigned> table;
//   int added = 0;
//   *table.find_or_add(42, &added) = 7;       // the value of a new key is the caller's to set
//   int pos = 0, found = 0;
//   unsigned value = table.entries[table.find_pos(42, &pos, &found)].val;
//
// The capacity is a power of two C, of which slots 0 to C - 2 are used. Which slots hold a key lies
// in bit tables, so a slot is key and value alone. The order of the slots shows in get_contents and
// follows from the probe sequence to the letter.
//
// Life cycle: construct, find_or_add; nothing removes a key.
// Ownership:  its slots and bit tables.
// Threads:    none; the probe counters are plain globals that all instances share.
#ifndef ORVA_LIB_TC_INT_HTABLE_H_
#define ORVA_LIB_TC_INT_HTABLE_H_

#include <cstdint>

#include "lib/tc/expnd_bool_table.h"
#include "lib/tc/tc_expnd_table.h"

extern int TCIntHTable_Iters;     // probes of all lookups
extern int TCIntHTable_MaxIters;  // most probes of one lookup
extern int TCIntHTable_Acces;     // lookups
extern int TCIntHTable_NbRehash;  // rehashes

// Says on standard error that there is no self-test.
void tc_intht_test();

namespace orva {
// Adds a lookup of `probes` probes to the counters, which wrap.
void count_lookup(int probes);
void count_rehash();
}  // namespace orva

template <typename K, typename V>
class TCIntHTable {
 public:
  struct Slot {
    K key;
    V val;
  };
  static constexpr int kFirstCapacity = 16;

  TCIntHTable() {
    entries.expand(kFirstCapacity);
    used.expand(kFirstCapacity);
    deleted.expand(kFirstCapacity);
  }

  // The slot where the probing for `key` ends; *found is non-zero when it holds the key, *ins_pos
  // is where the key would be put.
  int find_pos(K key, int* ins_pos, int* found) const;

  // The value of `key`, added when missing (*added is 1 then, else 0).
  V* find_or_add(K key, int* added);

  // Moves every key to a fresh table of `new_size` slots, a power of two.
  void rehash(int new_size);

  // Keys and values in slot order; either array may be null.
  void get_contents(K* keys, V* vals) const;

  TCExpndTable<Slot> entries;
  CExpndBoolTable used;
  CExpndBoolTable deleted;
  int nb_used = 0;
  int nb_deleted = 0;

 private:
  static constexpr uint32_t kKeyMix = 0xabcd1234u;
  static constexpr uint32_t kProbeMix = 0x1234abcdu;
  static constexpr int kLastMixedProbe = 100;

  int capacity() const { return static_cast<int>(entries.tsize); }

  // The slot after `pos` on the way of probe `i`: mixed at first, one by one later.
  static uint32_t next_pos(uint32_t pos, int i, uint32_t x, uint32_t modulus) {
    if (i > kLastMixedProbe) return (pos + 1) % modulus;
    const uint32_t t = (pos + static_cast<uint32_t>(i)) ^ kProbeMix;
    const uint32_t mixed = (t + 1) ^ (x >> ((t >> 3) & 15)) ^ (x >> ((t >> 7) & 15)) ^
                           (x >> ((t >> 13) & 15)) ^ (x << ((2 * t) & 15));
    return mixed % modulus;
  }
};

template <typename K, typename V>
int TCIntHTable<K, V>::find_pos(K key, int* ins_pos, int* found) const {
  const auto modulus = static_cast<uint32_t>(capacity() - 1);
  const uint32_t x = static_cast<uint32_t>(static_cast<int32_t>(key)) ^ kKeyMix;
  uint32_t pos = 0;
  int probes = 0;
  int insert_at = -1;
  for (;;) {
    pos = next_pos(pos, probes, x, modulus);
    ++probes;
    const bool is_deleted = deleted.get(pos);
    if (is_deleted && insert_at < 0) insert_at = static_cast<int>(pos);
    if (used.get(pos) && entries[pos].key != key) continue;
    if (!is_deleted) break;
  }
  orva::count_lookup(probes);
  *ins_pos = insert_at < 0 ? static_cast<int>(pos) : insert_at;
  *found = used.get(pos) ? 1 : 0;
  return static_cast<int>(pos);
}

template <typename K, typename V>
V* TCIntHTable<K, V>::find_or_add(K key, int* added) {
  int ins_pos = 0;
  int found = 0;
  int pos = find_pos(key, &ins_pos, &found);
  if (found != 0) {
    *added = 0;
    return &entries[static_cast<unsigned>(pos)].val;
  }
  const long double slots = capacity() - 1;
  if (nb_used > static_cast<long double>(0.6f) * slots) {
    rehash(2 * capacity());
    pos = find_pos(key, &ins_pos, &found);
  } else if (nb_deleted > static_cast<long double>(0.2f) * slots) {
    rehash(capacity());
    pos = find_pos(key, &ins_pos, &found);
  }
  const auto slot = static_cast<unsigned>(ins_pos);
  if (ins_pos != pos) {
    --nb_deleted;
    deleted.reset(slot);
  }
  entries[slot].key = key;
  used.set(slot);
  ++nb_used;
  *added = 1;
  return &entries[slot].val;
}

template <typename K, typename V>
void TCIntHTable<K, V>::rehash(int new_size) {
  TCExpndTable<Slot> old_entries;
  old_entries.expand(static_cast<unsigned>(new_size));
  used.expand(new_size);
  deleted.expand(new_size);
  CExpndBoolTable old_used;
  old_used.copy(&used);
  const unsigned old_capacity = entries.tsize;

  old_entries.swap(entries);
  used.init();
  deleted.init();
  nb_used = 0;
  nb_deleted = 0;
  for (unsigned i = 0; i + 1 < old_capacity; ++i) {
    if (!old_used.get(i)) continue;
    int added = 0;
    *find_or_add(old_entries[i].key, &added) = old_entries[i].val;
  }
  orva::count_rehash();
}

template <typename K, typename V>
void TCIntHTable<K, V>::get_contents(K* keys, V* vals) const {
  if (keys == nullptr && vals == nullptr) return;
  for (unsigned i = 0; i + 1 < entries.tsize; ++i) {
    if (!used.get(i)) continue;
    if (keys != nullptr) *keys++ = entries[i].key;
    if (vals != nullptr) *vals++ = entries[i].val;
  }
}

extern template class TCIntHTable<int, unsigned>;

#endif  // ORVA_LIB_TC_INT_HTABLE_H_
