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

// Totals are words of 16 bits, which hold that many of the largest costs.
constexpr uint32_t kMostAtOnce = 255;
static_assert(kMostTimesOfRow <= kMostAtOnce && kMostAtOnce * 255 <= 0xFFFF);

// Which rows from `first` on come no more than kMostAtOnce times together: where they end.
size_t end_of_some(const Credits& rows, size_t first) {
  size_t end = first;
  for (uint32_t times = 0; end < rows.count; ++end) {
    times += rows.times[end];
    if (times > kMostAtOnce) break;
  }
  return end;
}

// Adds `nb_blocks` blocks from block `from` of the rows on, the totals of which fit into the vector
// registers. `Bytes` are half as long as `Words`.
template <typename Bytes, typename Words, size_t nb_blocks>
__attribute__((always_inline)) inline void add_blocks(const uint8_t* blocks, size_t from,
                                                      const RowUnit* first_row, const Credits& rows,
                                                      LaneSums* sums) {
  constexpr size_t kStep = sizeof(Words) / sizeof(uint16_t);
  constexpr size_t kInBlock = kBlockLanes / kStep;
  constexpr size_t kNbVectors = nb_blocks * kInBlock;
  Words bit_of_lane;
  for (size_t i = 0; i < kStep; ++i) bit_of_lane[i] = static_cast<uint16_t>(1U << i);
  for (size_t r = 0; r < rows.count;) {
    Words totals[kNbVectors] = {};
    Words counts[kNbVectors] = {};
    for (const size_t end = end_of_some(rows, r); r < end; ++r) {
      const RowUnit* const row = first_row + rows.places[r];
      const auto times = static_cast<uint16_t>(rows.times[r]);
#pragma GCC unroll 32
      for (size_t v = 0; v < kNbVectors; ++v) {
        const size_t block = from + v / kInBlock;
        const uint8_t* const costs = row[1 + block].costs + v % kInBlock * kStep;
        totals[v] += __builtin_convertvector(*reinterpret_cast<const Bytes*>(costs), Words) * times;
        const uint32_t there = row->there[block] >> v % kInBlock * kStep;
        const auto bits = static_cast<uint16_t>(there & ((1U << kStep) - 1));
        counts[v] += ((bit_of_lane & bits) == bit_of_lane) & times;
      }
    }
    for (size_t v = 0; v < kNbVectors; ++v) {
      const size_t lane = blocks[from + v / kInBlock] * kBlockLanes + v % kInBlock * kStep;
      for (size_t i = 0; i < kStep; ++i) {
        sums->counts[lane + i] += counts[v][i];
        sums->sums[lane + i] += totals[v][i];
      }
    }
  }
}

// `at_once` blocks are added at once.
template <typename Bytes, typename Words, size_t at_once>
__attribute__((always_inline)) inline void add_rows(const RowShape& shape, const RowUnit* first_row,
                                                    const Credits& rows, LaneSums* sums) {
  size_t from = 0;
  for (; from + at_once <= shape.nb_blocks; from += at_once) {
    add_blocks<Bytes, Words, at_once>(shape.blocks, from, first_row, rows, sums);
  }
  for (; from < shape.nb_blocks; ++from) {
    add_blocks<Bytes, Words, 1>(shape.blocks, from, first_row, rows, sums);
  }
}

using Bytes8 = uint8_t __attribute__((vector_size(8), may_alias));
using Words8 = uint16_t __attribute__((vector_size(16)));
using Bytes16 = uint8_t __attribute__((vector_size(16), may_alias));
using Words16 = uint16_t __attribute__((vector_size(32)));
using Longs16 = uint32_t __attribute__((vector_size(64), may_alias));

// Blocks whose totals leave some registers of 16 to the rest, of which there are 8 in 32 bit.
constexpr size_t kAvx2AtOnce = sizeof(void*) == 8 ? 2 : 1;

void add_rows_plain(const RowShape& shape, const RowUnit* first_row, const Credits& rows,
                    LaneSums* sums) {
  add_rows<Bytes8, Words8, 1>(shape, first_row, rows, sums);
}

__attribute__((target("avx2"))) void add_rows_avx2(const RowShape& shape, const RowUnit* first_row,
                                                   const Credits& rows, LaneSums* sums) {
  add_rows<Bytes16, Words16, kAvx2AtOnce>(shape, first_row, rows, sums);
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
    uint32_t left = kMostAtOnce;
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
