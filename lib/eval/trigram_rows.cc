#include "lib/eval/trigram_rows.h"

#include <algorithm>

#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"

namespace orva {
namespace {

constexpr unsigned kAllBlocks = (1U << kNbBlocks) - 1;

}  // namespace

bool TrigramRows::build(const CLidMGroup& group, const std::vector<int>& fact_of,
                        const LaneOrder& lane_of) {
  if (!index_.build(group)) return false;
  group_ = &group;
  fact_of_ = fact_of;
  lane_of_ = lane_of;
  models_of_.assign(kLanes, ModelSet());
  for (size_t m = 0; m < fact_of.size(); ++m) {
    for (const size_t index : {m, static_cast<size_t>(fact_of[m])}) {
      models_of_[index].words[m / 64] |= uint64_t{1} << m % 64;
    }
  }
  blocks_ = std::make_unique_for_overwrite<Block[]>(kMostBlocks);
  shapes_.reserve(kMostShapes);
  shapes_.emplace_back(kAllBlocks);
  shapes_.emplace_back(0);
  shape_of_.fill(kOdd);
  return true;
}

std::span<const uint16_t> TrigramRows::leaf_values(uint32_t id) const {
  if (id == TrigramIndex::kNone) return {};
  // Kept: the number of values is a signed byte, so a leaf with 128 or more of them credits none.
  const uint32_t word = group_->lstates[id - 1];
  return {group_->lstates_vals + leaf_first(word),
          static_cast<size_t>(std::max(leaf_count(word), 0))};
}

void TrigramRows::count_models(const Trigram& trigram, uint16_t* counts) const {
  uint16_t of_index[kLanes] = {};
  for (const uint16_t value : values(trigram)) ++of_index[value_index(value)];
  for (size_t m = 0; m < fact_of_.size(); ++m) {
    const auto fact = static_cast<size_t>(fact_of_[m]);
    counts[m] = static_cast<uint16_t>(of_index[m] + (fact != m ? of_index[fact] : 0));
  }
}

// In steps, so that the look-ups of one step need not wait for each other.
void TrigramRows::add(Trigram* trigrams, TrigramRest* rests, ModelSet* models, size_t n) {
  constexpr size_t kBatch = 32;
  constexpr size_t kInCacheLine = 32;
  for (size_t from = 0; from < n; from += kBatch) {
    const size_t to = std::min(from + kBatch, n);
    uint32_t ids[kBatch];
    for (size_t i = from; i < to; ++i) {
      const uint32_t id = index_.find(trigrams[i].pair(), trigrams[i].last_byte());
      if (id != TrigramIndex::kNone) __builtin_prefetch(group_->lstates + id - 1);
      ids[i - from] = id;
    }
    std::span<const uint16_t> values[kBatch];
    for (size_t i = from; i < to; ++i) {
      if (ids[i - from] == TrigramIndex::kNone) continue;
      values[i - from] = leaf_values(ids[i - from]);
      __builtin_prefetch(values[i - from].data());
      __builtin_prefetch(values[i - from].data() + kInCacheLine);
    }
    for (size_t i = from; i < to; ++i) {
      if (ids[i - from] == TrigramIndex::kNone) {
        trigrams[i].shape = kLeafless;
        rests[i] = {0, 0};
      } else {
        add_leaf(values[i - from], &trigrams[i], &rests[i], &models[i]);
      }
    }
  }
}

void TrigramRows::add_leaf(std::span<const uint16_t> values, Trigram* trigram, TrigramRest* rest,
                           ModelSet* models) {
  unsigned mask = 0;
  uint64_t twice = 0;
  ModelSet all;
  for (const uint16_t value : values) {
    mask |= 1U << lane_of_[value_index(value)] / kBlockLanes;
    const ModelSet& counted = models_of_[value_index(value)];
    for (size_t w = 0; w < std::size(all.words); ++w) {
      twice |= all.words[w] & counted.words[w];
      all.words[w] |= counted.words[w];
    }
  }
  trigram->shape = shape_of(mask);
  *rest = {static_cast<uint32_t>(used_), 0};
  *models = all;
  if (twice != 0 || !fill(values, shapes_[trigram->shape])) {
    trigram->shape = kOdd;
    // How often it covers a model is no matter of bits.
    *models = ModelSet();
    return;
  }
  used_ += shapes_[trigram->shape].nb_blocks;
}

// False when there are two values for one index.
bool TrigramRows::fill(std::span<const uint16_t> values, const RowShape& shape) {
  Block* const blocks = blocks_.get() + used_;
  std::fill_n(blocks, shape.nb_blocks, Block());
  for (const uint16_t value : values) {
    const unsigned lane = lane_of_[value_index(value)];
    LaneValue& added = blocks[shape.place[lane / kBlockLanes]].lanes[lane % kBlockLanes];
    if (added.there != 0) return false;
    added = {static_cast<uint8_t>(value_cost(value)), kThere};
  }
  return true;
}

// The shape of a mask, or when there are too many the smallest that has all its blocks.
uint8_t TrigramRows::shape_of(unsigned mask) {
  uint8_t& known = shape_of_[mask];
  if (known != kOdd) return known;
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
