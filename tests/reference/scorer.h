// Scorer: what a text costs under every model, in nats, summed over the whole text.
//
//   orva::Scorer scorer(tables);
//   scorer.feed(text);                 // any number of times
//   std::vector<double> costs = scorer.totals();
//
// The text is normalised as the group asks (runs cut, capitals folded, digits and blanks removed),
// trigrams are counted by leaf, and only at the end each leaf's values are added up once, whatever
// the number of its occurrences. Sums are integers of 64 bits.
//
// Life cycle: reset starts a new text; totals may be asked for at any time and again.
// Ownership:  the tables are not owned and must stay.
// Threads:    one at a time for each object; tables are shared.
#ifndef ORVA_TESTS_REFERENCE_SCORER_H_
#define ORVA_TESTS_REFERENCE_SCORER_H_

#include <cstdint>
#include <string_view>
#include <vector>

#include "lib/detect/model_tables.h"

namespace orva {

class Scorer {
 public:
  explicit Scorer(const ModelTables& tables);
  Scorer(const Scorer&) = delete;
  Scorer& operator=(const Scorer&) = delete;

  void reset();
  void feed(std::string_view bytes);
  // What follows does not follow what came before: its first two bytes only set up the context.
  void begin_segment();

  // Bytes that were scored: what is left after normalisation, less the first two.
  uint64_t scored() const { return scored_; }

  // One total a model; all 0 when nothing was scored.
  std::vector<double> totals();

 private:
  struct Touched {
    int leaf;
    unsigned char last;
  };

  void take(unsigned char byte);
  void score(unsigned char byte);
  void fold();
  void fold_byte(int byte, const Touched* first, size_t count);

  const ModelTables& tables_;
  std::vector<uint32_t> counts_;  // occurrences by leaf since the last fold
  std::vector<Touched> touched_;  // leaves with occurrences
  uint64_t byte_counts_[kNbBytes] = {};
  uint64_t unfolded_ = 0;
  uint64_t scored_ = 0;
  std::vector<int64_t> q_sums_;  // by accumulator index
  std::vector<int64_t> q_counts_;
  std::vector<int64_t> unigram_sums_;  // by model
  std::vector<int64_t> unigram_counts_;
  std::vector<int64_t> seen_;
  // Normalisation and context.
  int run_ = 0;
  int last_raw_ = -1;
  int position_ = 0;
  unsigned char before_[2] = {};
};

}  // namespace orva

#endif  // ORVA_TESTS_REFERENCE_SCORER_H_
