// TrigramPlace: where what is known about a trigram stands: a few entries, or a row. In halves of a
// number, so that it takes six bytes: there is one for each trigram.
#ifndef ORVA_LIB_DETECT_TRIGRAM_PLACE_H_
#define ORVA_LIB_DETECT_TRIGRAM_PLACE_H_

#include <cstddef>
#include <cstdint>

namespace orva {

struct TrigramPlace {
  // The count of those that have a row, whose number is first().
  static constexpr uint16_t kRow = 0xFFFF;

  uint16_t low = 0;
  uint16_t high = 0;
  uint16_t count = 0;  // of entries, from first() on

  TrigramPlace() = default;
  constexpr TrigramPlace(size_t first, uint16_t entries)
      : low(static_cast<uint16_t>(first)),
        high(static_cast<uint16_t>(first >> 16)),
        count(entries) {}
  size_t first() const { return size_t{high} << 16 | low; }
};
static_assert(sizeof(TrigramPlace) == 6);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_TRIGRAM_PLACE_H_
