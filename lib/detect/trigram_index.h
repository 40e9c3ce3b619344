// TrigramIndex: the numbers of known trigrams, in little memory.
//
//   orva::TrigramIndex index(trigrams);            // ascending
//   int number = index.find(a, b, c);              // its place in `trigrams`, or kNone
//
// Most bytes occur in no trigram, and few pairs begin one: pairs of those that do are numbered, and
// each has a bit for every byte that may follow. So texts in wrong readings, whose trigrams lie all
// over the place, find what they look at in the cache.
//
// Life cycle: made whole by the constructor, constant from then on.
// Threads:    any number may read.
#ifndef ORVA_LIB_DETECT_TRIGRAM_INDEX_H_
#define ORVA_LIB_DETECT_TRIGRAM_INDEX_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lib/detect/trigram_walk.h"

namespace orva {

constexpr uint32_t trigram_of(unsigned char a, unsigned char b, unsigned char c) {
  return static_cast<uint32_t>(a) << 16 | static_cast<uint32_t>(b) << 8 | c;
}

class TrigramIndex {
 public:
  static constexpr int kNone = -1;

  TrigramIndex() : TrigramIndex(std::vector<uint32_t>()) {}
  // REQUIRES: `trigrams` ascend, each there once; they begin with fewer than 65536 pairs.
  explicit TrigramIndex(const std::vector<uint32_t>& trigrams);

  int find(unsigned char a, unsigned char b, unsigned char c) const {
    const unsigned char bytes[] = {a, b, c};
    int number = kNone;
    find_all(bytes, 1, &number);
    return number;
  }
  // Likewise of `count` trigrams, those that begin at bytes[0], bytes[1] and so on.
  // REQUIRES: count <= kTrigramsAtOnce.
  void find_all(const unsigned char* bytes, size_t count, int* numbers) const;

 private:
  static constexpr size_t kBits = 32;

  // Which of so many bytes may follow a pair, and the number of the first one's trigram.
  struct Followers {
    uint32_t bits = 0;
    int32_t first = 0;
  };

  uint16_t place_[256] = {};  // of a byte among those that occur; 0: it does not
  size_t nb_places_ = 1;
  size_t nb_words_ = 1;
  std::vector<uint16_t> pairs_;  // by the places of two bytes; 0: no trigram begins so
  std::vector<Followers> followers_;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_TRIGRAM_INDEX_H_
