#include "lib/eval/row_adder.h"

#include <immintrin.h>

namespace orva {

RowShape::RowShape(unsigned block_mask) : mask(static_cast<uint8_t>(block_mask)), nb_blocks(0) {
  for (size_t b = 0; b < kNbBlocks; ++b) {
    place[b] = nb_blocks;
    if ((mask >> b & 1) != 0) blocks[nb_blocks++] = static_cast<uint8_t>(b);
  }
}

namespace {

const LaneValue* row_at(const LaneValue* first_row, uint32_t place) {
  return first_row + size_t{place} * (kRowUnit / sizeof(LaneValue));
}

// Adds `nb_blocks` blocks from block `from` of the rows on, the totals of which fit into the vector
// registers. `Bytes` are half as long as `Longs`.
template <typename Bytes, typename Words, typename Longs, size_t nb_blocks>
__attribute__((always_inline)) inline void add_blocks(const uint8_t* blocks, size_t from,
                                                      const LaneValue* first_row,
                                                      const Credits& rows, LaneSums* sums) {
  constexpr size_t kStep = sizeof(Longs) / sizeof(uint32_t);
  constexpr size_t kInBlock = kBlockLanes / kStep;
  constexpr size_t kNbVectors = nb_blocks * kInBlock;
  Longs totals[kNbVectors] = {};
  for (size_t r = 0; r < rows.count; ++r) {
    const Bytes* lanes =
        reinterpret_cast<const Bytes*>(row_at(first_row, rows.places[r]) + from * kBlockLanes);
#pragma GCC unroll 32
    for (size_t v = 0; v < kNbVectors; ++v) {
      const Words words = __builtin_convertvector(lanes[v], Words);
      totals[v] += reinterpret_cast<Longs>(words) * rows.times[r];
    }
  }
#pragma GCC unroll 32
  for (size_t v = 0; v < kNbVectors; ++v) {
    const size_t lane = blocks[from + v / kInBlock] * kBlockLanes + v % kInBlock * kStep;
    *reinterpret_cast<Longs*>(sums->counts + lane) += totals[v] >> kCountShift;
    *reinterpret_cast<Longs*>(sums->sums + lane) += totals[v] & kSumMask;
  }
}

// `at_once` blocks are added at once.
template <typename Bytes, typename Words, typename Longs, size_t at_once>
__attribute__((always_inline)) inline void add_rows(const RowShape& shape,
                                                    const LaneValue* first_row, const Credits& rows,
                                                    LaneSums* sums) {
  size_t from = 0;
  for (; from + at_once <= shape.nb_blocks; from += at_once) {
    add_blocks<Bytes, Words, Longs, at_once>(shape.blocks, from, first_row, rows, sums);
  }
  if constexpr (at_once > 2) {
    if (from + 2 == shape.nb_blocks) {
      return add_blocks<Bytes, Words, Longs, 2>(shape.blocks, from, first_row, rows, sums);
    }
  }
  if (from != shape.nb_blocks) {
    add_blocks<Bytes, Words, Longs, 1>(shape.blocks, from, first_row, rows, sums);
  }
}

using Bytes8 = uint8_t __attribute__((vector_size(8), may_alias));
using Words8 = uint16_t __attribute__((vector_size(16)));
using Longs4 = uint32_t __attribute__((vector_size(16), may_alias));
using Bytes16 = uint8_t __attribute__((vector_size(16), may_alias));
using Words16 = uint16_t __attribute__((vector_size(32)));
using Longs8 = uint32_t __attribute__((vector_size(32), may_alias));
using Longs16 = uint32_t __attribute__((vector_size(64), may_alias));

// Blocks whose totals leave a register or two of 16, or of the 8 in 32 bit, to the rest.
constexpr size_t kAvx2AtOnce = sizeof(void*) == 8 ? 3 : 1;

void add_rows_plain(const RowShape& shape, const LaneValue* first_row, const Credits& rows,
                    LaneSums* sums) {
  add_rows<Bytes8, Words8, Longs4, 1>(shape, first_row, rows, sums);
}

__attribute__((target("avx2"))) void add_rows_avx2(const RowShape& shape,
                                                   const LaneValue* first_row, const Credits& rows,
                                                   LaneSums* sums) {
  add_rows<Bytes16, Words16, Longs8, kAvx2AtOnce>(shape, first_row, rows, sums);
}

// By hand, for the compiler would widen each vector in two halves.
template <size_t nb_blocks>
__attribute__((target("avx512bw"))) void add_blocks_avx512(const uint8_t* blocks, size_t from,
                                                           const LaneValue* first_row,
                                                           const Credits& rows, LaneSums* sums) {
  constexpr size_t kStep = 16;
  constexpr size_t kNbVectors = nb_blocks * 2;
  Longs16 totals[kNbVectors] = {};
  for (size_t r = 0; r < rows.count; ++r) {
    const LaneValue* lanes = row_at(first_row, rows.places[r]) + from * kBlockLanes;
    __builtin_prefetch(row_at(first_row, rows.places[r + kRowsAhead]) + from * kBlockLanes);
#pragma GCC unroll 32
    for (size_t v = 0; v < kNbVectors; ++v) {
      const __m512i words = _mm512_cvtepu8_epi16(
          _mm256_load_si256(reinterpret_cast<const __m256i*>(lanes + v * kStep)));
      totals[v] += reinterpret_cast<Longs16>(words) * rows.times[r];
    }
  }
#pragma GCC unroll 32
  for (size_t v = 0; v < kNbVectors; ++v) {
    const size_t lane = blocks[from + v / 2] * kBlockLanes + v % 2 * kStep;
    *reinterpret_cast<Longs16*>(sums->counts + lane) += totals[v] >> kCountShift;
    *reinterpret_cast<Longs16*>(sums->sums + lane) += totals[v] & kSumMask;
  }
}

__attribute__((target("avx512bw"))) void add_rows_avx512(const RowShape& shape,
                                                         const LaneValue* first_row,
                                                         const Credits& rows, LaneSums* sums) {
  constexpr size_t kAtOnce = 3;
  size_t from = 0;
  for (; from + kAtOnce <= shape.nb_blocks; from += kAtOnce) {
    add_blocks_avx512<kAtOnce>(shape.blocks, from, first_row, rows, sums);
  }
  if (from + 2 == shape.nb_blocks) {
    add_blocks_avx512<2>(shape.blocks, from, first_row, rows, sums);
  } else if (from != shape.nb_blocks) {
    add_blocks_avx512<1>(shape.blocks, from, first_row, rows, sums);
  }
}

}  // namespace

std::vector<AddRows> row_adders() {
  std::vector<AddRows> all = {add_rows_plain};
  if (__builtin_cpu_supports("avx2") != 0) all.push_back(add_rows_avx2);
  if (__builtin_cpu_supports("avx512bw") != 0) all.push_back(add_rows_avx512);
  return all;
}

}  // namespace orva
