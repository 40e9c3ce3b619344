#include "lib/eval/credit_lists.h"

#include <algorithm>

#include "lib/mgroup/group_format.h"

namespace orva {
namespace {

void add_value(uint16_t value, uint32_t times, uint64_t* by_index) {
  by_index[value_index(value)] += uint64_t{times} << 32 | value_cost(value) * times;
}

}  // namespace

void CreditLists::add_now(std::span<const uint16_t> values, uint32_t times) {
  for (const uint16_t value : values) add_value(value, times, by_index_);
}

void CreditLists::add_single(const Times* added, size_t count) {
  for (const Times* t = added; t != added + count; ++t) {
    add_value(static_cast<uint16_t>(t->place), t->times, by_index_);
  }
}

template <size_t n>
void CreditLists::add_few(const Times* added, size_t count) {
  const uint16_t* const values = leaves_->all_values();
  for (const Times* t = added; t != added + count; ++t) {
    __builtin_prefetch(values + t[kFewAhead].place);
#pragma GCC unroll 4
    for (size_t i = 0; i < n; ++i) add_value(values[t->place + i], t->times, by_index_);
  }
}

void CreditLists::drain_one(size_t way) {
  static_assert(LeafTable::kMostFew == 4);
  const Times* const added = lists_[way].added;
  const size_t count = lengths_[way];
  switch (way) {
    case LeafTable::kFew + 1:
      add_single(added, count);
      break;
    case LeafTable::kFew + 2:
      add_few<2>(added, count);
      break;
    case LeafTable::kFew + 3:
      add_few<3>(added, count);
      break;
    case LeafTable::kFew + 4:
      add_few<4>(added, count);
      break;
    case LeafTable::kNone:
      break;
    default:
      adder_(leaves_->shape(static_cast<uint8_t>(way)), leaves_->all_rows(), added, count,
             &by_lane_);
  }
  lengths_[way] = 0;
}

void CreditLists::drain() {
  for (size_t way = 0; way < leaves_->nb_ways(); ++way) {
    if (lengths_[way] != 0) drain_one(way);
  }
}

void CreditLists::clear() {
  by_lane_ = LaneSums();
  std::fill(std::begin(by_index_), std::end(by_index_), 0);
}

}  // namespace orva
