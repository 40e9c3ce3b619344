// CreditLists: leaves to be credited, collected by the way they are until many can be credited at
// once.
//
//   orva::CreditLists lists(&leaves, orva::row_adders().back());
//   const orva::CreditLists::End end = lists.end(way);
//   end.places[0] = leaf.place(); end.times[0] = times;
//   lists.added(way, 1);                          // any number of times
//   lists.drain();
//   use(lists.by_lane(), lists.by_index(index));
//
// Life cycle: empty after drain; its sums start anew with clear.
#ifndef ORVA_LIB_EVAL_CREDIT_LISTS_H_
#define ORVA_LIB_EVAL_CREDIT_LISTS_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lib/eval/lanes.h"
#include "lib/eval/leaf_table.h"
#include "lib/eval/row_adder.h"

namespace orva {

class CreditLists {
 public:
  static constexpr uint32_t kMostTimes = kMostTimesOfRow;  // of one that is added to a list
  static constexpr size_t kMostAdded = 16;                 // at once

  CreditLists(const LeafTable* leaves, AddRows adder)
      : leaves_(leaves), adder_(adder), lists_(LeafTable::kNbWays) {}
  void use(AddRows adder) { adder_ = adder; }

  // Where a list ends, at which kMostAdded leaves can be stored, to be added then. REQUIRES: a way
  // from kFew + 1 on.
  struct End {
    uint32_t* places;
    uint32_t* times;
  };
  End end(uint8_t way) {
    List& list = lists_[way];
    return {list.places + lengths_[way], list.times + lengths_[way]};
  }
  void added(uint8_t way, size_t count) {
    lengths_[way] += count;
    if (lengths_[way] > kLongest - kMostAdded) drain_one(way);
  }
  // Credits a leaf of any way here and now, any number of times.
  void add_now(Leaf leaf, uint32_t times);
  void drain();

  // What rows and what values credited.
  const LaneSums& by_lane() const { return by_lane_; }
  // The number of values of an index in the upper half, the sum of their costs in the lower one, as
  // long as that is below 2^32: 10000 times 127 values, the most of one run, are.
  uint64_t by_index(size_t index) const { return by_index_[0][index] + by_index_[1][index]; }
  void clear();

 private:
  static constexpr size_t kLongest = 64;
  static constexpr size_t kFewAhead = 8;  // whose values are fetched before they are needed
  static_assert(kRowsAhead <= kFewAhead);

  struct List {
    uint32_t places[kLongest + kFewAhead] = {};
    uint32_t times[kLongest + kFewAhead] = {};
  };

  void drain_one(size_t way);
  void credit(size_t way, const Credits& credits);
  template <size_t n>
  void add_few(const Credits& credits);

  const LeafTable* leaves_;
  AddRows adder_;
  std::vector<List> lists_;
  size_t lengths_[LeafTable::kNbWays] = {};
  LaneSums by_lane_;
  // In turn, for the same index often comes twice in a row, and would have to wait for itself.
  uint64_t by_index_[2][kLanes] = {};
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_CREDIT_LISTS_H_
