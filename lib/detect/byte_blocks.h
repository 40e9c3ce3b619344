// Bytes looked at many at a time: what every pass over a document begins with.
//
//   i = orva::skip_ascii(bytes, i);      // the next byte above 0x7F, or the end
//   n = orva::count_high(bytes);         // bytes above 0x7F
//
// Ownership: none; plain functions.
// Threads:   any number.
#ifndef ORVA_LIB_DETECT_BYTE_BLOCKS_H_
#define ORVA_LIB_DETECT_BYTE_BLOCKS_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace orva {

inline constexpr uint64_t kHighBits = 0x8080808080808080;

// Eight bytes as one word.
inline uint64_t word_at(std::string_view bytes, size_t i) {
  uint64_t word;
  memcpy(&word, bytes.data() + i, sizeof(word));
  return word;
}

// Position of the first byte above 0x7F from `i` on; the size when there is none.
inline size_t skip_ascii(std::string_view bytes, size_t i) {
  while (i + 32 <= bytes.size() && ((word_at(bytes, i) | word_at(bytes, i + 8) |
                                     word_at(bytes, i + 16) | word_at(bytes, i + 24)) &
                                    kHighBits) == 0) {
    i += 32;
  }
  while (i + 8 <= bytes.size() && (word_at(bytes, i) & kHighBits) == 0) i += 8;
  while (i < bytes.size() && static_cast<unsigned char>(bytes[i]) < 0x80) ++i;
  return i;
}

// How many bytes are above 0x7F.
inline size_t count_high(std::string_view bytes) {
  constexpr uint64_t kOnes = 0x0101010101010101;
  size_t count = 0;
  size_t i = 0;
  // Bits that are far apart are added up in the highest byte.
  for (; i + 8 <= bytes.size(); i += 8) {
    count += static_cast<size_t>(((word_at(bytes, i) & kHighBits) >> 7) * kOnes >> 56);
  }
  for (; i < bytes.size(); ++i) count += static_cast<unsigned char>(bytes[i]) >> 7;
  return count;
}

}  // namespace orva

#endif  // ORVA_LIB_DETECT_BYTE_BLOCKS_H_
