// Many costs added up and compared, two at a time.
//
//   orva::TwoLeast two = orva::two_least(costs, count);
//   size_t best = orva::place_of(two.least, costs, count);   // the first such
//
// Ownership: none; plain functions.
// Threads:   any number.
#ifndef ORVA_LIB_DETECT_LEAST_H_
#define ORVA_LIB_DETECT_LEAST_H_

#include <emmintrin.h>

#include <algorithm>
#include <cstddef>
#include <limits>

namespace orva {

// No cost at all: infinity, which is more than any.
inline constexpr double kNoCost = std::numeric_limits<double>::infinity();

inline double least_lane(__m128d lanes) {
  return _mm_cvtsd_f64(_mm_min_sd(lanes, _mm_unpackhi_pd(lanes, lanes)));
}

// kNoCost when there are none. REQUIRES: numbers.
inline double least_of(const double* costs, size_t count) {
  __m128d least = _mm_set1_pd(kNoCost);
  __m128d other = least;
  size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    least = _mm_min_pd(least, _mm_loadu_pd(costs + i));
    other = _mm_min_pd(other, _mm_loadu_pd(costs + i + 2));
  }
  double all = least_lane(_mm_min_pd(least, other));
  for (; i < count; ++i) all = std::min(all, costs[i]);
  return all;
}

// The least and the one after it, which may be equal.
struct TwoLeast {
  double least = kNoCost;
  double next = kNoCost;

  void add(double cost) {
    next = std::min(next, std::max(cost, least));
    least = std::min(least, cost);
  }
};

inline TwoLeast two_least(const double* costs, size_t count) {
  __m128d least[2] = {_mm_set1_pd(kNoCost), _mm_set1_pd(kNoCost)};
  __m128d next[2] = {least[0], least[0]};
  size_t i = 0;
  for (; i + 4 <= count; i += 4) {
#pragma GCC unroll 2
    for (size_t v = 0; v < 2; ++v) {
      const __m128d now = _mm_loadu_pd(costs + i + 2 * v);
      next[v] = _mm_min_pd(next[v], _mm_max_pd(now, least[v]));
      least[v] = _mm_min_pd(least[v], now);
    }
  }
  TwoLeast two;
#pragma GCC unroll 2
  for (size_t v = 0; v < 2; ++v) {
    double lanes[4];
    _mm_storeu_pd(lanes, least[v]);
    _mm_storeu_pd(lanes + 2, next[v]);
    for (const double lane : lanes) two.add(lane);
  }
  for (; i < count; ++i) two.add(costs[i]);
  return two;
}

// The first place of a cost that is there.
inline size_t place_of(double cost, const double* costs, size_t count) {
  const __m128d wanted = _mm_set1_pd(cost);
  size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    const __m128d here = _mm_or_pd(_mm_cmpeq_pd(_mm_loadu_pd(costs + i), wanted),
                                   _mm_cmpeq_pd(_mm_loadu_pd(costs + i + 2), wanted));
    if (_mm_movemask_pd(here) != 0) break;
  }
  return static_cast<size_t>(std::find(costs + i, costs + count, cost) - costs);
}

// Adds each to its like.
inline void add_to(double* sums, const double* more, size_t count) {
  size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    _mm_storeu_pd(sums + i, _mm_add_pd(_mm_loadu_pd(sums + i), _mm_loadu_pd(more + i)));
    _mm_storeu_pd(sums + i + 2, _mm_add_pd(_mm_loadu_pd(sums + i + 2), _mm_loadu_pd(more + i + 2)));
  }
  for (; i < count; ++i) sums[i] += more[i];
}

}  // namespace orva

#endif  // ORVA_LIB_DETECT_LEAST_H_
