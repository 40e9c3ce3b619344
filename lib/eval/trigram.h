// Trigram: three bytes in a row, and what the scorer keeps of them.
#ifndef ORVA_LIB_EVAL_TRIGRAM_H_
#define ORVA_LIB_EVAL_TRIGRAM_H_

#include <cstdint>

namespace orva {

// What counting needs of a trigram, and the rest apart from it: small records stay near the
// processor.
struct Trigram {
  uint32_t key;    // its bytes, the first one lowest
  uint16_t count;  // in the run under way
  uint8_t shape;   // of its row

  unsigned pair() const { return (key & 0xFF) << 8 | (key >> 8 & 0xFF); }
  unsigned char last_byte() const { return static_cast<unsigned char>(key >> 16); }
};
static_assert(sizeof(Trigram) == 8);

struct TrigramRest {
  uint32_t row;
  uint32_t pending;  // occurrences whose unigrams were not added yet
};

constexpr uint32_t trigram_key(unsigned a, unsigned b, unsigned c) { return a | b << 8 | c << 16; }

}  // namespace orva

#endif  // ORVA_LIB_EVAL_TRIGRAM_H_
