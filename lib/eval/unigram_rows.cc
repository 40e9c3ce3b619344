#include "lib/eval/unigram_rows.h"

#include <immintrin.h>

#include "lib/mgroup/group_format.h"

namespace orva {

bool UnigramRows::build(const std::vector<int>& fact_of, const UlpEntry* const* first,
                        const int* count) {
  rows_.assign(kNbBytes, Row());
  nb_models_ = fact_of.size();
  for (size_t b = 0; b < rows_.size(); ++b) {
    for (const UlpEntry* e = first[b]; e != first[b] + count[b]; ++e) {
      Value& value = rows_[b].models[e->model];
      if (value.there != 0 || e->group != fact_of[e->model]) return false;
      value = {e->q, kThere};
    }
  }
  return true;
}

std::vector<UnigramRows::Add> UnigramRows::adders() {
  std::vector<Add> all = {add_plain};
  if (__builtin_cpu_supports("avx2") != 0) all.push_back(add_avx2);
  if (__builtin_cpu_supports("avx512bw") != 0) all.push_back(add_avx512);
  return all;
}

void UnigramRows::add(int byte, uint32_t count, const uint16_t* covered) {
  const Row& row = rows_[static_cast<size_t>(byte)];
  if (count != 0 && count <= kMostCounted) {
    if (count > kMostCounted - nb_added_) drain();
    nb_added_ += count;
    return add_(row, count, covered, nb_models_, added_);
  }
  for (size_t m = 0; m < nb_models_; ++m) {
    const uint32_t times = count - covered[m];
    sums_.sums[m] += row.models[m].cost * times;
    sums_.counts[m] += row.models[m].there != 0 ? times : 0;
  }
}

void UnigramRows::drain() {
  for (size_t m = 0; m < kLanes; ++m) {
    sums_.sums[m] += added_[m] & kSumMask;
    sums_.counts[m] += added_[m] >> kCountShift;
    added_[m] = 0;
  }
  nb_added_ = 0;
}

const LaneSums& UnigramRows::sums() {
  drain();
  return sums_;
}

void UnigramRows::clear() {
  drain();
  sums_ = LaneSums();
}

// `Bytes` and `Shorts` are half as long as `Longs`.
template <typename Bytes, typename Shorts, typename Words, typename Longs>
__attribute__((always_inline)) inline void UnigramRows::add_row(const Row& row, uint32_t count,
                                                                const uint16_t* covered,
                                                                size_t nb_models, uint32_t* sums) {
  constexpr size_t kStep = sizeof(Longs) / sizeof(uint32_t);
  for (size_t m = 0; m < nb_models; m += kStep) {
    const Words words =
        __builtin_convertvector(*reinterpret_cast<const Bytes*>(row.models + m), Words);
    const Longs times =
        count - __builtin_convertvector(*reinterpret_cast<const Shorts*>(covered + m), Longs);
    *reinterpret_cast<Longs*>(sums + m) += reinterpret_cast<Longs>(words) * times;
  }
}

namespace {

using Bytes8 = uint8_t __attribute__((vector_size(8), may_alias));
using Shorts4 = uint16_t __attribute__((vector_size(8), may_alias));
using Words8 = uint16_t __attribute__((vector_size(16), may_alias));
using Longs4 = uint32_t __attribute__((vector_size(16), may_alias));
using Bytes16 = uint8_t __attribute__((vector_size(16), may_alias));
using Words16 = uint16_t __attribute__((vector_size(32)));
using Longs8 = uint32_t __attribute__((vector_size(32), may_alias));
using Longs16 = uint32_t __attribute__((vector_size(64), may_alias));

}  // namespace

void UnigramRows::add_plain(const Row& row, uint32_t count, const uint16_t* covered,
                            size_t nb_models, uint32_t* sums) {
  add_row<Bytes8, Shorts4, Words8, Longs4>(row, count, covered, nb_models, sums);
}

__attribute__((target("avx2"))) void UnigramRows::add_avx2(const Row& row, uint32_t count,
                                                           const uint16_t* covered,
                                                           size_t nb_models, uint32_t* sums) {
  add_row<Bytes16, Words8, Words16, Longs8>(row, count, covered, nb_models, sums);
}

// By hand, for the compiler would widen each vector in two halves.
__attribute__((target("avx512bw"))) void UnigramRows::add_avx512(const Row& row, uint32_t count,
                                                                 const uint16_t* covered,
                                                                 size_t nb_models, uint32_t* sums) {
  for (size_t m = 0; m < nb_models; m += 16) {
    const __m512i words =
        _mm512_cvtepu8_epi16(_mm256_load_si256(reinterpret_cast<const __m256i*>(row.models + m)));
    const __m512i not_times = _mm512_maskz_cvtepu16_epi32(
        0xFFFF, _mm256_load_si256(reinterpret_cast<const __m256i*>(covered + m)));
    const Longs16 times = count - reinterpret_cast<Longs16>(not_times);
    *reinterpret_cast<Longs16*>(sums + m) += reinterpret_cast<Longs16>(words) * times;
  }
}

}  // namespace orva
