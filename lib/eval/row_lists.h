// RowLists: rows to be added, collected by shape until many of one shape can be added at once.
//
//   orva::RowLists lists(&shapes, row_adders().back());
//   lists.add(shape, row, times, &sums);  // any number of times
//   lists.drain(&sums);
//
// Life cycle: empty after drain.
#ifndef ORVA_LIB_EVAL_ROW_LISTS_H_
#define ORVA_LIB_EVAL_ROW_LISTS_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lib/eval/lanes.h"
#include "lib/eval/row_adder.h"

namespace orva {

class RowLists {
 public:
  RowLists(const std::vector<RowShape>* shapes, size_t most_shapes, AddRows adder)
      : shapes_(shapes), lists_(most_shapes), adder_(adder) {}
  void use(AddRows adder) { adder_ = adder; }

  // Adds a row `times` times.
  void add(size_t shape, const LaneValue* row, uint32_t times, LaneSums* sums) {
    List& list = lists_[shape];
    if (list.length == kLongest || times > kMostCounted - list.counted) {
      return add_part_by_part(shape, row, times, sums);
    }
    list.counted += times;
    list.rows[list.length++] = {row, times};
  }

  void drain(LaneSums* sums);

 private:
  static constexpr size_t kLongest = 128;

  struct List {
    size_t length = 0;
    uint32_t counted = 0;  // values in a lane, at most
    RowTimes rows[kLongest];
  };

  void add_part_by_part(size_t shape, const LaneValue* row, uint32_t times, LaneSums* sums);
  void drain_one(size_t shape, LaneSums* sums);

  const std::vector<RowShape>* shapes_;
  std::vector<List> lists_;
  AddRows adder_;
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_ROW_LISTS_H_
