// CreditTable: what a text has credited to each accumulator index, kept so that one trigram touches
// few cache lines: a row per byte value, in which the indices lie side by side.
//
// An accumulator index is a model or a fact set; `index_count` of them, at most 256. All sums are
// unsigned and wrap at 32 bits.
//
// Life cycle: zero after construction; add any number of runs; clear_row before the next text.
// Ownership:  its rows, in accounted memory; ok() is false when they could not be had.
#ifndef ORVA_LIB_EVAL_CREDIT_TABLE_H_
#define ORVA_LIB_EVAL_CREDIT_TABLE_H_

#include <cstdint>
#include <vector>

#include "lib/eval/dense_rows.h"
#include "lib/eval/run_counter.h"

class CLidMGroup;

namespace orva {

class CreditTable {
 public:
  explicit CreditTable(int index_count);
  ~CreditTable();
  CreditTable(const CreditTable&) = delete;
  CreditTable& operator=(const CreditTable&) = delete;

  bool ok() const { return rows_ != nullptr; }

  // Trigram values credited to each index, by its lane, by trigrams that end in `byte`.
  const uint32_t* row(int byte) const { return rows_ + static_cast<size_t>(byte) * kLanes; }
  int lane_of(int index) const { return dense_.lane_of(index); }
  const DenseRows& lanes() const { return dense_; }
  void clear_row(int byte);

  // Credits the values of one leaf word, reached once by `byte`. Returns their number.
  int add(const CLidMGroup& group, uint32_t leaf_word, int byte);

  // Prepares for counted leaves, which add then needs no memory for.
  void prepare(const CLidMGroup& group, const TrigramIndex& index);
  // Adds rows as machines without wide vectors do.
  void use_plain_vectors() { adders_ = plain_row_adders(); }

  // Credits the values of all counted leaves. Returns their number.
  uint32_t add(const CLidMGroup& group, const std::vector<LeafCount>& leaves);

  // Sum of quantised values and number of values of an index since they were last taken.
  uint32_t q_sum(int index) const {
    return static_cast<uint32_t>(sums_[index]) + run_.sums[lane_of(index)];
  }
  uint32_t q_count(int index) const {
    return static_cast<uint32_t>(sums_[index] >> 32) + run_.counts[lane_of(index)];
  }
  // Starts new sums; rows stay.
  void take_sums();

 private:
  uint32_t* mutable_row(int byte) { return rows_ + static_cast<size_t>(byte) * kLanes; }
  // All that crediting a leaf needs, in one place of memory.
  struct Leaf {
    uint32_t first;  // its values, or its row
    uint8_t byte;    // the last of the trigram
    int8_t count;    // of values; 0 when it credits none
    bool has_row;
  };
  // A leaf that was reached.
  struct Reached {
    Leaf leaf;
    uint32_t times;
  };

  void sort_by_byte(const std::vector<LeafCount>& leaves);
  void add_values(const uint16_t* values, const Reached& reached, uint32_t* row);
  void add_row(const DenseRows::Row& values, uint32_t times, uint32_t* row);
  void add_batch(bool is_short, uint32_t* row);

  int index_count_;
  uint32_t* rows_;
  uint64_t sums_[kLanes] = {};  // low half: quantised values; high half: how many
  DenseRows dense_;
  RowAdders adders_ = best_row_adders();
  RowBatch short_batch_;
  RowBatch long_batch_;
  bool has_rows_ = false;  // of the byte under way
  bool has_long_ = false;
  DenseSums byte_;            // of the rows of one byte
  DenseSums run_;             // of the rows since sums were last taken
  std::vector<Leaf> leaves_;  // by identifier
  std::vector<Reached> by_byte_;
  size_t ends_[256];
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_CREDIT_TABLE_H_
