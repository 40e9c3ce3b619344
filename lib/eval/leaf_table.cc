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

}  // namespace

void LeafTable::build(const CLidMGroup& group, const std::vector<int>& fact_of,
                      const LaneOrder& lane_of, size_t room) {
  group_ = &group;
  all_values_ = group.lstates_vals;
  lane_of_ = lane_of;
  room_ = kLanes + room;
  units_ = std::make_unique_for_overwrite<Unit[]>(room_);
  for (used_ = 0; used_ < kLanes; ++used_) units_[used_].models = ModelSet();
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
  for (uint8_t n = 1; n <= kMostFew; ++n) ways_[kFew + n].nb_sets = n;
  ways_[kFew + 1].mask = 0xFF;
  std::fill(ways_.begin() + kRows, ways_.end(), Way{~uint32_t{0}, 1, 1});
}

std::span<const uint16_t> LeafTable::values(uint32_t id) const {
  // Kept: the number of values is a signed byte, so a leaf with 128 or more of them credits none.
  const uint32_t word = group_->lstates[id - 1];
  return {group_->lstates_vals + leaf_first(word),
          static_cast<size_t>(std::max(leaf_count(word), 0))};
}

// In steps, so that the look-ups of one step need not wait for each other.
void LeafTable::decide(const uint32_t* ids, size_t n) {
  constexpr size_t kInCacheLine = 32;
  for (size_t i = 0; i < n; ++i) __builtin_prefetch(group_->lstates + ids[i] - 1);
  std::span<const uint16_t> values_of[kMostDecided];
  for (size_t i = 0; i < n; ++i) {
    values_of[i] = values(ids[i]);
    __builtin_prefetch(values_of[i].data());
    __builtin_prefetch(values_of[i].data() + kInCacheLine);
  }
  for (size_t i = 0; i < n; ++i) {
    if (leaves_[ids[i]].way() == kNotYet) {
      leaves_[ids[i]] = decide_one(ids[i], values_of[i]);
    }
  }
}

Leaf LeafTable::decide_one(uint32_t id, std::span<const uint16_t> values) {
  const auto first = static_cast<uint32_t>(values.data() - group_->lstates_vals);
  const size_t count = values.size();
  if (count == 0) return Leaf(kNone, 0);
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
    const bool can_be_read = first + kMostFew <= static_cast<size_t>(group_->lstates_vals_tsize);
    return can_be_read ? Leaf(static_cast<uint8_t>(kFew + count), first) : Leaf(kOneByOne, id);
  }
  const uint8_t number = shape_of(mask);
  const RowShape& shape = shapes_[number];
  const size_t nb_units = 1 + shape.nb_blocks * kUnitsOfBlock;
  Unit* const units = units_.get() + used_;
  if (nb_units > room_ - used_ || !fill(values, shape, units[1].lanes)) {
    return Leaf(kOneByOne, id);
  }
  units[0].models = all;
  const Leaf leaf(static_cast<uint8_t>(kRows + number), static_cast<uint32_t>(used_ + 1));
  used_ += nb_units;
  return leaf;
}

// False when there are two values for one index.
bool LeafTable::fill(std::span<const uint16_t> values, const RowShape& shape,
                     LaneValue* row) const {
  std::fill_n(row, shape.nb_blocks * kBlockLanes, LaneValue());
  for (const uint16_t value : values) {
    const unsigned lane = lane_of_[value_index(value)];
    LaneValue& added = row[shape.place[lane / kBlockLanes] * kBlockLanes + lane % kBlockLanes];
    if (added.there != 0) return false;
    added = {static_cast<uint8_t>(value_cost(value)), kThere};
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
