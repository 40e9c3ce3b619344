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

  // Trigram values credited to each index by trigrams that end in `byte`.
  const uint32_t* row(int byte) const { return rows_ + byte * index_count_; }
  void clear_row(int byte);

  // Credits the values of one leaf word, reached once by `byte`. Returns their number.
  int add(const CLidMGroup& group, uint32_t leaf_word, int byte);

  // Makes room for so many counted leaves, which add then needs no memory for.
  void reserve(size_t nb_leaves) { by_byte_.reserve(nb_leaves); }

  // Credits the values of all counted leaves. Returns their number.
  uint32_t add(const CLidMGroup& group, const TrigramIndex& index,
               const std::vector<LeafCount>& leaves);

  // Sum of quantised values and number of values of an index since they were last taken.
  uint32_t q_sum(int index) const { return static_cast<uint32_t>(sums_[index]); }
  uint32_t q_count(int index) const { return static_cast<uint32_t>(sums_[index] >> 32); }
  // Starts new sums; rows stay.
  void take_sums();

 private:
  void add_plain(const CLidMGroup& group, const TrigramIndex& index, const LeafCount& leaf);
  void add_by_byte(const CLidMGroup& group, const TrigramIndex& index,
                   const std::vector<LeafCount>& leaves);
  void flush(int byte, uint64_t* gathered);

  int index_count_;
  uint32_t* rows_;
  uint64_t sums_[256] = {};  // low half: quantised values; high half: how many
  std::vector<LeafCount> by_byte_;
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_CREDIT_TABLE_H_
