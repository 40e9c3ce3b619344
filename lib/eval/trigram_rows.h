// TrigramRows: the values of trigrams as rows of lanes, made when a trigram is first asked for.
//
// A trigram without a leaf has a row without blocks. Leaves of a built group have at most one value
// that counts for a model; those of others, the odd ones, have no row and are read value by value.
//
// Life cycle: build once; add until there is no room, then clear.
// Ownership:  its rows, outside the accounted memory; memory that no row ever lay in is not
// touched.
#ifndef ORVA_LIB_EVAL_TRIGRAM_ROWS_H_
#define ORVA_LIB_EVAL_TRIGRAM_ROWS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "lib/eval/coverage.h"
#include "lib/eval/lanes.h"
#include "lib/eval/row_adder.h"
#include "lib/eval/trigram.h"
#include "lib/eval/trigram_index.h"

class CLidMGroup;

namespace orva {

class TrigramRows {
 public:
  // Few shapes make long lists of rows to add; a row of another shape takes a wider one.
  static constexpr size_t kMostShapes = 64;
  static constexpr uint8_t kLeafless = 1;  // the shape without blocks
  static constexpr uint8_t kOdd = 255;     // in place of a shape

  // `fact_of[m]` is the accumulator index of the fact set of model m, or m itself without one.
  // False when the automaton is no trie of trigrams. The group must outlive it.
  bool build(const CLidMGroup& group, const std::vector<int>& fact_of, const LaneOrder& lane_of);

  int state_after(unsigned pair) const { return index_.state_after(pair); }

  // How many trigrams more can be added for certain.
  size_t room() const { return (kMostBlocks - used_) / kNbBlocks; }
  // Makes the rows of trigrams, n <= room() of them, and tells the models that their values count
  // for.
  void add(Trigram* trigrams, TrigramRest* rests, ModelSet* models, size_t n);
  void clear() { used_ = 0; }

  // The values of a trigram, as a group stores them, and how many of them count for each model.
  std::span<const uint16_t> values(const Trigram& trigram) const {
    return leaf_values(index_.find(trigram.pair(), trigram.last_byte()));
  }
  void count_models(const Trigram& trigram, uint16_t* counts) const;
  const LaneValue* row(uint32_t first) const { return blocks_[first].lanes; }
  const std::vector<RowShape>& shapes() const { return shapes_; }

 private:
  static constexpr size_t kMostBlocks = 120000;  // of 64 bytes, 7.7 MB

  struct alignas(64) Block {
    LaneValue lanes[kBlockLanes];
  };

  std::span<const uint16_t> leaf_values(uint32_t id) const;
  void add_leaf(std::span<const uint16_t> values, Trigram* trigram, TrigramRest* rest,
                ModelSet* models);
  bool fill(std::span<const uint16_t> values, const RowShape& shape);
  uint8_t shape_of(unsigned mask);

  const CLidMGroup* group_ = nullptr;
  std::vector<int> fact_of_;
  LaneOrder lane_of_ = {};
  std::vector<ModelSet> models_of_;  // by accumulator index
  TrigramIndex index_;
  std::vector<RowShape> shapes_;
  std::array<uint8_t, 1 << kNbBlocks> shape_of_ = {};  // by mask of blocks; kOdd when not known yet
  std::unique_ptr<Block[]> blocks_;
  size_t used_ = 0;
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_TRIGRAM_ROWS_H_
