#include "lib/eval/row_lists.h"

#include <algorithm>

namespace orva {

void RowLists::add_part_by_part(size_t shape, const LaneValue* row, uint32_t times,
                                LaneSums* sums) {
  List& list = lists_[shape];
  for (uint32_t left = times; left != 0;) {
    if (list.length == kLongest || list.counted == kMostCounted) drain_one(shape, sums);
    const uint32_t now = std::min(left, kMostCounted - list.counted);
    list.counted += now;
    list.rows[list.length++] = {row, now};
    left -= now;
  }
}

void RowLists::drain(LaneSums* sums) {
  for (size_t shape = 0; shape < shapes_->size(); ++shape) {
    if (lists_[shape].length != 0) drain_one(shape, sums);
  }
}

void RowLists::drain_one(size_t shape, LaneSums* sums) {
  List& list = lists_[shape];
  adder_((*shapes_)[shape], list.rows, list.length, sums);
  list.length = 0;
  list.counted = 0;
}

}  // namespace orva
