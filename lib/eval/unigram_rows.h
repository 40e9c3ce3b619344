// UnigramRows: the unigram costs of a group laid out by lane, so that what a byte costs all models,
// but for the occurrences that their trigrams cover, is summed by vectors.
//
// Of a cost that all members of a fact set share, the set's lane takes the occurrences and what the
// set covers, the members' lanes what they cover themselves. A model's sum is that of its own lane
// and of its set's. Sums wrap at 32 bits.
//
//   orva::UnigramRows rows;
//   if (rows.build(shape, lane_of, entries)) rows.add(byte, count, credited, &sums);
//
// Life cycle: build once; constant from then on.
// Ownership:  its tables, outside the accounted memory.
#ifndef ORVA_LIB_EVAL_UNIGRAM_ROWS_H_
#define ORVA_LIB_EVAL_UNIGRAM_ROWS_H_

#include <cstdint>
#include <vector>

#include "lib/eval/dense_rows.h"
#include "lib/eval/lid_mg_ev_ulp_acs.h"

namespace orva {

class UnigramRows {
 public:
  // The fact set of each model, as an accumulator index; the model's own index without one.
  // False when the entries of a byte name a model twice or with another set; then nothing can be
  // summed.
  bool build(const std::vector<int>& facts, const DenseRows& lanes, const UlpEntry* const* first,
             const int* count);

  // Adds what `count` occurrences of a byte cost, of which `credited`, by lane, are covered.
  void add(int byte, uint32_t count, const uint32_t* credited, DenseSums* sums) const {
    add_(rows_[static_cast<size_t>(byte)], count, credited, sums);
    for (const Mixed& mixed : mixed_[static_cast<size_t>(byte)]) {
      sums->sums[mixed.lane] -= mixed.q * credited[mixed.fact_lane];
      sums->counts[mixed.lane] -= credited[mixed.fact_lane];
    }
  }
  void use_plain_vectors();

 private:
  struct Row {
    // Quantised costs and whether there is one, of occurrences and of covered ones.
    alignas(64) uint32_t q[kLanes] = {};
    alignas(64) uint32_t has[kLanes] = {};
    alignas(64) uint32_t covered_q[kLanes] = {};
    alignas(64) uint32_t covered_has[kLanes] = {};
  };
  // A cost of a model's own, though its set covers the byte too.
  struct Mixed {
    uint8_t lane;
    uint8_t fact_lane;
    uint8_t q;
  };

  bool add_byte(int byte, const std::vector<int>& facts, const DenseRows& lanes,
                const UlpEntry* first, int count);
  template <typename Longs>
  static void add_row(const Row& row, uint32_t count, const uint32_t* credited, DenseSums* sums);
  static void add_plain(const Row& row, uint32_t count, const uint32_t* credited, DenseSums* sums);
  static void add_avx2(const Row& row, uint32_t count, const uint32_t* credited, DenseSums* sums);

  std::vector<Row> rows_;
  std::vector<std::vector<Mixed>> mixed_;
  void (*add_)(const Row& row, uint32_t count, const uint32_t* credited,
               DenseSums* sums) = add_plain;
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_UNIGRAM_ROWS_H_
