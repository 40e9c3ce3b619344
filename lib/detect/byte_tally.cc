#include "lib/detect/byte_tally.h"

#include <immintrin.h>

#include <algorithm>
#include <bit>
#include <cstring>

#include "lib/detect/byte_blocks.h"

namespace orva {

namespace {

using Bytes16 = uint8_t __attribute__((vector_size(16)));
using Bytes32 = uint8_t __attribute__((vector_size(32)));

constexpr char kNoKind = 'a';

// Bytes of each kind, in lanes of their own.
template <typename Bytes>
struct KindLanes {
  Bytes high = {};
  Bytes odd_controls = {};
  Bytes blanks = {};
  Bytes at_signs = {};

  __attribute__((always_inline)) void add_block(const char* block) {
    for (size_t i = 0; i < ByteTally::kBlock; i += sizeof(Bytes)) {
      Bytes b;
      __builtin_memcpy(&b, block + i, sizeof b);
      // Comparisons give all bits of a lane: -1.
      high -= Bytes(b > 0x7F);
      odd_controls -= Bytes((b < 0x20) & ((b - 9) > 4) & ((b & 0xFE) != 0x1A)) | Bytes(b == 0x7F);
      blanks -= Bytes(b == 0x20);
      at_signs -= Bytes(b == 0x40);
    }
  }
  __attribute__((always_inline)) void add_to(ByteKinds* kinds) const {
    kinds->high += sum_of(high);
    kinds->odd_controls += sum_of(odd_controls);
    kinds->blanks += sum_of(blanks);
    kinds->at_signs += sum_of(at_signs);
  }
};

// A bit for each byte of a block that is not in the set.
uint64_t fresh_in(const ByteSet& set, const char* block) {
  const uint8_t* in = set.table();
  uint64_t fresh = 0;
  for (size_t i = 0; i < ByteTally::kBlock; i += 8) {
    const uint64_t word = word_at({block, ByteTally::kBlock}, i);
    for (unsigned k = 0; k < 8; ++k) {
      fresh |= uint64_t{in[word >> 8 * k & 0xFF] ^ 1U} << (i + k);
    }
  }
  return fresh;
}

size_t count_plain(const char* blocks, size_t nb_blocks, const ByteSet& known, ByteKinds* kinds,
                   uint64_t* fresh) {
  KindLanes<Bytes16> lanes;
  size_t i = 0;
  for (; i < nb_blocks; ++i) {
    *fresh = fresh_in(known, blocks + i * ByteTally::kBlock);
    if (*fresh != 0) break;
    lanes.add_block(blocks + i * ByteTally::kBlock);
  }
  lanes.add_to(kinds);
  return i;
}

__attribute__((target("avx2"))) inline __m256i twice(const uint8_t* row) {
  __m128i half;
  memcpy(&half, row, sizeof half);
  return _mm256_broadcastsi128_si256(half);
}

// With an instruction that looks each of 32 bytes up in one of 16 entries by its lower half; what
// is above 0x7F it finds to be 0.
__attribute__((target("avx2"))) size_t count_avx2(const char* blocks, size_t nb_blocks,
                                                  const ByteSet& known, ByteKinds* kinds,
                                                  uint64_t* fresh) {
  const uint8_t kUpperHalves[16] = {1, 2, 4, 8, 16, 32, 64, 128, 1, 2, 4, 8, 16, 32, 64, 128};
  const __m256i low_rows = twice(known.low_rows());
  const __m256i high_rows = twice(known.high_rows());
  const __m256i upper_halves = twice(kUpperHalves);
  KindLanes<Bytes32> lanes;
  size_t i = 0;
  for (; i < nb_blocks; ++i) {
    const char* block = blocks + i * ByteTally::kBlock;
    uint64_t lacked = 0;
    for (size_t at = 0; at < ByteTally::kBlock; at += sizeof(__m256i)) {
      __m256i b;
      memcpy(&b, block + at, sizeof b);
      const __m256i low = _mm256_shuffle_epi8(low_rows, b);
      const __m256i high =
          _mm256_shuffle_epi8(high_rows, _mm256_xor_si256(b, _mm256_set1_epi8(-128)));
      const __m256i upper = _mm256_and_si256(_mm256_srli_epi16(b, 4), _mm256_set1_epi8(15));
      const __m256i bit = _mm256_shuffle_epi8(upper_halves, upper);
      const __m256i held = _mm256_and_si256(_mm256_or_si256(low, high), bit);
      const __m256i lacking = _mm256_cmpeq_epi8(held, _mm256_setzero_si256());
      lacked |= uint64_t{static_cast<uint32_t>(_mm256_movemask_epi8(lacking))} << at;
    }
    *fresh = lacked;
    if (lacked != 0) break;
    lanes.add_block(block);
  }
  lanes.add_to(kinds);
  return i;
}

}  // namespace

void ByteSet::add(unsigned char b) {
  in_[b] = 1;
  words_[b / 64] |= uint64_t{1} << b % 64;
  uint8_t& row = rows_[b >> 7][b & 15];
  row = static_cast<uint8_t>(row | 1U << (b >> 4 & 7));
}

ByteTally::Counter ByteTally::plain_counter() { return count_plain; }

ByteTally::Counter ByteTally::best_counter() {
  return __builtin_cpu_supports("avx2") != 0 ? count_avx2 : count_plain;
}

void ByteTally::note_each(std::string_view bytes) {
  for (const char c : bytes) note(static_cast<unsigned char>(c));
}

void ByteTally::feed(std::string_view bytes) {
  while (bytes.size() >= kBlock) {
    const size_t nb_blocks = std::min(bytes.size() / kBlock, kMostBlocks);
    uint64_t fresh = 0;
    const size_t counted = counter_(bytes.data(), nb_blocks, set_, &kinds_, &fresh);
    bytes.remove_prefix(counted * kBlock);
    for (; fresh != 0; fresh &= fresh - 1) {
      note(static_cast<unsigned char>(bytes[static_cast<size_t>(std::countr_zero(fresh))]));
    }
  }
  note_each(bytes);
  // What fills the last block up is of no kind.
  char last[kBlock];
  memset(last, kNoKind, sizeof last);
  memcpy(last, bytes.data(), bytes.size());
  KindLanes<Bytes16> lanes;
  lanes.add_block(last);
  lanes.add_to(&kinds_);
}

}  // namespace orva
