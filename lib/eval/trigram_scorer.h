// TrigramScorer: what the bytes of a text credit to the accumulator indices of a group whose
// automaton is a trie of trigrams, added up by vectors.
//
// A run's values are credited once per trigram, times its count. What a text's unigrams cost is
// added up only when it is asked for.
//
//   orva::TrigramScorer scorer;
//   if (scorer.build(group, fact_of, first, count)) {
//     scorer.feed(pair, buf, n);             // each run, and after each
//     scorer.take_run(n, sums, counts);      // what it credited
//     use(scorer.unigrams());                // since reset
//   }
//
// Life cycle: build once; reset before each text.
// Ownership:  its tables, outside the accounted memory.
#ifndef ORVA_LIB_EVAL_TRIGRAM_SCORER_H_
#define ORVA_LIB_EVAL_TRIGRAM_SCORER_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "lib/eval/coverage.h"
#include "lib/eval/credit_lists.h"
#include "lib/eval/lanes.h"
#include "lib/eval/leaf_table.h"
#include "lib/eval/lid_mg_ev_ulp_acs.h"
#include "lib/eval/numbered_leaves.h"
#include "lib/eval/pending_covers.h"
#include "lib/eval/trigram_index.h"
#include "lib/eval/trigram_numbers.h"
#include "lib/eval/unigram_rows.h"

class CLidMGroup;

namespace orva {

class TrigramScorer {
 public:
  static constexpr size_t kMostFed = 10000;  // bytes in one run

  // False when the automaton must be walked. For the other arguments see UnigramRows.
  bool build(const CLidMGroup& group, const std::vector<int>& fact_of, const UlpEntry* const* first,
             const int* count);
  // Adds as machines without wide vectors do.
  void use_plain_vectors();

  int state_after(unsigned pair) const { return index_.state_after(pair); }

  void reset();
  // Feeds bytes that come after the byte pair `pair`. REQUIRES: n <= kMostFed, and that what was
  // fed before was taken.
  void feed(unsigned pair, const unsigned char* buf, size_t n);

  // Adds the quantised values that trigrams credited since the last call, and how many they are, to
  // the `n` first accumulator indices. Returns how many they are together.
  uint32_t take_run(size_t n, uint32_t* sums, int* counts);

  // What the unigrams of all bytes fed cost, less what trigrams cover, by model.
  const LaneSums& unigrams() {
    fold();
    return unigram_rows_.sums();
  }

 private:
  void learn(unsigned pair, const unsigned char* buf, const uint16_t* numbers, size_t n);
  bool learn_all(const Trigram* trigrams, size_t n, uint16_t* numbers);
  bool learn_some(const Trigram* trigrams, size_t n, uint16_t* numbers);
  uint16_t number_for(uint32_t leaf_id, unsigned char last_byte);
  void forget_numbers();
  void credit();
  void fold();
  void add_unigrams(int byte, uint32_t count, const CoverTimes* first, const CoverTimes* last);
  void uncover_one_by_one(const PendingCovers::OneByOne& leaf);

  LaneOrder lane_of_ = {};
  UnigramRows unigram_rows_;
  TrigramIndex index_;
  LeafTable leaves_;
  TrigramNumbers numbers_;
  NumberedLeaves numbered_;
  std::unique_ptr<CreditLists> lists_;
  AddCovered add_covered_ = cover_adders().back();
  PendingCovers covers_;
  size_t unfolded_ = 0;  // bytes fed since fold
  bool is_fed_ = false;  // since take_run
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_TRIGRAM_SCORER_H_
