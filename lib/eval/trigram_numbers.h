// TrigramNumbers: the numbers that trigrams were given when they first came.
//
// Numbers stand in chunks, those of 32 trigrams that differ in the low bits of their first byte
// only, so that those of a text lie close together; a table tells where the chunk of each trigram
// is.
//
//   orva::TrigramNumbers numbers;
//   numbers.find(pair, buf, n, found);
//   uint16_t* const place = numbers.place_of(trigram);
//   if (place != nullptr) *place = number;
//
// Ownership:  its tables, outside the accounted memory.
#ifndef ORVA_LIB_EVAL_TRIGRAM_NUMBERS_H_
#define ORVA_LIB_EVAL_TRIGRAM_NUMBERS_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace orva {

// Three bytes in a row, the first one in the low 8 bits.
struct Trigram {
  uint32_t bits;

  unsigned pair() const { return bits & 0xFFFF; }
  unsigned char first_byte() const { return static_cast<unsigned char>(bits); }
  unsigned char last_byte() const { return static_cast<unsigned char>(bits >> 16); }
};

class TrigramNumbers {
 public:
  TrigramNumbers();

  static constexpr uint16_t kNone = 0;
  static constexpr size_t kMostFound = 2048;  // at once

  // Stores the numbers of the trigrams that end in buf[0], ..., buf[n - 1], where the byte pair
  // `pair`, its first byte in the upper 8 bits, comes before buf. REQUIRES: n <= kMostFound.
  void find(unsigned pair, const unsigned char* buf, size_t n, uint16_t* numbers) const;
  uint16_t find_one(Trigram trigram) const;

  // Where the number of a trigram is, or is to be stored if it has none. Null when there is no room
  // for another trigram; there is for kMostFound of them after clear.
  uint16_t* place_of(Trigram trigram);
  void clear();

 private:
  // By chunk, where the number of its trigram with the first byte 0 would be: how many numbers come
  // before. Chunks that are not there find nothing but kNone.
  std::vector<uint32_t> chunks_;
  std::unique_ptr<uint16_t[]> numbers_;
  uint32_t nb_used_;  // of these
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_TRIGRAM_NUMBERS_H_
