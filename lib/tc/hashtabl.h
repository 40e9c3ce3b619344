// CHashTable: gives each distinct byte string a dense index, in order of arrival.
//
//   CHashTable table(8, 0.8f);
//   int added = 0;
//   int index = table.find_or_add(key, &added);     // 0, 1, 2, ...; added: 1 when new
//   int again = table[key];                         // the same index; -1 for an unknown key
//
// Separate chaining through index links. Strings, elements and buckets lie in pages, so an index
// never changes and a key's address stays valid until clean. New elements go to the front of their
// chain.
//
// Life cycle: construct; add; clean and init0 to use it again; destroy.
// Ownership:  copies of the key strings.
// Results:    f_read and f_write: 0, or -1 on any failure. The others throw where the table cannot
//             grow (tc_alloc.h).
#ifndef ORVA_LIB_TC_HASHTABL_H_
#define ORVA_LIB_TC_HASHTABL_H_

#include <cstdio>

#include "lib/tc/tc_expnd_table.h"
#include "lib/tc/tc_stack.h"

struct HashElem {
  const unsigned char* str;
  int next;  // next element of the same bucket, -1 at the end
};
template <>
struct orva::CountedSize<HashElem> {
  static constexpr int value = 8;
};

class CHashTable {
 public:
  static constexpr int kFormatMark = 1;
  static constexpr int kFirstBlock = 10000;  // work buffer of the binary form

  // REQUIRES: `size` is a power of two.
  CHashTable(int size, float load_fact);
  CHashTable(const CHashTable&) = delete;
  CHashTable& operator=(const CHashTable&) = delete;

  // Makes the table empty with `size` buckets, a power of two.
  void init0(int size);
  // Releases the key strings; init0 must follow.
  void clean();

  int find_or_add(const unsigned char* key, int* added);
  int operator[](const unsigned char* key) const;
  // Adds a key without looking for it first.
  int append_string_copy(const unsigned char* key);
  // Gives the table `new_size` buckets and links every element anew.
  void expand(int new_size);
  // Puts element `index` at the front of its bucket's chain.
  void btable_rehash(int index);

  // Binary form: the words 1, count, count, load factor bits; then blocks of NUL-ended keys in
  // index order, each after its length. f_read keeps the table's own load factor.
  int f_write(FILE* stream) const;
  int f_read(FILE* stream);

  // Diagnostics on standard output.
  void stats() const;
  void print() const;

  // Takes the load factor, the keys and their indexes of `src`.
  void copy(const CHashTable* src);
  CHashTable* clone() const;
  // Bytes in use, by the sizes of the 32-bit reference platform.
  int size_of() const;

  // The key at `index`. REQUIRES: 0 <= index < nb_elems.
  const unsigned char* key(int index) const { return elems[static_cast<unsigned>(index)].str; }

  float load_fact;
  TCMemStack<unsigned char> strings;
  int strings_size = 0;  // bytes of all keys, terminators included
  TCExpndTable<HashElem> elems;
  int nb_elems = 0;
  int max_elems = 0;  // number of elements at which the next insertion doubles the buckets
  TCExpndTable<int> btable;
  int hsz = 0;
  int msk = 0;

 private:
  static constexpr int kObjectSize = 84;
  static unsigned hash(const unsigned char* key);
  int read_blocks(FILE* stream);
};

// Self-test: prints its result to standard error; ends the process with status 1 when it fails.
void hashtabl_test();

#endif  // ORVA_LIB_TC_HASHTABL_H_
