#include "lib/detect/cost_rows.h"

#include <immintrin.h>

namespace orva {

namespace {

constexpr size_t kNbBytes = 256;

// The row of a trigram that has one of its own, or of its last byte.
__attribute__((always_inline)) inline size_t row_of(int known, unsigned char last) {
  return known == KnownTrigrams::kNone ? last : kNbBytes + static_cast<size_t>(known);
}

__attribute__((always_inline)) inline size_t row_of(const TrigramPlace& place, unsigned char last) {
  return place.count == TrigramPlace::kRow ? place.first() : last;
}

__attribute__((always_inline)) inline const TrigramPlace* place_of(const CostRows& rows,
                                                                   int known) {
  static constexpr TrigramPlace kNowhere(0, 0);
  return known == KnownTrigrams::kNone ? &kNowhere : rows.places + known;
}

// Puts the row of a last byte right. A sum may be short of what is taken back until that is added.
__attribute__((always_inline)) inline void add_entries(const CostRows& rows,
                                                       const TrigramPlace& place,
                                                       const uint16_t* row, uint32_t* sums) {
  if (place.count == 0 || place.count == TrigramPlace::kRow) return;
  const CostEntry* entry = rows.entries + place.first();
  for (const CostEntry* const end = entry + place.count; entry != end; ++entry) {
    sums[entry->column] += uint32_t{entry->cost} - row[entry->column];
  }
}

void add_row(const uint16_t* row, size_t width, uint32_t* sums) {
  for (size_t k = 0; k < width; ++k) sums[k] += row[k];
}

void add_all_plain(const CostRows& rows, const unsigned char* bytes, size_t count, uint32_t* sums) {
  KnownTrigrams::Cursor cursor(rows.index, bytes);
  for (size_t i = 0; i < count; ++i) {
    const unsigned char last = bytes[i + 2];
    add_row(rows.rows + row_of(cursor.next(last), last) * rows.width, rows.width, sums);
  }
}

void add_listed_plain(const CostRows& rows, const unsigned char* bytes, size_t count,
                      uint32_t* sums) {
  KnownTrigrams::Cursor cursor(rows.index, bytes);
  for (size_t i = 0; i < count; ++i) {
    const unsigned char last = bytes[i + 2];
    const TrigramPlace& place = *place_of(rows, cursor.next(last));
    const uint16_t* const row = rows.rows + row_of(place, last) * rows.width;
    add_entries(rows, place, row, sums);
    add_row(row, rows.width, sums);
  }
}

// Sums of kVectors times kRowStep columns, which stay in registers.
template <size_t kVectors>
struct Sums {
  __m256i of[kVectors];

  __attribute__((target("avx2"), always_inline)) Sums() {
#pragma GCC unroll 8
    for (size_t v = 0; v < kVectors; ++v) of[v] = _mm256_setzero_si256();
  }
  __attribute__((target("avx2"), always_inline)) void add(const uint16_t* row) {
#pragma GCC unroll 8
    for (size_t v = 0; v < kVectors; ++v) {
      const __m128i costs = _mm_loadu_si128(reinterpret_cast<const __m128i*>(row + v * kRowStep));
      of[v] = _mm256_add_epi32(of[v], _mm256_cvtepu16_epi32(costs));
    }
  }
  __attribute__((target("avx2"), always_inline)) void add_to(uint32_t* sums) const {
#pragma GCC unroll 8
    for (size_t v = 0; v < kVectors; ++v) {
      auto* const at = reinterpret_cast<__m256i*>(sums + v * kRowStep);
      _mm256_storeu_si256(at, _mm256_add_epi32(_mm256_loadu_si256(at), of[v]));
    }
  }
};

template <size_t kVectors>
__attribute__((target("avx2"))) void add_all_vectors(const CostRows& rows,
                                                     const unsigned char* bytes, size_t count,
                                                     uint32_t* sums) {
  constexpr size_t kWidth = kVectors * kRowStep;
  Sums<kVectors> all;
  KnownTrigrams::Cursor cursor(rows.index, bytes);
  for (size_t i = 0; i < count; ++i) {
    const unsigned char last = bytes[i + 2];
    all.add(rows.rows + row_of(cursor.next(last), last) * kWidth);
  }
  all.add_to(sums);
}

template <size_t kVectors>
__attribute__((target("avx2"))) void add_listed_vectors(const CostRows& rows,
                                                        const unsigned char* bytes, size_t count,
                                                        uint32_t* sums) {
  constexpr size_t kWidth = kVectors * kRowStep;
  Sums<kVectors> all;
  KnownTrigrams::Cursor cursor(rows.index, bytes);
  for (size_t i = 0; i < count; ++i) {
    const unsigned char last = bytes[i + 2];
    const TrigramPlace& place = *place_of(rows, cursor.next(last));
    const uint16_t* const row = rows.rows + row_of(place, last) * kWidth;
    add_entries(rows, place, row, sums);
    all.add(row);
  }
  all.add_to(sums);
}

// The widths of the shipped models have code of their own.
void add_all_avx2(const CostRows& rows, const unsigned char* bytes, size_t count, uint32_t* sums) {
  if (rows.width == kRowStep) return add_all_vectors<1>(rows, bytes, count, sums);
  if (rows.width == 2 * kRowStep) return add_all_vectors<2>(rows, bytes, count, sums);
  add_all_plain(rows, bytes, count, sums);
}

void add_listed_avx2(const CostRows& rows, const unsigned char* bytes, size_t count,
                     uint32_t* sums) {
  if (rows.width == 3 * kRowStep) return add_listed_vectors<3>(rows, bytes, count, sums);
  if (rows.width == 8 * kRowStep) return add_listed_vectors<8>(rows, bytes, count, sums);
  add_listed_plain(rows, bytes, count, sums);
}

}  // namespace

CostAdders plain_cost_adders() { return {add_all_plain, add_listed_plain}; }

const CostAdders& best_cost_adders() {
  static const CostAdders best = __builtin_cpu_supports("avx2") != 0
                                     ? CostAdders{add_all_avx2, add_listed_avx2}
                                     : plain_cost_adders();
  return best;
}

}  // namespace orva
