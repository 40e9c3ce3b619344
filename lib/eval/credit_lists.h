// CreditLists: leaves to be credited, collected by the way they are until many can be credited at
// once.
//
//   orva::CreditLists lists(&leaves, orva::row_adders().back());
//   lists.add(leaf.way(), leaf.place(), times);  // any number of times
//   lists.drain();
//   use(lists.by_lane(), lists.by_index());
//
// Life cycle: empty after drain; its sums start anew with clear.
#ifndef ORVA_LIB_EVAL_CREDIT_LISTS_H_
#define ORVA_LIB_EVAL_CREDIT_LISTS_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "lib/eval/lanes.h"
#include "lib/eval/leaf_table.h"
#include "lib/eval/row_adder.h"
#include "lib/eval/run_counter.h"

namespace orva {

class CreditLists {
 public:
  CreditLists(const LeafTable* leaves, AddRows adder)
      : leaves_(leaves), adder_(adder), lists_(LeafTable::kNbWays) {}
  void use(AddRows adder) { adder_ = adder; }

  // Adds the values at a place. REQUIRES: times <= RunCounter::kMostTimes, and a way from
  // kFew + 1 on.
  void add(uint8_t way, uint32_t place, uint32_t times) {
    uint32_t& length = lengths_[way];
    lists_[way].added[length++] = {place, times};
    if (length == kLongest) drain_one(way);
  }
  // Adds values here and now.
  void add_now(std::span<const uint16_t> values, uint32_t times);
  void drain();

  // What rows and what values credited.
  const LaneSums& by_lane() const { return by_lane_; }
  // The number of values of an index in the upper half, the sum of their costs in the lower one.
  const uint64_t* by_index() const { return by_index_; }
  void clear();

 private:
  static constexpr size_t kLongest = 64;
  static_assert(kLongest * RunCounter::kMostTimes <= kMostCounted);
  static constexpr size_t kFewAhead = 8;  // whose values are fetched before they are needed
  static_assert(kRowsAhead <= kFewAhead);

  struct List {
    Times added[kLongest + kFewAhead] = {};
  };

  void drain_one(size_t way);
  void add_single(const Times* added, size_t count);
  template <size_t n>
  void add_few(const Times* added, size_t count);

  const LeafTable* leaves_;
  AddRows adder_;
  std::vector<List> lists_;
  uint32_t lengths_[LeafTable::kNbWays] = {};
  LaneSums by_lane_;
  uint64_t by_index_[kLanes] = {};
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_CREDIT_LISTS_H_
