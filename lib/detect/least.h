// Many costs added up and compared, two at a time.
//
//   orva::TwoLeast two = orva::two_least_sums(costs, more, priors, count, sums);
//   size_t best = orva::place_of(two.least, sums, count);   // the first such
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

// Those of sums of three costs each, added from the first to the last, which are put in `sums`.
inline TwoLeast two_least_sums(const double* a, const double* b, const double* c, size_t count,
                               double* sums) {
  __m128d least = _mm_set1_pd(kNoCost);
  __m128d next = least;
  size_t i = 0;
  for (; i + 2 <= count; i += 2) {
    const __m128d two = _mm_add_pd(_mm_loadu_pd(a + i), _mm_loadu_pd(b + i));
    const __m128d now = _mm_add_pd(two, _mm_loadu_pd(c + i));
    _mm_storeu_pd(sums + i, now);
    next = _mm_min_pd(next, _mm_max_pd(now, least));
    least = _mm_min_pd(least, now);
  }
  TwoLeast all;
  double lanes[4];
  _mm_storeu_pd(lanes, least);
  _mm_storeu_pd(lanes + 2, next);
  for (const double lane : lanes) all.add(lane);
  for (; i < count; ++i) all.add(sums[i] = a[i] + b[i] + c[i]);
  return all;
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
