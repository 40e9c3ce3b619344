// Vietnamese letters with a tone mark, taken apart: windows-1258 has the vowels and the five tone
// marks, but few of their combinations.
#ifndef ORVA_LIB_DETECT_VIETNAMESE_H_
#define ORVA_LIB_DETECT_VIETNAMESE_H_

#include <cstdint>

namespace orva {

struct VietnameseLetter {
  uint16_t letter;
  uint16_t base;
  uint16_t tone;  // combining mark
};

// Null when `value` is no such letter.
const VietnameseLetter* find_vietnamese_letter(uint32_t value);

}  // namespace orva

#endif  // ORVA_LIB_DETECT_VIETNAMESE_H_
