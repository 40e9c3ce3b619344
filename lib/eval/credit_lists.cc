#include "lib/eval/credit_lists.h"

#include <algorithm>

#include "lib/mgroup/group_format.h"

namespace orva {
namespace {

void add_value(uint16_t value, uint32_t times, uint64_t* by_index) {
  by_index[value_index(value)] += uint64_t{times} << 32 | value_cost(value) * times;
}

}  // namespace

void CreditLists::add_now(Leaf leaf, uint32_t times) {
  if (leaf.way() == LeafTable::kOneByOne) {
    for (const uint16_t value : leaves_->values(leaf.place())) {
      add_value(value, times, by_index_[0]);
    }
    return;
  }
  if (leaf.way() == LeafTable::kNone) return;
  List one;
  one.places[0] = leaf.place();
  for (; times != 0; times -= one.times[0]) {
    one.times[0] = std::min(times, kMostTimes);
    credit(leaf.way(), {one.places, one.times, 1});
  }
}

// Leaves of `n` values.
template <size_t n>
void CreditLists::add_few(const Credits& credits) {
  const uint16_t* const values = leaves_->all_values();
#pragma GCC unroll 2
  for (size_t k = 0; k < credits.count; ++k) {
    uint64_t* const by_index = by_index_[k % 2];
    if constexpr (n == 1) {
      add_value(static_cast<uint16_t>(credits.places[k]), credits.times[k], by_index);
    } else {
      __builtin_prefetch(values + credits.places[k + kFewAhead]);
#pragma GCC unroll 4
      for (size_t i = 0; i < n; ++i) {
        add_value(values[credits.places[k] + i], credits.times[k], by_index);
      }
    }
  }
}

void CreditLists::credit(size_t way, const Credits& credits) {
  static_assert(LeafTable::kMostFew == 4);
  switch (way) {
    case LeafTable::kFew + 1:
      return add_few<1>(credits);
    case LeafTable::kFew + 2:
      return add_few<2>(credits);
    case LeafTable::kFew + 3:
      return add_few<3>(credits);
    case LeafTable::kFew + 4:
      return add_few<4>(credits);
    case LeafTable::kNone:
      return;
    default:
      adder_(leaves_->shape(static_cast<uint8_t>(way)), leaves_->all_rows(), credits, &by_lane_);
  }
}

void CreditLists::drain_one(size_t way) {
  credit(way, {lists_[way].places, lists_[way].times, lengths_[way]});
  lengths_[way] = 0;
}

void CreditLists::drain() {
  for (size_t way = 0; way < leaves_->nb_ways(); ++way) {
    if (lengths_[way] != 0) drain_one(way);
  }
}

void CreditLists::clear() {
  by_lane_ = LaneSums();
  for (auto& sums : by_index_) std::fill(std::begin(sums), std::end(sums), 0);
}

}  // namespace orva
