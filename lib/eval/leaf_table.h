// LeafTable: how to credit each leaf, decided when a trigram first leads to it.
//
// Most leaves have few values, which are credited one by one, as are those of a leaf that credits
// an index twice. Of others the table makes rows of lanes, as long as it has room.
//
//   orva::LeafTable leaves;
//   leaves.build(group, fact_of, lane_of);
//   leaves.decide(ids, n);
//   use(leaves.leaf(ids[0]).way());
//
// Life cycle: build once.
// Ownership:  its tables, outside the accounted memory; memory that no row ever lay in is not
// touched.
#ifndef ORVA_LIB_EVAL_LEAF_TABLE_H_
#define ORVA_LIB_EVAL_LEAF_TABLE_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <vector>

#include "lib/eval/coverage.h"
#include "lib/eval/lanes.h"
#include "lib/eval/row_adder.h"

class CLidMGroup;

namespace orva {

class Leaf {
 public:
  Leaf() = default;
  Leaf(uint8_t way, uint32_t place) : word_(way | place << 8) {}

  // The number of its way, and where its values or its row are.
  uint8_t way() const { return static_cast<uint8_t>(word_); }
  uint32_t place() const { return word_ >> 8; }

 private:
  uint32_t word_ = 0;
};
static_assert(sizeof(Leaf) == 4);

class LeafTable {
 public:
  // Ways to credit a leaf. Those with `n` values, up to kMostFew, are the ways kFew + n; the place
  // of a single value is the value. The place of one to be credited value by value is its id.
  static constexpr uint8_t kNotYet = 0;
  static constexpr uint8_t kOneByOne = 1;  // values, however many
  static constexpr uint8_t kFew = 1;
  static constexpr uint8_t kMostFew = 4;
  static constexpr uint8_t kNone = kFew + kMostFew + 1;
  static constexpr uint8_t kRows = kNone + 1;  // and as many as there are shapes
  // Few shapes make long lists of rows to add; a row of another shape takes a wider one.
  static constexpr size_t kMostShapes = 64;
  static constexpr size_t kNbWays = kRows + kMostShapes;

  // `fact_of[m]` is the accumulator index of the fact set of model m, or m itself without one. The
  // group, which must outlive the table, has at most kMostLeaves leaves. Rows and the sets of few
  // values take `room` units at most; leaves for which there is none are taken value by value.
  static constexpr int kMostLeaves = (1 << 24) - 2;
  static constexpr size_t kRoom = 320000;  // 10 MB
  void build(const CLidMGroup& group, const std::vector<int>& fact_of, const LaneOrder& lane_of,
             size_t room = kRoom);

  // Leaf 0 is that of trigrams without one.
  const Leaf& leaf(uint32_t id) const { return leaves_[id]; }
  // Decides for n <= kMostDecided leaves, which may be the same.
  static constexpr size_t kMostDecided = 64;
  void decide(const uint32_t* ids, size_t n);

  const uint16_t* all_values() const { return all_values_; }
  const RowUnit* all_rows() const { return &units_[0].row; }
  const RowShape& shape(uint8_t way) const { return shapes_[way - size_t{kRows}]; }
  size_t nb_ways() const { return kRows + shapes_.size(); }

  // The values of a leaf, as the group stores them.
  std::span<const uint16_t> values(uint32_t id) const;
  // The set of models that the values of a decided leaf cover, which is empty for one to be taken
  // value by value, and that of one value.
  uint32_t set_of(Leaf leaf) const;
  // Fetches what set_of reads.
  void prefetch(Leaf leaf) const {
    if (has_several(leaf)) __builtin_prefetch(all_values_ + leaf.place());
  }
  static uint32_t set_of_value(uint16_t value) { return value & 0xFF; }
  const ModelSet* all_sets() const { return &units_[0].models; }

 private:
  union alignas(32) Unit {
    Unit() {}
    ModelSet models;  // of each index, none, of some indices, before each row of its values
    RowUnit row;
  };
  static_assert(sizeof(Unit) == sizeof(RowUnit));

  // The set of some values, by their indices, which many leaves have in common. No others than
  // values of model 0 alone have no index but 0, and a leaf that has two is taken value by value.
  struct Combined {
    uint32_t indices = 0;  // 0: none
    uint32_t set = 0;
  };

  Leaf decide_one(uint32_t id, std::span<const uint16_t> values);
  static bool has_several(Leaf leaf) { return leaf.way() > kFew + 1 && leaf.way() < kNone; }
  size_t slot_of(uint32_t indices) const;
  bool combine(std::span<const uint16_t> values, const ModelSet& models);
  bool fill(std::span<const uint16_t> values, const RowShape& shape, Unit* row) const;
  uint8_t shape_of(unsigned mask);

  const CLidMGroup* group_ = nullptr;
  const uint16_t* all_values_ = nullptr;
  LaneOrder lane_of_ = {};
  std::vector<RowShape> shapes_;
  std::array<uint8_t, 1 << kNbBlocks> shape_of_ = {};  // by mask of blocks
  struct Free {
    void operator()(void* memory) const { free(memory); }
  };
  std::unique_ptr<Leaf[], Free> leaves_;
  std::unique_ptr<Unit[]> units_;
  size_t room_ = 0;
  size_t used_ = 0;
  std::vector<Combined> combined_;
  size_t nb_combined_ = 0;
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_LEAF_TABLE_H_
