// Bytes looked at many at a time: what every pass over a document begins with.
//
//   i = orva::skip_ascii(bytes, i);      // the next byte above 0x7F, or the end
//   n = orva::count_high(bytes);         // bytes above 0x7F
//   if (!orva::any(orva::blanks_of(orva::block_at(text)))) ...   // of 16 bytes none is blank
//
// Ownership: none; plain functions.
// Threads:   any number.
#ifndef ORVA_LIB_DETECT_BYTE_BLOCKS_H_
#define ORVA_LIB_DETECT_BYTE_BLOCKS_H_

#include <algorithm>
#include <bit>
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

// Sixteen bytes, of which comparisons give all bits or none of a lane.
using ByteBlock = uint8_t __attribute__((vector_size(16)));
inline constexpr size_t kByteBlock = sizeof(ByteBlock);

inline ByteBlock block_at(const char* bytes) {
  ByteBlock block;
  memcpy(&block, bytes, sizeof block);
  return block;
}

inline bool any(const ByteBlock& lanes) {
  uint64_t words[2];
  memcpy(words, &lanes, sizeof words);
  return (words[0] | words[1]) != 0;
}

// The first lane that is not 0; kByteBlock when all are.
inline size_t first_of(const ByteBlock& lanes) {
  uint64_t words[2];
  memcpy(words, &lanes, sizeof words);
  if (words[0] != 0) return static_cast<size_t>(std::countr_zero(words[0])) / 8;
  return 8 + static_cast<size_t>(std::countr_zero(words[1])) / 8;
}

// The sum of all lanes of a vector of bytes.
template <typename Bytes>
__attribute__((always_inline)) inline size_t sum_of(const Bytes& lanes) {
  constexpr uint64_t kEven = 0x00FF00FF00FF00FF;
  constexpr uint64_t kOnes = 0x0001000100010001;
  uint64_t words[sizeof(Bytes) / sizeof(uint64_t)];
  memcpy(words, &lanes, sizeof words);
  uint64_t sum = 0;
  for (const uint64_t word : words) sum += (word & kEven) + (word >> 8 & kEven);
  return static_cast<size_t>(sum * kOnes >> 48);
}

// The lanes that are blanks, tabs and line ends.
inline ByteBlock blanks_of(const ByteBlock& block) {
  return ByteBlock(block == ' ') | ByteBlock(block == '\t') | ByteBlock(block == '\n') |
         ByteBlock(block == '\r');
}

// Position of the first byte above 0x7F from `i` on; the size when there is none.
inline size_t skip_ascii(std::string_view bytes, size_t i) {
  while (i + 32 <= bytes.size() && ((word_at(bytes, i) | word_at(bytes, i + 8) |
                                     word_at(bytes, i + 16) | word_at(bytes, i + 24)) &
                                    kHighBits) == 0) {
    i += 32;
  }
  for (; i + 8 <= bytes.size(); i += 8) {
    const uint64_t high = word_at(bytes, i) & kHighBits;
    if (high != 0) return i + static_cast<size_t>(std::countr_zero(high)) / 8;
  }
  while (i < bytes.size() && static_cast<unsigned char>(bytes[i]) < 0x80) ++i;
  return i;
}

// Position of the first byte below 0x80 from `i` on; the size when there is none.
inline size_t skip_high(std::string_view bytes, size_t i) {
  for (; i + 8 <= bytes.size(); i += 8) {
    const uint64_t low = ~word_at(bytes, i) & kHighBits;
    if (low != 0) return i + static_cast<size_t>(std::countr_zero(low)) / 8;
  }
  while (i < bytes.size() && static_cast<unsigned char>(bytes[i]) >= 0x80) ++i;
  return i;
}

// How many bytes are above 0x7F.
inline size_t count_high(std::string_view bytes) {
  size_t count = 0;
  size_t i = 0;
  // Lanes of 8 bits take no more blocks.
  constexpr size_t kMostBlocks = 255;
  while (i + kByteBlock <= bytes.size()) {
    ByteBlock lanes = {};
    const size_t end = std::min(bytes.size(), i + kMostBlocks * kByteBlock);
    for (; i + kByteBlock <= end; i += kByteBlock) {
      lanes -= ByteBlock(block_at(bytes.data() + i) >= 0x80);
    }
    count += sum_of(lanes);
  }
  for (; i < bytes.size(); ++i) count += static_cast<unsigned char>(bytes[i]) >> 7;
  return count;
}

}  // namespace orva

#endif  // ORVA_LIB_DETECT_BYTE_BLOCKS_H_
