#include "lib/eval/lanes.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"

namespace orva {
namespace {

// One leaf in so many tells enough about which indices go together.
constexpr int kSampling = 16;

// How many of the sampled leaves credit both of two indices.
using Together = std::vector<std::array<float, kLanes>>;

Together count_together(const CLidMGroup& group) {
  Together together(kLanes);
  for (auto& row : together) row.fill(0);
  for (int leaf = 0; leaf < group.lstates_tsize; leaf += kSampling) {
    const uint32_t word = group.lstates[leaf];
    const uint16_t* values = group.lstates_vals + leaf_first(word);
    for (int v = 0; v < leaf_count(word); ++v) {
      auto& row = together[value_index(values[v])];
      for (int w = 0; w < leaf_count(word); ++w) row[value_index(values[w])] += 1;
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
