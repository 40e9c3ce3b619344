#include "lib/eval/leaf_table.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"

namespace orva {
namespace {

constexpr unsigned kAllBlocks = (1U << kNbBlocks) - 1;
constexpr uint8_t kUnknown = 255;  // in place of the number of a shape
// Twice as many as the combinations of values that real groups have.
constexpr unsigned kCombinedBits = 15;
constexpr size_t kMostCombined = (size_t{1} << kCombinedBits) * 3 / 4;
constexpr uint32_t kNoModels = kLanes;  // the place of the empty set

// The indices of two to four different values; of fewer than four the first again and again.
uint32_t indices_of(std::span<const uint16_t> values) {
  uint32_t indices = 0;
  for (size_t i = 0; i < LeafTable::kMostFew; ++i) {
    const uint16_t value = values[i < values.size() ? i : 0];
    indices |= static_cast<uint32_t>(value_index(value)) << 8 * i;
  }
  return indices;
}

}  // namespace

void LeafTable::build(const CLidMGroup& group, const std::vector<int>& fact_of,
                      const LaneOrder& lane_of, size_t room) {
  group_ = &group;
  all_values_ = group.lstates_vals;
  lane_of_ = lane_of;
  room_ = kNoModels + 1 + room;
  units_ = std::make_unique_for_overwrite<Unit[]>(room_);
  for (used_ = 0; used_ <= kNoModels; ++used_) units_[used_].models = ModelSet();
  for (size_t m = 0; m < fact_of.size(); ++m) {
    for (const size_t index : {m, static_cast<size_t>(fact_of[m])}) {
      units_[index].models.words[m / 64] |= uint64_t{1} << m % 64;
    }
  }
  shapes_.reserve(kMostShapes);
  shapes_.emplace_back(kAllBlocks);
  shape_of_.fill(kUnknown);
  // Zeros that take no memory until a leaf is decided.
  const auto nb_leaves = static_cast<size_t>(group.lstates_tsize) + 1;
  leaves_.reset(static_cast<Leaf*>(calloc(nb_leaves, sizeof(Leaf))));
  if (leaves_ == nullptr) throw std::bad_alloc();
  leaves_[0] = Leaf(kNone, 0);
  combined_.assign(size_t{1} << kCombinedBits, Combined());
  nb_combined_ = 0;
}

std::span<const uint16_t> LeafTable::values(uint32_t id) const {
  // Kept: the number of values is a signed byte, so a leaf with 128 or more of them credits none.
  const uint32_t word = group_->lstates[id - 1];
  if (leaf_count(word) <= 0) return {};
  return {group_->lstates_vals + leaf_first(word), static_cast<size_t>(leaf_count(word))};
}

// In steps, so that the look-ups of one step need not wait for each other.
void LeafTable::decide(const uint32_t* ids, size_t n) {
  for (size_t i = 0; i < n; ++i) __builtin_prefetch(group_->lstates + ids[i] - 1);
  std::span<const uint16_t> values_of[kMostDecided];
  for (size_t i = 0; i < n; ++i) {
    values_of[i] = values(ids[i]);
    __builtin_prefetch(values_of[i].data());
    if (values_of[i].size() > kMostFew) __builtin_prefetch(&values_of[i].back());
  }
  for (size_t i = 0; i < n; ++i) {
    if (leaves_[ids[i]].way() == kNotYet) {
      leaves_[ids[i]] = decide_one(ids[i], values_of[i]);
    }
  }
}

Leaf LeafTable::decide_one(uint32_t id, std::span<const uint16_t> values) {
  const size_t count = values.size();
  if (count == 0) return Leaf(kNone, 0);
  const auto first = static_cast<uint32_t>(values.data() - group_->lstates_vals);
  if (count == 1) return Leaf(kFew + 1, values[0]);
  unsigned mask = 0;
  uint64_t twice = 0;
  ModelSet all;
  for (const uint16_t value : values) {
    mask |= 1U << lane_of_[value_index(value)] / kBlockLanes;
    const ModelSet& counted = units_[set_of_value(value)].models;
    for (size_t w = 0; w < std::size(all.words); ++w) {
      twice |= all.words[w] & counted.words[w];
      all.words[w] |= counted.words[w];
    }
  }
  // How often a leaf covers a model is no matter of bits when it covers one twice.
  if (twice != 0) return Leaf(kOneByOne, id);
  if (count <= kMostFew) {
    const bool has_set = combine(values, all);
    return has_set ? Leaf(static_cast<uint8_t>(kFew + count), first) : Leaf(kOneByOne, id);
  }
  const uint8_t number = shape_of(mask);
  const RowShape& shape = shapes_[number];
  const size_t nb_units = size_t{2} + shape.nb_blocks;
  Unit* const units = units_.get() + used_;
  if (nb_units > room_ - used_ || !fill(values, shape, units + 1)) {
    return Leaf(kOneByOne, id);
  }
  units[0].models = all;
  const Leaf leaf(static_cast<uint8_t>(kRows + number), static_cast<uint32_t>(used_ + 1));
  used_ += nb_units;
  return leaf;
}

// Where the set of some indices is, or would be.
size_t LeafTable::slot_of(uint32_t indices) const {
  // The golden ratio as a fraction of 2^32 spreads indices that differ anywhere.
  size_t slot = indices * 0x9E3779B1U >> (32 - kCombinedBits);
  while (combined_[slot].indices != indices && combined_[slot].indices != 0) {
    slot = (slot + 1) % combined_.size();
  }
  return slot;
}

// Makes the set of few values unless there is one. False without room for it.
bool LeafTable::combine(std::span<const uint16_t> values, const ModelSet& models) {
  const uint32_t indices = indices_of(values);
  Combined& combined = combined_[slot_of(indices)];
  if (combined.indices != 0) return true;
  if (nb_combined_ == kMostCombined || used_ == room_) return false;
  ++nb_combined_;
  combined = {indices, static_cast<uint32_t>(used_)};
  units_[used_++].models = models;
  return true;
}

uint32_t LeafTable::set_of(Leaf leaf) const {
  if (leaf.way() == kFew + 1) return set_of_value(static_cast<uint16_t>(leaf.place()));
  if (leaf.way() >= kRows) return leaf.place() - 1;
  if (leaf.way() == kOneByOne || leaf.way() == kNone) return kNoModels;
  const std::span<const uint16_t> values(all_values_ + leaf.place(), leaf.way() - size_t{kFew});
  return combined_[slot_of(indices_of(values))].set;
}

// False when there are two values for one index.
bool LeafTable::fill(std::span<const uint16_t> values, const RowShape& shape, Unit* row) const {
  for (size_t u = 0; u <= shape.nb_blocks; ++u) row[u].row = RowUnit();
  for (const uint16_t value : values) {
    const unsigned lane = lane_of_[value_index(value)];
    const size_t block = shape.place[lane / kBlockLanes];
    uint32_t& there = row[0].row.there[block];
    const uint32_t bit = uint32_t{1} << lane % kBlockLanes;
    if ((there & bit) != 0) return false;
    there |= bit;
    row[1 + block].row.costs[lane % kBlockLanes] = static_cast<uint8_t>(value_cost(value));
  }
  return true;
}

// The shape of a mask, or when there are too many the smallest that has all its blocks.
uint8_t LeafTable::shape_of(unsigned mask) {
  uint8_t& known = shape_of_[mask];
  if (known != kUnknown) return known;
  size_t best = 0;
  for (size_t s = 0; s < shapes_.size(); ++s) {
    const bool has_all = (shapes_[s].mask & mask) == mask;
    if (has_all && shapes_[s].nb_blocks < shapes_[best].nb_blocks) best = s;
  }
  if (shapes_.size() < kMostShapes && shapes_[best].mask != mask) {
    best = shapes_.size();
    shapes_.emplace_back(mask);
  }
  return known = static_cast<uint8_t>(best);
}

}  // namespace orva
