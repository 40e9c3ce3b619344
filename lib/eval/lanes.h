// Lanes: the accumulator indices of a group, models and fact sets, in the order in which vectors
// hold them.
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

// What is added up, by lane or by model. All sums wrap at 32 bits.
struct alignas(64) LaneSums {
  uint32_t counts[kLanes] = {};
  uint32_t sums[kLanes] = {};
};

// The lane of each accumulator index. Indices that the same trigrams credit lie in one block.
using LaneOrder = std::array<uint8_t, kLanes>;
LaneOrder order_lanes(const CLidMGroup& group);

}  // namespace orva

#endif  // ORVA_LIB_EVAL_LANES_H_
