#include "lib/eval/costs.h"

#include <immintrin.h>

namespace orva {
namespace {

// Cost of a byte that neither a trigram nor a unigram of a model explains.
constexpr int kUnexplainedCost = 30;

float cost_of(const CostTerms& terms, size_t m) {
  long double cost = terms.before[m];
  if (terms.counts[m] != 0) {
    cost += static_cast<long double>(terms.sums[m]) * terms.grads[m] +
            static_cast<long double>(terms.counts[m]) * terms.lpmins[m];
  }
  const long double unexplained = terms.unexplained == nullptr ? 0 : terms.unexplained[m];
  return static_cast<float>(cost + kUnexplainedCost * unexplained);
}

float quotient_of(float cost, int total) {
  return static_cast<float>(static_cast<long double>(cost) / total);
}

void add_plain(const CostTerms& terms, size_t n, float* costs) {
  for (size_t m = 0; m < n; ++m) costs[m] = cost_of(terms, m);
}

void divide_plain(float* costs, size_t n, int total) {
  for (size_t m = 0; m < n; ++m) costs[m] = quotient_of(costs[m], total);
}

constexpr size_t kAtOnce = 8;
constexpr __mmask8 kAll = 0xFF;

// Steps in double precision, of which there are fewer than 8, are off by less than this share of
// the numbers they go through; nearly always all numbers that near are the same when rounded.
constexpr double kMostOff = 0x1p-50;

__attribute__((target("avx512f"))) inline __m512d doubles(const float* at) {
  return _mm512_maskz_cvtps_pd(kAll, _mm256_loadu_ps(at));
}

__attribute__((target("avx512f"))) inline __m512d doubles(const int* at) {
  return _mm512_maskz_cvtepi32_pd(kAll, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at)));
}

__attribute__((target("avx512f"))) inline __m512d doubles(const uint32_t* at) {
  return _mm512_maskz_cvtepu32_pd(kAll, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at)));
}

// Stores floats, unless they depend on what `x` may be off by.
__attribute__((target("avx512f"))) inline bool store_certain(__m512d x, __m512d off, float* at) {
  const __m256 low = _mm512_maskz_cvtpd_ps(kAll, x - off);
  const __m256 high = _mm512_maskz_cvtpd_ps(kAll, x + off);
  if (_mm256_movemask_ps(_mm256_cmp_ps(low, high, _CMP_NEQ_UQ)) != 0) return false;
  _mm256_storeu_ps(at, _mm512_maskz_cvtpd_ps(kAll, x));
  return true;
}

__attribute__((target("avx512f"))) void add_avx512(const CostTerms& terms, size_t n, float* costs) {
  size_t m = 0;
  for (; m + kAtOnce <= n; m += kAtOnce) {
    const __m512d before = doubles(terms.before + m);
    const __m512d counts = doubles(terms.counts + m);
    const __mmask8 has_values = _mm512_cmp_pd_mask(counts, _mm512_setzero_pd(), _CMP_NEQ_OQ);
    const __m512d sums = doubles(terms.sums + m) * doubles(terms.grads + m);
    const __m512d least = counts * doubles(terms.lpmins + m);
    const __m512d values = _mm512_maskz_mov_pd(has_values, sums + least);
    const __m512d unexplained = terms.unexplained == nullptr
                                    ? _mm512_setzero_pd()
                                    : doubles(terms.unexplained + m) * double{kUnexplainedCost};
    const __m512d off = (_mm512_abs_pd(before) + _mm512_abs_pd(sums) + _mm512_abs_pd(least) +
                         _mm512_abs_pd(unexplained)) *
                        kMostOff;
    if (store_certain(before + values + unexplained, off, costs + m)) continue;
    for (size_t i = m; i < m + kAtOnce; ++i) costs[i] = cost_of(terms, i);
  }
  for (; m < n; ++m) costs[m] = cost_of(terms, m);
}

__attribute__((target("avx512f"))) void divide_avx512(float* costs, size_t n, int total) {
  size_t m = 0;
  for (; m + kAtOnce <= n; m += kAtOnce) {
    const __m512d quotients = doubles(costs + m) / static_cast<double>(total);
    if (store_certain(quotients, quotients * kMostOff, costs + m)) continue;
    for (size_t i = m; i < m + kAtOnce; ++i) costs[i] = quotient_of(costs[i], total);
  }
  for (; m < n; ++m) costs[m] = quotient_of(costs[m], total);
}

constexpr CostAdders kAdders[] = {{add_plain, divide_plain}, {add_avx512, divide_avx512}};

}  // namespace

std::span<const CostAdders> cost_adders() {
  return std::span(kAdders).first(__builtin_cpu_supports("avx512f") != 0 ? 2 : 1);
}

}  // namespace orva
