// DenseRows: the values of leaves that many models know, laid out by lane, so that a whole leaf is
// credited by a few vector additions.
//
// A lane stands for one accumulator index; the indices that most leaves credit have the first
// lanes, so that most rows need only the first half of them. A lane of a row holds a value q as
// 0x1000 | q, and 0 where the leaf has none. Rows are added up in 16 bits: of at most kMostTimes of
// them the upper 4 bits are then the number of values and the lower 12 their sum.
//
//   orva::DenseRows rows;
//   rows.build(group);
//   if (rows.number_of(leaf) != 0) use(rows.row(rows.number_of(leaf)));
//
// Life cycle: build once; constant from then on.
// Ownership:  its tables, outside the accounted memory.
#ifndef ORVA_LIB_EVAL_DENSE_ROWS_H_
#define ORVA_LIB_EVAL_DENSE_ROWS_H_

#include <cstddef>
#include <cstdint>
#include <vector>

class CLidMGroup;

namespace orva {

inline constexpr size_t kLanes = 256;
inline constexpr size_t kShortLanes = kLanes / 2;

class DenseRows {
 public:
  struct Row {
    const uint16_t* values;
    bool is_short;  // nothing behind the first kShortLanes
  };

  DenseRows();
  void build(const CLidMGroup& group);

  int lane_of(int index) const { return lane_of_[index]; }

  // The number of a leaf's row; 0 for a leaf with few values, or with two for one index.
  uint32_t number_of(size_t leaf) const { return number_of_leaf_[leaf]; }
  Row row(uint32_t number) const {
    if (number <= nb_short_) return {short_.data() + (number - 1) * kShortLanes, true};
    return {long_.data() + (number - nb_short_ - 1) * kLanes, false};
  }
  // number_of is not needed any more.
  void forget_numbers() { number_of_leaf_ = {}; }

 private:
  void rank_lanes(const CLidMGroup& group, const std::vector<size_t>& leaves);
  bool fill(const CLidMGroup& group, size_t leaf, uint16_t* row) const;

  uint8_t lane_of_[kLanes];
  std::vector<uint16_t> number_of_leaf_;  // of its row plus one, short ones first; 0 for none
  size_t nb_short_ = 0;
  std::vector<uint16_t> short_;
  std::vector<uint16_t> long_;
};

// What rows add up to, by lane.
struct DenseSums {
  alignas(64) uint32_t counts[kLanes] = {};
  alignas(64) uint32_t sums[kLanes] = {};
};

// Rows to be added, each so many times, in groups of kMostTimes at most.
struct RowBatch {
  static constexpr uint32_t kMostTimes = 15;
  static constexpr size_t kMostGroups = 16;

  const uint16_t* rows[kMostTimes * kMostGroups];
  uint16_t times[kMostTimes * kMostGroups];
  size_t ends[kMostGroups];  // of the groups that are full
  size_t nb_rows = 0;
  size_t nb_groups = 0;
  uint32_t last_times = 0;  // of the group under way

  bool is_full() const { return nb_groups == kMostGroups; }
  // Adds a row at most `count` times; returns how often. REQUIRES: !is_full().
  uint32_t add(const uint16_t* row, uint32_t count);
  void end_group();
};

// Adds the rows of a batch, all of them short or all of them long; counts go to `credited`, by
// lane, too.
struct RowAdders {
  void (*add_short)(const RowBatch& batch, uint32_t* credited, DenseSums* sums);
  void (*add_long)(const RowBatch& batch, uint32_t* credited, DenseSums* sums);
};
RowAdders plain_row_adders();
// The fastest for this machine.
RowAdders best_row_adders();

}  // namespace orva

#endif  // ORVA_LIB_EVAL_DENSE_ROWS_H_
