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
    const size_t pair = pairs_[size_t{place_[a]} * nb_places_ + place_[b]];
    const size_t place = place_[c];
    const Followers& followers = followers_[pair * nb_words_ + place / kBits];
    const uint32_t bit = uint32_t{1} << place % kBits;
    const int number = followers.first + count_bits(followers.bits & (bit - 1));
    return (followers.bits & bit) != 0 ? number : kNone;
  }

 private:
  static constexpr size_t kBits = 32;

  // Without a call, which std::popcount is where the processor is not known to have it.
  static int count_bits(uint32_t word) {
    word -= word >> 1 & 0x55555555U;
    word = (word & 0x33333333U) + (word >> 2 & 0x33333333U);
    return static_cast<int>(((word + (word >> 4)) & 0x0F0F0F0FU) * 0x01010101U >> 24);
  }

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
