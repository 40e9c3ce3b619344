#include "lib/eval/dense_rows.h"

#include <algorithm>
#include <numeric>

#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"

namespace orva {

namespace {

// A row costs about as much as so many values one by one; and there are no more rows than that.
constexpr int kFewestValues = 12;
constexpr size_t kMostRows = 16000;

constexpr uint16_t kThere = 0x1000;
constexpr uint16_t kSumBits = 0x0FFF;

}  // namespace

DenseRows::DenseRows() { std::iota(std::begin(lane_of_), std::end(lane_of_), uint8_t{0}); }

void DenseRows::build(const CLidMGroup& group) {
  number_of_leaf_.assign(static_cast<size_t>(group.lstates_tsize), 0);
  std::vector<size_t> leaves;
  for (size_t leaf = 0; leaf < number_of_leaf_.size() && leaves.size() < kMostRows; ++leaf) {
    if (leaf_count(group.lstates[leaf]) >= kFewestValues) leaves.push_back(leaf);
  }
  rank_lanes(group, leaves);
  std::vector<size_t> longer;
  uint16_t row[kLanes];
  for (const size_t leaf : leaves) {
    if (!fill(group, leaf, row)) continue;
    if (std::any_of(row + kShortLanes, row + kLanes, [](uint16_t lane) { return lane != 0; })) {
      longer.push_back(leaf);
      continue;
    }
    short_.insert(short_.end(), row, row + kShortLanes);
    number_of_leaf_[leaf] = static_cast<uint16_t>(++nb_short_);
  }
  long_.reserve(longer.size() * kLanes);
  for (size_t i = 0; i < longer.size(); ++i) {
    fill(group, longer[i], row);
    long_.insert(long_.end(), row, row + kLanes);
    number_of_leaf_[longer[i]] = static_cast<uint16_t>(nb_short_ + i + 1);
  }
}

// The indices that most leaves credit come first.
void DenseRows::rank_lanes(const CLidMGroup& group, const std::vector<size_t>& leaves) {
  size_t uses[kLanes] = {};
  for (const size_t leaf : leaves) {
    const uint32_t word = group.lstates[leaf];
    const uint16_t* values = group.lstates_vals + leaf_first(word);
    for (int v = 0; v < leaf_count(word); ++v) ++uses[value_index(values[v])];
  }
  int ranked[kLanes];
  std::iota(std::begin(ranked), std::end(ranked), 0);
  std::stable_sort(std::begin(ranked), std::end(ranked),
                   [&uses](int a, int b) { return uses[a] > uses[b]; });
  for (size_t lane = 0; lane < kLanes; ++lane) {
    lane_of_[ranked[lane]] = static_cast<uint8_t>(lane);
  }
}

// False when an index has two values.
bool DenseRows::fill(const CLidMGroup& group, size_t leaf, uint16_t* row) const {
  std::fill_n(row, kLanes, uint16_t{0});
  const uint32_t word = group.lstates[leaf];
  const uint16_t* values = group.lstates_vals + leaf_first(word);
  for (int v = 0; v < leaf_count(word); ++v) {
    uint16_t& lane = row[lane_of_[value_index(values[v])]];
    if (lane != 0) return false;
    lane = static_cast<uint16_t>(kThere | value_cost(values[v]));
  }
  return true;
}

uint32_t RowBatch::add(const uint16_t* row, uint32_t count) {
  const uint32_t now = std::min(count, kMostTimes - last_times);
  rows[nb_rows] = row;
  times[nb_rows++] = static_cast<uint16_t>(now);
  last_times += now;
  if (last_times == kMostTimes) end_group();
  return now;
}

void RowBatch::end_group() {
  if (last_times == 0) return;
  ends[nb_groups++] = nb_rows;
  last_times = 0;
}

namespace {

// `Narrow` holds as many lanes of 16 bits as `Wide` of 32.
template <typename Narrow, typename Wide, size_t nb_lanes>
__attribute__((always_inline)) inline void add_rows(const RowBatch& batch, uint32_t* credited,
                                                    DenseSums* sums) {
  constexpr size_t kStep = sizeof(Narrow) / sizeof(uint16_t);
  for (size_t k = 0; k < nb_lanes; k += kStep) {
    Narrow all_counts = {};
    Narrow all_sums = {};  // of kMostGroups * kMostTimes values: at most 61200
    size_t j = 0;
    for (size_t g = 0; g < batch.nb_groups; ++g) {
      Narrow total = {};
      for (; j < batch.ends[g]; ++j) {
        Narrow lanes;
        __builtin_memcpy(&lanes, batch.rows[j] + k, sizeof lanes);
        total += lanes * batch.times[j];
      }
      all_counts += total >> 12;
      all_sums += total & kSumBits;
    }
    const Wide counts = __builtin_convertvector(all_counts, Wide);
    *reinterpret_cast<Wide*>(credited + k) += counts;
    *reinterpret_cast<Wide*>(sums->counts + k) += counts;
    *reinterpret_cast<Wide*>(sums->sums + k) += __builtin_convertvector(all_sums, Wide);
  }
}

using Words8 = uint16_t __attribute__((vector_size(16), may_alias));
using Longs8 = uint32_t __attribute__((vector_size(32), aligned(4), may_alias));
using Words16 = uint16_t __attribute__((vector_size(32), may_alias));
using Longs16 = uint32_t __attribute__((vector_size(64), aligned(4), may_alias));
using Words32 = uint16_t __attribute__((vector_size(64), may_alias));
using Longs32 = uint32_t __attribute__((vector_size(128), aligned(4), may_alias));

template <size_t nb_lanes>
void add_plain(const RowBatch& batch, uint32_t* credited, DenseSums* sums) {
  add_rows<Words8, Longs8, nb_lanes>(batch, credited, sums);
}

template <size_t nb_lanes>
__attribute__((target("avx2"))) void add_avx2(const RowBatch& batch, uint32_t* credited,
                                              DenseSums* sums) {
  add_rows<Words16, Longs16, nb_lanes>(batch, credited, sums);
}

template <size_t nb_lanes>
__attribute__((target("avx512bw"))) void add_avx512(const RowBatch& batch, uint32_t* credited,
                                                    DenseSums* sums) {
  add_rows<Words32, Longs32, nb_lanes>(batch, credited, sums);
}

}  // namespace

RowAdders plain_row_adders() { return {add_plain<kShortLanes>, add_plain<kLanes>}; }

RowAdders best_row_adders() {
  if (__builtin_cpu_supports("avx512bw") != 0) {
    return {add_avx512<kShortLanes>, add_avx512<kLanes>};
  }
  if (__builtin_cpu_supports("avx2") != 0) return {add_avx2<kShortLanes>, add_avx2<kLanes>};
  return plain_row_adders();
}

}  // namespace orva
