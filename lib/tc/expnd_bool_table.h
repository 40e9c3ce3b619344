// CExpndBoolTable: a set of bits that grows by pages of 32-bit words.
//
//   CExpndBoolTable bits;
//   bits.expand(40);     // room for bit 40
//   bits.set(40);
//   int numbers[1];
//   if (bits.get_cnt_len() == 1) bits.get_contents(numbers);
//
// Bit b is bit b mod 32 of word b / 32.
//
// Life cycle: construct empty, expand, init to clear, destroy.
// Ownership:  its words; clone's result belongs to the caller (delete).
#ifndef ORVA_LIB_TC_EXPND_BOOL_TABLE_H_
#define ORVA_LIB_TC_EXPND_BOOL_TABLE_H_

#include "lib/tc/tc_expnd_table.h"

class CExpndBoolTable {
 public:
  static constexpr unsigned kWordBits = 32;

  // Clears every word and keeps the capacity.
  void init();
  // Makes room for bit `nbits`; new words are 0. A negative bit asks for nothing.
  void expand(int nbits);
  // Takes the capacity and the words of `src`.
  void copy(const CExpndBoolTable* src);
  CExpndBoolTable* clone() const;
  // Prints the size in bits and every word to standard output.
  void print() const;
  // Writes the numbers of the set bits in ascending order.
  void get_contents(int* out) const;
  // Number of set bits.
  int get_cnt_len() const;

  // REQUIRES: room for `bit` was made.
  bool get(unsigned bit) const { return ((words[bit / kWordBits] >> (bit % kWordBits)) & 1u) != 0; }
  void set(unsigned bit) { words[bit / kWordBits] |= 1u << (bit % kWordBits); }
  void reset(unsigned bit) { words[bit / kWordBits] &= ~(1u << (bit % kWordBits)); }

  // Room in bits.
  int size() const { return static_cast<int>(words.tsize * kWordBits); }

  TCExpndTable<unsigned> words;
};

#endif  // ORVA_LIB_TC_EXPND_BOOL_TABLE_H_
