#include "lib/eval/lanes.h"

#include <algorithm>
#include <numeric>
#include <span>
#include <vector>

#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"

namespace orva {
namespace {

// One leaf in so many tells enough about which indices go together.
constexpr int kSampling = 16;

// How many of the sampled leaves credit both of two indices.
using Together = std::vector<std::array<float, kLanes>>;

// The values of a leaf; none when they lie outside their table, as those of leaves that no trigram
// leads to may.
std::span<const uint16_t> values_of(const CLidMGroup& group, int leaf) {
  const uint32_t word = group.lstates[leaf];
  const int first = leaf_first(word);
  const int count = leaf_count(word);
  if (first < 0 || count <= 0 || int64_t{first} + count > group.lstates_vals_tsize) return {};
  return {group.lstates_vals + first, static_cast<size_t>(count)};
}

Together count_together(const CLidMGroup& group) {
  Together together(kLanes);
  for (auto& row : together) row.fill(0);
  for (int leaf = 0; leaf < group.lstates_tsize; leaf += kSampling) {
    const std::span<const uint16_t> values = values_of(group, leaf);
    for (const uint16_t value : values) {
      auto& row = together[value_index(value)];
      for (const uint16_t other : values) row[value_index(other)] += 1;
    }
  }
  return together;
}

}  // namespace

// A block begins with the most credited index that is left and takes, one after the other, the
// index whose leaves have most in common with those of the block.
LaneOrder order_lanes(const CLidMGroup& group) {
  const Together together = count_together(group);
  std::vector<size_t> left(kLanes);
  std::iota(left.begin(), left.end(), size_t{0});
  std::stable_sort(left.begin(), left.end(),
                   [&](size_t a, size_t b) { return together[a][a] > together[b][b]; });
  LaneOrder lane_of = {};
  std::array<float, kLanes> nearness = {};
  for (size_t lane = 0; lane < kLanes; ++lane) {
    if (lane % kBlockLanes == 0) nearness.fill(0);
    // The first of the nearest: in a new block the most credited of all.
    const auto next = std::max_element(
        left.begin(), left.end(), [&](size_t a, size_t b) { return nearness[a] < nearness[b]; });
    const size_t taken = *next;
    left.erase(next);
    lane_of[taken] = static_cast<uint8_t>(lane);
    for (const size_t i : left) {
      const float common = together[taken][i];
      nearness[i] += common / (together[taken][taken] + together[i][i] - common + 1);
    }
  }
  return lane_of;
}

}  // namespace orva
