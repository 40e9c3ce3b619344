// TrigramScorer: what the bytes of a text credit to the accumulator indices of a group whose
// automaton is a trie of trigrams, added up by vectors.
//
// A run's values are credited once per trigram, times its count. What a text's unigrams cost is
// added up only when it is asked for.
//
//   orva::TrigramScorer scorer;
//   if (scorer.build(group, fact_of, first, count)) {
//     scorer.feed(pair, buf, n);             // any number of times
//     use(scorer.run(), scorer.lane_of(i));  // credited since take_run
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
#include "lib/eval/lanes.h"
#include "lib/eval/lid_mg_ev_ulp_acs.h"
#include "lib/eval/row_lists.h"
#include "lib/eval/trigram_cache.h"
#include "lib/eval/trigram_rows.h"
#include "lib/eval/unigram_rows.h"

class CLidMGroup;

namespace orva {

class TrigramScorer {
 public:
  static constexpr size_t kMostFed = TrigramCache::kMostCounted;

  // False when the automaton must be walked. For the other arguments see UnigramRows.
  bool build(const CLidMGroup& group, const std::vector<int>& fact_of, const UlpEntry* const* first,
             const int* count);
  // Adds as machines without wide vectors do.
  void use_plain_vectors();

  uint8_t lane_of(int index) const { return lane_of_[static_cast<size_t>(index)]; }
  int state_after(unsigned pair) const { return rows_.state_after(pair); }

  void reset();
  // Feeds bytes that come after the byte pair `pair`. REQUIRES: n <= kMostFed.
  void feed(unsigned pair, const unsigned char* buf, size_t n);

  // Quantised values credited by trigrams, and how many.
  const LaneSums& run() const { return run_; }
  void take_run() { run_ = LaneSums(); }

  // What the unigrams of all bytes fed cost, less what trigrams cover, by model.
  const LaneSums& unigrams();

 private:
  void credit_counted();
  void credit_odd(const Trigram& trigram, uint32_t times);
  void fold();
  void sort_pending();
  void forget_pending();
  void add_unigrams(int byte, const CoverTimes* first, const CoverTimes* last);
  void uncover_odd(uint16_t number);

  LaneOrder lane_of_ = {};
  UnigramRows unigram_rows_;
  TrigramRows rows_;
  std::unique_ptr<TrigramCache> cache_;
  std::unique_ptr<RowLists> lists_;
  AddCovered add_covered_ = cover_adders().back();
  LaneSums run_;
  LaneSums unigrams_;
  std::vector<uint16_t> pending_;  // trigrams with pending occurrences
  size_t nb_pending_ = 0;
  size_t unfolded_ = 0;  // bytes fed since fold
  // By their last byte: how many trigrams are pending, or once they are sorted where they end, and
  // how often it occurred.
  uint32_t ends_[256] = {};
  uint32_t occurrences_[256] = {};
  std::unique_ptr<CoverTimes[]> by_byte_;
  std::vector<uint16_t> odd_;
};

}  // namespace orva

#endif  // ORVA_LIB_EVAL_TRIGRAM_SCORER_H_
