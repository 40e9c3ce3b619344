#include "lib/eval/row_adder.h"

#include <immintrin.h>

#include <cstring>

namespace orva {

RowShape::RowShape(unsigned block_mask) : mask(static_cast<uint8_t>(block_mask)), nb_blocks(0) {
  for (size_t b = 0; b < kNbBlocks; ++b) {
    place[b] = nb_blocks;
    if ((mask >> b & 1) != 0) blocks[nb_blocks++] = static_cast<uint8_t>(b);
  }
}

namespace {

// Totals are words of 16 bits, which hold the largest cost as often as a row may come.
static_assert(kMostTimesOfRow * 255 <= 0xFFFF);

using Bytes8 = uint8_t __attribute__((vector_size(8), may_alias));
using Words8 = uint16_t __attribute__((vector_size(16)));

// Adds block number `b` of those that the rows hold.
void add_block_plain(size_t block, size_t b, const RowUnit* first_row, const Credits& rows,
                     LaneSums* sums) {
  constexpr size_t kStep = 8;
  constexpr size_t kNbVectors = kBlockLanes / kStep;
  constexpr Words8 kBitOfLane = {1, 2, 4, 8, 16, 32, 64, 128};
  for (size_t r = 0; r < rows.count;) {
    Words8 totals[kNbVectors] = {};
    Words8 counts[kNbVectors] = {};
    uint32_t left = kMostTimesOfRow;
    for (; r < rows.count && rows.times[r] <= left; ++r) {
      left -= rows.times[r];
      const RowUnit* const row = first_row + rows.places[r];
      const auto times = static_cast<uint16_t>(rows.times[r]);
#pragma GCC unroll 4
      for (size_t v = 0; v < kNbVectors; ++v) {
        const auto* const costs = reinterpret_cast<const Bytes8*>(row[1 + b].costs) + v;
        totals[v] += __builtin_convertvector(*costs, Words8) * times;
        const auto bits = static_cast<uint16_t>(row->there[b] >> v * kStep & 0xFF);
        const Words8 there = (kBitOfLane & bits) == kBitOfLane;
        counts[v] += there & times;
      }
    }
    for (size_t i = 0; i < kBlockLanes; ++i) {
      sums->counts[block * kBlockLanes + i] += counts[i / kStep][i % kStep];
      sums->sums[block * kBlockLanes + i] += totals[i / kStep][i % kStep];
    }
  }
}

using Longs16 = uint32_t __attribute__((vector_size(64), may_alias));

void add_rows_plain(const RowShape& shape, const RowUnit* first_row, const Credits& rows,
                    LaneSums* sums) {
  for (size_t b = 0; b < shape.nb_blocks; ++b) {
    add_block_plain(shape.blocks[b], b, first_row, rows, sums);
  }
}

// By hand, for half as many steps tell which lanes are there when these are bytes.
template <size_t nb_blocks>
__attribute__((target("avx2"))) void add_blocks_avx2(const uint8_t* blocks, size_t from,
                                                     const RowUnit* first_row, const Credits& rows,
                                                     LaneSums* sums) {
  const __m256i bit_of_lane = _mm256_set1_epi64x(static_cast<int64_t>(0x8040201008040201));
  const __m256i byte_of_lane =
      _mm256_setr_epi64x(0, 0x0101010101010101, 0x0202020202020202, 0x0303030303030303);
  for (size_t r = 0; r < rows.count;) {
    __m256i totals[nb_blocks][2] = {};
    __m256i counts[nb_blocks] = {};
    uint32_t left = kMostTimesOfRow;
    for (; r < rows.count && rows.times[r] <= left; ++r) {
      left -= rows.times[r];
      const RowUnit* const row = first_row + rows.places[r];
      __builtin_prefetch(first_row + rows.places[r + kRowsAhead] + from);
      const __m256i times = _mm256_set1_epi16(static_cast<int16_t>(rows.times[r]));
      const __m256i short_times = _mm256_set1_epi8(static_cast<int8_t>(rows.times[r]));
#pragma GCC unroll 8
      for (size_t v = 0; v < nb_blocks; ++v) {
        const auto* const costs = reinterpret_cast<const __m128i*>(row + 1 + from + v);
#pragma GCC unroll 2
        for (size_t half = 0; half < 2; ++half) {
          const __m256i words = _mm256_cvtepu8_epi16(_mm_load_si128(costs + half));
          totals[v][half] = _mm256_add_epi16(totals[v][half], _mm256_mullo_epi16(words, times));
        }
        const __m256i all = _mm256_set1_epi32(static_cast<int>(row->there[from + v]));
        const __m256i bits = _mm256_shuffle_epi8(all, byte_of_lane) & bit_of_lane;
        const __m256i there = _mm256_cmpeq_epi8(bits, bit_of_lane);
        counts[v] = _mm256_add_epi8(counts[v], there & short_times);
      }
    }
    for (size_t v = 0; v < nb_blocks; ++v) {
      uint16_t words[kBlockLanes];
      uint8_t bytes[kBlockLanes];
      memcpy(words, totals[v], sizeof words);
      memcpy(bytes, &counts[v], sizeof bytes);
      const size_t first_lane = blocks[from + v] * kBlockLanes;
      for (size_t i = 0; i < kBlockLanes; ++i) {
        sums->sums[first_lane + i] += words[i];
        sums->counts[first_lane + i] += bytes[i];
      }
    }
  }
}

__attribute__((target("avx2"))) void add_rows_avx2(const RowShape& shape, const RowUnit* first_row,
                                                   const Credits& rows, LaneSums* sums) {
  // Blocks whose totals leave some registers of 16 to the rest, of which there are 8 in 32 bit.
  constexpr size_t kAtOnce = sizeof(void*) == 8 ? 3 : 1;
  size_t from = 0;
  for (; from + kAtOnce <= shape.nb_blocks; from += kAtOnce) {
    add_blocks_avx2<kAtOnce>(shape.blocks, from, first_row, rows, sums);
  }
  for (; from < shape.nb_blocks; ++from) {
    add_blocks_avx2<1>(shape.blocks, from, first_row, rows, sums);
  }
}

__attribute__((target("avx512bw"))) inline void add_words(__m512i words, uint32_t* sums) {
  __m256i halves[2];
  memcpy(halves, &words, sizeof halves);
  const __m512i low = _mm512_maskz_cvtepu16_epi32(0xFFFF, halves[0]);
  const __m512i high = _mm512_maskz_cvtepu16_epi32(0xFFFF, halves[1]);
  reinterpret_cast<Longs16*>(sums)[0] += reinterpret_cast<Longs16>(low);
  reinterpret_cast<Longs16*>(sums)[1] += reinterpret_cast<Longs16>(high);
}

// By hand, for the compiler would widen each vector in two halves and has no masks.
template <size_t nb_blocks>
__attribute__((target("avx512bw"))) void add_blocks_avx512(const uint8_t* blocks, size_t from,
                                                           const RowUnit* first_row,
                                                           const Credits& rows, LaneSums* sums) {
  constexpr size_t kUnitsInCacheLine = 2;
  for (size_t r = 0; r < rows.count;) {
    __m512i totals[nb_blocks] = {};
    __m512i counts[nb_blocks] = {};
    uint32_t left = kMostTimesOfRow;
    for (; r < rows.count && rows.times[r] <= left; ++r) {
      left -= rows.times[r];
      const RowUnit* const row = first_row + rows.places[r];
      const RowUnit* const ahead = first_row + rows.places[r + kRowsAhead];
      const __m512i times = _mm512_set1_epi16(static_cast<int16_t>(rows.times[r]));
#pragma GCC unroll 8
      for (size_t v = 0; v <= nb_blocks; v += kUnitsInCacheLine) __builtin_prefetch(ahead + v);
#pragma GCC unroll 8
      for (size_t v = 0; v < nb_blocks; ++v) {
        const auto* const bytes = reinterpret_cast<const __m256i*>(row + 1 + from + v);
        const __m512i costs = _mm512_cvtepu8_epi16(_mm256_load_si256(bytes));
        totals[v] = _mm512_add_epi16(totals[v], _mm512_mullo_epi16(costs, times));
        counts[v] = _mm512_mask_add_epi16(counts[v], row->there[from + v], counts[v], times);
      }
    }
#pragma GCC unroll 8
    for (size_t v = 0; v < nb_blocks; ++v) {
      add_words(totals[v], sums->sums + blocks[from + v] * kBlockLanes);
      add_words(counts[v], sums->counts + blocks[from + v] * kBlockLanes);
    }
  }
}

template <size_t nb_blocks>
__attribute__((target("avx512bw"))) void add_last_blocks_avx512(const RowShape& shape, size_t from,
                                                                const RowUnit* first_row,
                                                                const Credits& rows,
                                                                LaneSums* sums) {
  if (shape.nb_blocks - from == nb_blocks) {
    return add_blocks_avx512<nb_blocks>(shape.blocks, from, first_row, rows, sums);
  }
  if constexpr (nb_blocks > 1) {
    add_last_blocks_avx512<nb_blocks - 1>(shape, from, first_row, rows, sums);
  }
}

// All blocks at once, or as many as there are registers for in 32 bit.
__attribute__((target("avx512bw"))) void add_rows_avx512(const RowShape& shape,
                                                         const RowUnit* first_row,
                                                         const Credits& rows, LaneSums* sums) {
  constexpr size_t kAtOnce = sizeof(void*) == 8 ? kNbBlocks : 2;
  size_t from = 0;
  for (; from + kAtOnce < shape.nb_blocks; from += kAtOnce) {
    add_blocks_avx512<kAtOnce>(shape.blocks, from, first_row, rows, sums);
  }
  add_last_blocks_avx512<kAtOnce>(shape, from, first_row, rows, sums);
}

}  // namespace

std::vector<AddRows> row_adders() {
  std::vector<AddRows> all = {add_rows_plain};
  if (__builtin_cpu_supports("avx2") != 0) all.push_back(add_rows_avx2);
  if (__builtin_cpu_supports("avx512bw") != 0) all.push_back(add_rows_avx512);
  return all;
}

}  // namespace orva
