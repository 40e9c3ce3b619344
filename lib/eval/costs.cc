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

// The first of eight models that are there.
__mmask8 first_of(size_t nb_models) {
  return nb_models >= kAtOnce ? kAll : static_cast<__mmask8>((1U << nb_models) - 1);
}

__attribute__((target("avx512f,avx512vl"))) inline __m512d doubles(__mmask8 there,
                                                                   const float* at) {
  return _mm512_maskz_cvtps_pd(kAll, _mm256_maskz_loadu_ps(there, at));
}

__attribute__((target("avx512f,avx512vl"))) inline __m512d doubles(__mmask8 there, const int* at) {
  return _mm512_maskz_cvtepi32_pd(kAll, _mm256_maskz_loadu_epi32(there, at));
}

__attribute__((target("avx512f,avx512vl"))) inline __m512d doubles(__mmask8 there,
                                                                   const uint32_t* at) {
  return _mm512_maskz_cvtepu32_pd(kAll, _mm256_maskz_loadu_epi32(there, at));
}

// Which numbers depend on what `x` may be off by, once they are floats.
__attribute__((target("avx512f,avx512vl"))) inline __mmask8 uncertain(__m512d x, __m512d off) {
  const __m256 low = _mm512_maskz_cvtpd_ps(kAll, x - off);
  const __m256 high = _mm512_maskz_cvtpd_ps(kAll, x + off);
  return _mm256_cmp_ps_mask(low, high, _CMP_NEQ_UQ);
}

// What the product and the sum of two numbers are off by.
__attribute__((target("avx512f"))) inline __m512d product_error(__m512d a, __m512d b) {
  return _mm512_fmsub_pd(a, b, a * b);
}
__attribute__((target("avx512f"))) inline __m512d sum_error(__m512d a, __m512d b) {
  const __m512d of_b = (a + b) - a;
  return (a - ((a + b) - of_b)) + (b - of_b);
}

__attribute__((target("avx512f,avx512vl"))) void add_avx512(const CostTerms& terms, size_t n,
                                                            float* costs) {
  for (size_t m = 0; m < n; m += kAtOnce) {
    const __mmask8 there = first_of(n - m);
    const __m512d before = doubles(there, terms.before + m);
    const __m512d counts = doubles(there, terms.counts + m);
    const __mmask8 has_values = _mm512_cmp_pd_mask(counts, _mm512_setzero_pd(), _CMP_NEQ_OQ);
    const __m512d q_sums = doubles(there, terms.sums + m);
    const __m512d grads = doubles(there, terms.grads + m);
    const __m512d lpmins = doubles(there, terms.lpmins + m);
    const __m512d sums = q_sums * grads;
    const __m512d least = counts * lpmins;
    const __m512d values = _mm512_maskz_mov_pd(has_values, sums + least);
    const __m512d unexplained =
        terms.unexplained == nullptr
            ? _mm512_setzero_pd()
            : doubles(there, terms.unexplained + m) * double{kUnexplainedCost};
    const __m512d off = (_mm512_abs_pd(before) + _mm512_abs_pd(sums) + _mm512_abs_pd(least) +
                         _mm512_abs_pd(unexplained)) *
                        kMostOff;
    const __m512d all = before + values + unexplained;
    __mmask8 unknown = uncertain(all, off) & there;
    if (unknown != 0) {
      // Where no step rounded, as happens half-way between floats, nothing is off.
      const __m512d of_values =
          _mm512_maskz_mov_pd(has_values, _mm512_abs_pd(product_error(q_sums, grads)) +
                                              _mm512_abs_pd(product_error(counts, lpmins)) +
                                              _mm512_abs_pd(sum_error(sums, least)));
      const __m512d error = of_values + _mm512_abs_pd(sum_error(before, values)) +
                            _mm512_abs_pd(sum_error(before + values, unexplained));
      unknown &= _mm512_cmp_pd_mask(error, _mm512_setzero_pd(), _CMP_NEQ_UQ);
    }
    // Before their places are overwritten, which may be where they were.
    float slow[kAtOnce];
    for (size_t i = 0; unknown >> i != 0; ++i) slow[i] = cost_of(terms, m + i);
    _mm256_mask_storeu_ps(costs + m, there, _mm512_maskz_cvtpd_ps(kAll, all));
    for (size_t i = 0; unknown >> i != 0; ++i) costs[m + i] = slow[i];
  }
}

__attribute__((target("avx512f,avx512vl"))) void divide_avx512(float* costs, size_t n, int total) {
  for (size_t m = 0; m < n; m += kAtOnce) {
    const __mmask8 there = first_of(n - m);
    const __m512d divisor = _mm512_set1_pd(total);
    const __m512d quotients = doubles(there, costs + m) / divisor;
    const __mmask8 unknown = uncertain(quotients, quotients * kMostOff) & there;
    float slow[kAtOnce];
    for (size_t i = 0; unknown >> i != 0; ++i) slow[i] = quotient_of(costs[m + i], total);
    _mm256_mask_storeu_ps(costs + m, there, _mm512_maskz_cvtpd_ps(kAll, quotients));
    for (size_t i = 0; unknown >> i != 0; ++i) costs[m + i] = slow[i];
  }
}

constexpr CostAdders kAdders[] = {{add_plain, divide_plain}, {add_avx512, divide_avx512}};

}  // namespace

std::span<const CostAdders> cost_adders() {
  const bool is_wide =
      __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512vl") != 0;
  return std::span(kAdders).first(is_wide ? 2 : 1);
}

}  // namespace orva
