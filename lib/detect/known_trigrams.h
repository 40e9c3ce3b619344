// KnownTrigrams: the numbers of known trigrams, in little memory.
//
//   orva::KnownTrigrams index(trigrams);            // ascending
//   int number = index.find(a, b, c);              // its place in `trigrams`, or kNone
//
// Most bytes occur in no trigram, and few pairs begin one: pairs of those that do are numbered, and
// each has a bit for every byte that may follow. So texts in wrong readings, whose trigrams lie all
// over the place, find what they look at in the cache.
//
// Life cycle: made whole by the constructor, constant from then on.
// Threads:    any number may read.
#ifndef ORVA_LIB_DETECT_KNOWN_TRIGRAMS_H_
#define ORVA_LIB_DETECT_KNOWN_TRIGRAMS_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "lib/detect/trigram_walk.h"

namespace orva {

constexpr uint32_t trigram_of(unsigned char a, unsigned char b, unsigned char c) {
  return static_cast<uint32_t>(a) << 16 | static_cast<uint32_t>(b) << 8 | c;
}

// How many bits are set in each byte.
struct BitCounts {
  uint8_t of[256] = {};

  constexpr BitCounts() {
    for (size_t b = 1; b < 256; ++b) of[b] = static_cast<uint8_t>(of[b / 2] + b % 2);
  }
};
inline constexpr BitCounts kBitCounts;

class KnownTrigrams {
 public:
  static constexpr int kNone = -1;

  KnownTrigrams() : KnownTrigrams(std::vector<uint32_t>()) {}
  // REQUIRES: `trigrams` ascend, each there once; they begin with fewer than 65536 pairs.
  explicit KnownTrigrams(const std::vector<uint32_t>& trigrams);

  int find(unsigned char a, unsigned char b, unsigned char c) const {
    const unsigned char bytes[] = {a, b, c};
    int number = kNone;
    find_all(bytes, 1, [&number](size_t, int found) { number = found; });
    return number;
  }

  // Calls visit(i, number) for `count` trigrams that begin at bytes[0], bytes[1] and so on, in
  // steps without branches, so that the look-ups of each step do not wait for each other. REQUIRES:
  // count <= kTrigramsAtOnce.
  template <typename Visit>
  void find_all(const unsigned char* bytes, size_t count, Visit visit) const {
    size_t places[kTrigramsAtOnce + 2];
    uint32_t bases[kTrigramsAtOnce];
    uint32_t groups[kTrigramsAtOnce];
    for (size_t i = 0; i < count + 2; ++i) places[i] = place_[bytes[i]];
    for (size_t i = 0; i < count; ++i) {
      const size_t pair = pairs_[places[i] * nb_places_ + places[i + 1]];
      const uint16_t* const block = followers_.data() + pair * stride_;
      memcpy(&bases[i], block, sizeof bases[i]);
      groups[i] = block[kBase + places[i + 2] / kGroup];
    }
    for (size_t i = 0; i < count; ++i)
      visit(i, number_in(bases[i], groups[i], places[i + 2] % kGroup));
  }

  // Finds the trigrams of a text one after the other, by its bytes.
  //
  //   KnownTrigrams::Cursor cursor(index, text);
  //   for (size_t i = 2; i < size; ++i) use(cursor.next(text[i]));
  class Cursor {
   public:
    // `bytes` are the first two.
    Cursor(const KnownTrigrams& index, const unsigned char* bytes)
        : index_(index),
          first_(index.place_[bytes[0]] * index.nb_places_),
          second_(index.place_[bytes[1]]) {}

    // The number of the trigram that ends with `byte`, or kNone.
    __attribute__((always_inline)) int next(unsigned char byte) {
      const size_t third = index_.place_[byte];
      const size_t pair = index_.pairs_[first_ + second_];
      const uint16_t* const block = index_.followers_.data() + pair * index_.stride_;
      uint32_t base;
      memcpy(&base, block, sizeof base);
      first_ = second_ * index_.nb_places_;
      second_ = third;
      return number_in(base, block[kBase + third / kGroup], third % kGroup);
    }

   private:
    const KnownTrigrams& index_;
    size_t first_;  // times how many places there are
    size_t second_;
  };

 private:
  static constexpr size_t kGroup = 8;
  static constexpr size_t kBase = 2;  // units of the number that a pair's block begins with

  // Of a follower in its group.
  static int number_in(uint32_t base, uint32_t group, size_t place) {
    const uint32_t below = group & ((1U << place) - 1);
    const int number = static_cast<int>(base + (group >> kGroup)) + kBitCounts.of[below];
    const int known = static_cast<int>(group >> place & 1U);
    return number | (known - 1);
  }

  size_t pair_place(uint32_t trigram) const {
    return place_[trigram >> 16] * nb_places_ + place_[trigram >> 8 & 0xFFU];
  }

  uint16_t place_[256] = {};  // of a byte among those that occur; 0: it does not
  size_t nb_places_ = 1;
  size_t nb_groups_ = 1;         // of bytes whose places follow each other
  std::vector<uint16_t> pairs_;  // by the places of two bytes; 0: no trigram begins so
  size_t stride_ = kBase + 1;    // units of a pair's block
  // By pair: the number of its first trigram in two units; then for each group how many followers
  // of the pair are in those before it and, below that, a bit for each byte that may follow.
  std::vector<uint16_t> followers_;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_KNOWN_TRIGRAMS_H_
