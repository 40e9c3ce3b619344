// TrigramCounter: how often each trigram of a text occurs, in order of first appearance.
//
//   orva::TrigramCounter counter;
//   counter.set_context(bytes);                    // optional: the two bytes in front
//   counter.add(text, length);
//   for (unsigned i = 0; i < counter.nb_trigrams(); ++i) use(counter.trigram(i), counter.freq(i));
//
// A page of 256 counters per pair of leading bytes, made when the pair first occurs: memory follows
// the number of distinct trigrams, not the text, and a byte of text costs one counter.
//
// Ownership:  its pages.
// Results:    throws where it cannot grow (lib/tc/tc_alloc.h).
#ifndef ORVA_LIB_TRICHR_TRIGRAM_COUNTER_H_
#define ORVA_LIB_TRICHR_TRIGRAM_COUNTER_H_

#include <cstdint>

#include "lib/tc/tc_expnd_table.h"

namespace orva {

class TrigramCounter {
 public:
  TrigramCounter();
  ~TrigramCounter();
  TrigramCounter(const TrigramCounter&) = delete;
  TrigramCounter& operator=(const TrigramCounter&) = delete;

  // The two bytes in front of what is added next; without, they are the last ones added, and NULs
  // before the first.
  void set_context(const unsigned char* two_bytes);
  void add(const unsigned char* bytes, int len);

  unsigned nb_trigrams() const { return nb_trigrams_; }
  int nb_bigrams() const { return nb_bigrams_; }
  // The three bytes of trigram `i`, the first in bits 16 to 23.
  unsigned trigram(unsigned i) const { return trigrams_[i]; }
  int freq(unsigned i) const {
    const unsigned key = trigrams_[i];
    return pages_[key >> 8][key & 0xff];
  }
  int byte_count(unsigned char byte) const { return byte_counts_[byte]; }
  // Trigrams counted that begin with the two bytes of `bigram`.
  int bigram_total(unsigned bigram) const;

 private:
  static constexpr int kNbPages = 65536;
  static constexpr int kPage = 256;

  int* new_page(unsigned bigram);
  void remember(unsigned key);

  int** pages_;
  TCExpndTable<unsigned> trigrams_;
  unsigned nb_trigrams_ = 0;
  int nb_bigrams_ = 0;
  uint32_t last_two_ = 0;
  int byte_counts_[256] = {};
};

}  // namespace orva

#endif  // ORVA_LIB_TRICHR_TRIGRAM_COUNTER_H_
