// Lanes: the accumulator indices of a group, models and fact sets, in the order in which vectors
// hold them.
//
// A lane of unigram costs is two bytes: the cost of a value and kThere, or 0 without a value. They
// are added up with their lanes as words of 32 bits, the number of values in the upper 12 and
// the sum of their costs in the lower 20, as long as a lane counts no more than kMostCounted
// values.
#ifndef ORVA_LIB_EVAL_LANES_H_
#define ORVA_LIB_EVAL_LANES_H_

#include <array>
#include <cstddef>
#include <cstdint>

class CLidMGroup;

namespace orva {

inline constexpr size_t kLanes = 256;
// Rows hold only those blocks of lanes in which they have values.
inline constexpr size_t kBlockLanes = 32;
inline constexpr size_t kNbBlocks = kLanes / kBlockLanes;

inline constexpr unsigned kCountShift = 20;
inline constexpr uint32_t kSumMask = (1U << kCountShift) - 1;
// The sum of that many values, each 255 at most, stays below the count.
inline constexpr uint32_t kMostCounted = 4095;

struct LaneValue {
  uint8_t cost;
  uint8_t there;
};
// The count's lowest bit, once both bytes are words of 16 bits.
inline constexpr uint8_t kThere = 1U << (kCountShift - 16);

// What rows add up to. All sums wrap at 32 bits.
struct alignas(64) LaneSums {
  uint32_t counts[kLanes] = {};
  uint32_t sums[kLanes] = {};
};

// The lane of each accumulator index. Indices that the same trigrams credit lie in one block.
using LaneOrder = std::array<uint8_t, kLanes>;
LaneOrder order_lanes(const CLidMGroup& group);

}  // namespace orva

#endif  // ORVA_LIB_EVAL_LANES_H_
