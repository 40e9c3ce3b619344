// WordFreq: what training knows of one distinct trigram.
#ifndef ORVA_LIB_TC_WORD_FREQ_H_
#define ORVA_LIB_TC_WORD_FREQ_H_

#include <cstddef>

struct WordFreq {
  int word;           // index of the trigram's key
  int freq;           // occurrences
  unsigned char chr;  // the trigram's last byte
};
static_assert(sizeof(WordFreq) == 12 && offsetof(WordFreq, freq) == 4);

#endif  // ORVA_LIB_TC_WORD_FREQ_H_
