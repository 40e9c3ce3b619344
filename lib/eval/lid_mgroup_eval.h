// CLidMGroupEval: scores a byte stream against every model of a group in one pass.
//
//   CLidMGroupEval eval(&group);
//   if (eval.init() == 0) {                 // once per text
//     eval.auto_init(text[0], text[1]);
//     eval.auto_nexts(text + 2, length - 2);  // any number of times
//     int best = -1;
//     float ratio = eval.calcul_ratio(eval.get_lprobs(), &best);
//   }
//
// An accumulator index below nb_models is a model; nb_models + f is fact set f, whose values count
// for each of its models.
//
// Life cycle: built over a loaded group, which must outlive it; init before each text.
// Threads:    one at a time; the position of the walk lives in the group.
#ifndef ORVA_LIB_EVAL_LID_MGROUP_EVAL_H_
#define ORVA_LIB_EVAL_LID_MGROUP_EVAL_H_

#include <cstdint>
#include <memory>

#include "lib/eval/costs.h"
#include "lib/eval/lid_mg_ev_ulp_acs.h"
#include "lib/eval/lid_mg_lang.h"
#include "lib/eval/trigram_scorer.h"
#include "lib/mgroup/lid_mgroup.h"

class CLidMGroupEval : public CLidMGEvUlpAcs {
 public:
  explicit CLidMGroupEval(CLidMGroup* group);
  ~CLidMGroupEval();

  // Starts a new text. 0; -1 when an array could not be allocated.
  int init();

  // Places the automaton on the first two bytes of the text, which are not scored.
  void auto_init(unsigned char c1, unsigned char c2);

  // Feeds `n` bytes.
  void auto_nexts(const unsigned char* buf, int n);

  // Turns the pending integer sums into costs.
  void int2flt();

  // One score per accumulator index, the first nb_models of which mean something: the mean cost per
  // byte. Not finite before the first byte. The array is overwritten by the next call.
  float* get_lprobs();

  // Index of the lowest score in `*best` (-1 when none is below 10000000) and the confidence ratio
  // of its language. -1.0 without a winner, and without scores, when `*best` is left alone.
  float calcul_ratio(const float* scores, int* best) const;

  // Bytes fed and trigram values credited since init.
  int total() const { return total_; }
  int value_total() const { return value_total_; }
  // Computes as machines without wide vectors do, with the same results.
  void use_plain_vectors();
  // Whether trigrams are scored by vectors: known once a text was fed.
  bool has_scorer() const { return scorer_ != nullptr; }
  const CLidMGLang& languages() const { return *languages_; }

 private:
  void make_scorer();
  void step(unsigned char c);
  void walk(unsigned char c);
  void credit(uint32_t leaf_word, unsigned char c);
  bool knows_pair() const;
  void run(const unsigned char* buf, int n);
  void sum_unigrams();

  static constexpr size_t kMaxIndices = 256;
  static constexpr size_t kSeenSize = 256 * kMaxIndices * sizeof(uint32_t);
  uint32_t* seen(int byte) const { return seen_ + static_cast<size_t>(byte) * kMaxIndices; }

  CLidMGroup* group_;
  int nb_models_;
  int nb_facts_;
  int nb_indices_;
  CLidMGLang* languages_;
  // What was walked byte by byte: how often each byte came, and by byte the values credited to each
  // index. What the scorer was fed is in the scorer.
  uint32_t byte_counts_[256];
  uint32_t* seen_;
  float* cost_;
  int* trigram_count_;
  uint32_t* q_sum_;
  int* q_count_;
  float* scores_;
  uint32_t* unigram_q_sum_;
  int* unigram_count_;
  int* unseen_;  // bytes that neither a trigram nor a unigram of a model explains
  int total_ = 0;
  int value_total_ = 0;
  int ready_ = 0;
  bool has_pending_ = false;  // sums that int2flt has not converted
  bool has_walked_ = false;   // since init
  bool scorer_tried_ = false;
  unsigned pair_ = 0;  // the last two bytes fed
  // The models that share values, and the index of each one's fact set.
  int sharing_[kMaxIndices];
  int fact_of_sharing_[kMaxIndices];
  int nb_sharing_ = 0;
  // Of the models' trigrams.
  float grads_[kMaxIndices];
  float lpmins_[kMaxIndices];
  orva::CostAdders costs_ = orva::cost_adders().back();
  // Null when the automaton is no trie of trigrams and must be walked step by step.
  std::unique_ptr<orva::TrigramScorer> scorer_;
};

namespace orva {
// sum + e^(reference - value), computed in extended precision and rounded once.
float add_exponential(float sum, float reference, float value);
}  // namespace orva

// Ratio of model `k` among all models of the group. -1.0 when k is no model.
float calcul_ratio_model(const CLidMGroup* group, const float* scores, int k);

// Ratio of model k's language, each language scored by its best model, or by its models' mean. -1.0
// when k is no model, infinite when the grouping is not ready.
float calcul_ratio_lng_max(const CLidMGLang* lang, const float* scores, int k);
float calcul_ratio_lng_avg(const CLidMGLang* lang, const float* scores, int k);

#endif  // ORVA_LIB_EVAL_LID_MGROUP_EVAL_H_
