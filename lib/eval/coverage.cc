#include "lib/eval/coverage.h"

#include <immintrin.h>

#include <cstring>

namespace orva {
namespace {

// Vectors of totals that the registers hold, 16 of them or 8 in 32 bit.
constexpr size_t kAtOnce = sizeof(void*) == 8 ? 8 : 4;

using Words8 = uint16_t __attribute__((vector_size(16), may_alias));
using Words16 = uint16_t __attribute__((vector_size(32), may_alias));

// `Bits` has a bit for each lane of `Words`.
template <typename Bits, typename Words>
__attribute__((always_inline)) inline void add_covered(const ModelSet* all, const CoverTimes* sets,
                                                       size_t count, uint16_t* covered) {
  constexpr size_t kStep = sizeof(Words) / sizeof(uint16_t);
  static_assert(kStep == 8 * sizeof(Bits));
  Words bit_of_lane;
  for (size_t lane = 0; lane < kStep; ++lane) {
    bit_of_lane[lane] = static_cast<uint16_t>(1U << lane);
  }
  for (size_t from = 0; from < kMostModels; from += kAtOnce * kStep) {
    Words totals[kAtOnce] = {};
    for (const CoverTimes* s = sets; s != sets + count; ++s) {
      Bits bits[kAtOnce];
      memcpy(bits, reinterpret_cast<const unsigned char*>(all[s->set].words) + from / 8,
             sizeof bits);
#pragma GCC unroll 8
      for (size_t v = 0; v < kAtOnce; ++v) {
        const Words chosen = (bit_of_lane & static_cast<uint16_t>(bits[v])) == bit_of_lane;
        totals[v] += chosen & static_cast<uint16_t>(s->times);
      }
    }
#pragma GCC unroll 8
    for (size_t v = 0; v < kAtOnce; ++v) {
      *reinterpret_cast<Words*>(covered + from + v * kStep) = totals[v];
    }
  }
}

void add_sets_plain(const ModelSet* all, const CoverTimes* sets, size_t count, uint32_t /*most*/,
                    uint16_t* covered) {
  add_covered<uint8_t, Words8>(all, sets, count, covered);
}

// Totals of a byte each hold that much.
constexpr uint32_t kFew = 255;

// When no model is covered more often than a byte tells: half as many vectors.
__attribute__((target("avx2"))) void add_few_avx2(const ModelSet* all, const CoverTimes* sets,
                                                  size_t count, uint16_t* covered) {
  constexpr size_t kStep = 32;
  const __m256i bit_of_lane = _mm256_set1_epi64x(static_cast<int64_t>(0x8040201008040201));
  const __m256i byte_of_lane =
      _mm256_setr_epi64x(0, 0x0101010101010101, 0x0202020202020202, 0x0303030303030303);
  for (size_t from = 0; from < kMostModels; from += kAtOnce * kStep) {
    __m256i totals[kAtOnce] = {};
    for (const CoverTimes* s = sets; s != sets + count; ++s) {
      __builtin_prefetch(&all[s[kSetsAhead].set]);
      const __m256i times = _mm256_set1_epi8(static_cast<int8_t>(s->times));
      uint32_t bits[kAtOnce];
      memcpy(bits, reinterpret_cast<const unsigned char*>(all[s->set].words) + from / 8,
             sizeof bits);
#pragma GCC unroll 8
      for (size_t v = 0; v < kAtOnce; ++v) {
        const __m256i bytes = _mm256_set1_epi32(static_cast<int>(bits[v]));
        const __m256i chosen = _mm256_shuffle_epi8(bytes, byte_of_lane) & bit_of_lane;
        totals[v] = _mm256_add_epi8(totals[v], _mm256_cmpeq_epi8(chosen, bit_of_lane) & times);
      }
    }
    const auto* bytes = reinterpret_cast<const __m128i*>(totals);
    for (size_t v = 0; v < 2 * kAtOnce; ++v) {
      _mm256_store_si256(reinterpret_cast<__m256i*>(covered + from) + v,
                         _mm256_cvtepu8_epi16(bytes[v]));
    }
  }
}

__attribute__((target("avx2"))) void add_sets_avx2(const ModelSet* all, const CoverTimes* sets,
                                                   size_t count, uint32_t most, uint16_t* covered) {
  if (most <= kFew) return add_few_avx2(all, sets, count, covered);
  add_covered<uint16_t, Words16>(all, sets, count, covered);
}

__attribute__((target("avx512bw"))) void add_few_avx512(const ModelSet* all, const CoverTimes* sets,
                                                        size_t count, uint16_t* covered) {
  constexpr size_t kNbWords = kMostModels / 64;
  __m512i totals[kNbWords];
  for (__m512i& total : totals) total = _mm512_setzero_si512();
  for (const CoverTimes* s = sets; s != sets + count; ++s) {
    __builtin_prefetch(&all[s[kSetsAhead].set]);
    const __m512i times = _mm512_set1_epi8(static_cast<int8_t>(s->times));
#pragma GCC unroll 4
    for (size_t v = 0; v < kNbWords; ++v) {
      totals[v] = _mm512_mask_add_epi8(totals[v], all[s->set].words[v], totals[v], times);
    }
  }
  const auto* bytes = reinterpret_cast<const __m256i*>(totals);
#pragma GCC unroll 8
  for (size_t v = 0; v < 2 * kNbWords; ++v) {
    _mm512_store_si512(covered + 32 * v, _mm512_cvtepu8_epi16(bytes[v]));
  }
}

__attribute__((target("avx512bw"))) void add_sets_avx512(const ModelSet* all,
                                                         const CoverTimes* sets, size_t count,
                                                         uint32_t most, uint16_t* covered) {
  constexpr size_t kStep = 32;
  if (most <= kFew) return add_few_avx512(all, sets, count, covered);
  for (size_t from = 0; from < kMostModels; from += kAtOnce * kStep) {
    __m512i totals[kAtOnce];
    for (__m512i& total : totals) total = _mm512_setzero_si512();
    for (const CoverTimes* s = sets; s != sets + count; ++s) {
      __builtin_prefetch(&all[s[kSetsAhead].set]);
      const __m512i times = _mm512_set1_epi16(static_cast<int16_t>(s->times));
      __mmask32 bits[kAtOnce];
      memcpy(bits, reinterpret_cast<const unsigned char*>(all[s->set].words) + from / 8,
             sizeof bits);
#pragma GCC unroll 8
      for (size_t v = 0; v < kAtOnce; ++v) {
        totals[v] = _mm512_mask_add_epi16(totals[v], bits[v], totals[v], times);
      }
    }
#pragma GCC unroll 8
    for (size_t v = 0; v < kAtOnce; ++v) {
      _mm512_store_si512(covered + from + v * kStep, totals[v]);
    }
  }
}

}  // namespace

std::vector<AddCovered> cover_adders() {
  std::vector<AddCovered> all = {add_sets_plain};
  if (__builtin_cpu_supports("avx2") != 0) all.push_back(add_sets_avx2);
  if (__builtin_cpu_supports("avx512bw") != 0) all.push_back(add_sets_avx512);
  return all;
}

}  // namespace orva
