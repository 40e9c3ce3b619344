#include "lib/eval/lid_mgroup_eval.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "lib/mgroup/group_format.h"
#include "lib/util/accounting.h"

namespace {

// Counters and sums wrap at 32 bits.
int wrapping_add(int a, int b) {
  return static_cast<int>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

// Starts sums anew and moves their counts to `totals`. Sums of no values are left for the next
// time.
void settle(uint32_t* __restrict__ sums, int* __restrict__ counts, int* __restrict__ totals,
            size_t n) {
  for (size_t m = 0; m < n; ++m) {
    sums[m] = counts[m] == 0 ? sums[m] : 0;
    totals[m] = wrapping_add(totals[m], counts[m]);
    counts[m] = 0;
  }
}

template <typename T>
T* array_of(int n) {
  static_assert(sizeof(T) == 4);
  return static_cast<T*>(malloc_chk(n * 4));
}

template <typename T>
void release(T* array, int n) {
  if (array != nullptr) free_chk(array, n * 4);
}

// In the accounts the table of credited values stands as a 4-byte reference and one 1024-byte row
// an index.
constexpr int kAccountedPerIndex = 4 + 1024;

CLidMGLang* group_languages(const CLidMGroup& group) {
  std::vector<const char*> names;
  for (int m = 0; m < group.nb_models; ++m) names.push_back(group.models_part.models[m].name);
  return new CLidMGLang(names.data(), group.nb_models, 2);
}

}  // namespace

CLidMGroupEval::CLidMGroupEval(CLidMGroup* group)
    : CLidMGEvUlpAcs(group),
      group_(group),
      nb_models_(group->nb_models),
      nb_facts_(group->models_part.nb_facts),
      nb_indices_(nb_models_ + nb_facts_),
      languages_(group_languages(*group)),
      seen_(static_cast<uint32_t*>(malloc_chk_as(nb_indices_ * kAccountedPerIndex, kSeenSize))),
      cost_(array_of<float>(nb_indices_)),
      trigram_count_(array_of<int>(nb_indices_)),
      q_sum_(array_of<uint32_t>(nb_indices_)),
      q_count_(array_of<int>(nb_indices_)),
      scores_(array_of<float>(nb_indices_)),
      unigram_q_sum_(array_of<uint32_t>(nb_indices_)),
      unigram_count_(array_of<int>(nb_indices_)),
      unseen_(array_of<int>(nb_indices_)) {
  const bool ok = seen_ != nullptr && cost_ != nullptr && trigram_count_ != nullptr &&
                  q_sum_ != nullptr && q_count_ != nullptr && scores_ != nullptr &&
                  unigram_q_sum_ != nullptr && unigram_count_ != nullptr && unseen_ != nullptr &&
                  unigrams_ready() && languages_->ready != 0;
  for (int m = 0; m < nb_models_; ++m) {
    grads_[m] = group->models_part.models[m].grad;
    lpmins_[m] = group->models_part.models[m].lpmin;
    const int fact = group->models_part.models[m].fact_no;
    if (fact == -1) continue;
    sharing_[nb_sharing_] = m;
    fact_of_sharing_[nb_sharing_++] = fact;
  }
  memset(byte_counts_, 0, sizeof byte_counts_);
  if (seen_ != nullptr) memset(seen_, 0, kSeenSize);
  ready_ = ok ? 1 : 0;
  init();
}

// At the first text, for a group may be opened without reading any. Without memory for the scorer
// the automaton is walked, which gives the same scores.
void CLidMGroupEval::make_scorer() {
  scorer_tried_ = true;
  try {
    std::vector<int> fact_of;
    for (int m = 0; m < nb_models_; ++m) {
      const int fact = group_->models_part.models[m].fact_no;
      fact_of.push_back(fact == -1 ? m : fact);
    }
    const UlpEntry* first[orva::kNbBytes];
    int count[orva::kNbBytes];
    for (int b = 0; b < orva::kNbBytes; ++b) {
      first[b] = byte_first(b);
      count[b] = byte_count(b);
    }
    scorer_ = std::make_unique<orva::TrigramScorer>();
    if (!scorer_->build(*group_, fact_of, first, count)) scorer_.reset();
  } catch (const std::bad_alloc&) {
    scorer_.reset();
  }
}

void CLidMGroupEval::use_plain_vectors() {
  costs_ = orva::cost_adders().front();
  if (ready_ != 0 && !scorer_tried_) make_scorer();
  if (scorer_ != nullptr) scorer_->use_plain_vectors();
}

CLidMGroupEval::~CLidMGroupEval() {
  if (seen_ != nullptr) free_chk(seen_, nb_indices_ * kAccountedPerIndex);
  release(cost_, nb_indices_);
  release(trigram_count_, nb_indices_);
  release(q_sum_, nb_indices_);
  release(q_count_, nb_indices_);
  release(scores_, nb_indices_);
  release(unigram_q_sum_, nb_indices_);
  release(unigram_count_, nb_indices_);
  release(unseen_, nb_indices_);
  delete languages_;
}

int CLidMGroupEval::init() {
  if (ready_ == 0) return -1;
  total_ = 0;
  value_total_ = 0;
  if (has_walked_) {
    for (int b = 0; b < orva::kNbBytes; ++b) {
      // A byte that did not occur was credited no trigram.
      if (byte_counts_[b] != 0) memset(seen(b), 0, kMaxIndices * sizeof(uint32_t));
      byte_counts_[b] = 0;
    }
    has_walked_ = false;
  }
  if (scorer_ != nullptr) scorer_->reset();
  const auto size = static_cast<size_t>(nb_indices_) * 4;
  memset(cost_, 0, size);
  memset(trigram_count_, 0, size);
  memset(q_sum_, 0, size);
  memset(q_count_, 0, size);
  has_pending_ = false;
  return 0;
}

void CLidMGroupEval::auto_init(unsigned char c1, unsigned char c2) {
  if (ready_ == 0) return;
  group_->walk_state = 0;
  group_->walk_last_byte = 0;
  const auto place = [this](unsigned char c) {
    const int next = group_->child(group_->walk_state, c);
    if (next >= group_->nb_istates) {
      group_->walk_state = group_->def_so[next - group_->nb_istates];
      group_->walk_last_byte = c;
      return;
    }
    step(c);
  };
  place(c1);
  place(c2);
  pair_ = static_cast<unsigned>(c1) << 8 | c2;
}

// A transition by `c` that reaches no leaf.
void CLidMGroupEval::step(unsigned char c) {
  CLidMGroup& g = *group_;
  int next = g.child(g.walk_state, c);
  if (next == 0) {
    next = g.child(g.child(0, static_cast<unsigned char>(g.walk_last_byte)), c);
    if (next == 0) next = g.child(0, c);
  }
  g.walk_state = next;
  g.walk_last_byte = c;
}

// Credits the values of a leaf reached by `c`.
void CLidMGroupEval::credit(uint32_t leaf_word, unsigned char c) {
  // Kept: the number of values is a signed byte, so a leaf with 128 or more of them credits none.
  const int count = std::max(orva::leaf_count(leaf_word), 0);
  const uint16_t* values = group_->lstates_vals + (count == 0 ? 0 : orva::leaf_first(leaf_word));
  for (int v = 0; v < count; ++v) {
    const int index = orva::value_index(values[v]);
    ++seen(c)[index];
    q_sum_[index] += orva::value_cost(values[v]);
    q_count_[index] = wrapping_add(q_count_[index], 1);
  }
  value_total_ = wrapping_add(value_total_, count);
  has_pending_ = true;
}

// Feeds a byte by its transition.
void CLidMGroupEval::walk(unsigned char c) {
  CLidMGroup& g = *group_;
  has_walked_ = true;
  ++byte_counts_[c];
  pair_ = (static_cast<unsigned>(g.walk_last_byte) & 0xFF) << 8 | c;
  const int next = g.child(g.walk_state, c);
  if (next < g.nb_istates) return step(c);
  const int leaf = next - g.nb_istates;
  g.walk_last_byte = c;
  g.walk_state = g.def_so[leaf];
  credit(g.lstates[leaf], c);
}

// Whether the walk stands where the last two bytes lead. It may not at a text's beginning, nor
// after another evaluator has moved it.
bool CLidMGroupEval::knows_pair() const {
  return scorer_ != nullptr && group_->walk_state == scorer_->state_after(pair_) &&
         group_->walk_last_byte == static_cast<int>(pair_ & 0xFF);
}

// Feeds a run of bytes by their trigrams alone.
void CLidMGroupEval::run(const unsigned char* buf, int n) {
  scorer_->feed(pair_, buf, static_cast<size_t>(n));
  const uint32_t values = scorer_->take_run(static_cast<size_t>(nb_indices_), q_sum_, q_count_);
  has_pending_ = true;
  value_total_ = wrapping_add(value_total_, static_cast<int>(values));
  for (int i = std::max(0, n - 2); i < n; ++i) pair_ = (pair_ << 8 | buf[i]) & 0xFFFF;
  group_->walk_state = scorer_->state_after(pair_);
  group_->walk_last_byte = buf[n - 1];
}

void CLidMGroupEval::auto_nexts(const unsigned char* buf, int n) {
  if (ready_ == 0) return;
  if (!scorer_tried_) make_scorer();
  // Kept: sums wrap at 32 bits, as their types always have.
  total_ = wrapping_add(total_, n);
  while (n > 0) {
    int length = 1;
    if (knows_pair()) {
      length = std::min(n, static_cast<int>(orva::TrigramScorer::kMostFed));
      run(buf, length);
    } else {
      walk(buf[0]);
    }
    buf += length;
    n -= length;
  }
  int2flt();
}

void CLidMGroupEval::int2flt() {
  if (ready_ == 0 || !has_pending_) return;
  has_pending_ = false;
  for (int k = 0; k < nb_sharing_; ++k) {
    const int m = sharing_[k];
    q_sum_[m] += q_sum_[fact_of_sharing_[k]];
    q_count_[m] = wrapping_add(q_count_[m], q_count_[fact_of_sharing_[k]]);
  }
  for (int f = nb_models_; f < nb_indices_; ++f) {
    q_sum_[f] = 0;
    q_count_[f] = 0;
  }
  costs_.add({cost_, q_sum_, q_count_, grads_, lpmins_, nullptr}, static_cast<size_t>(nb_models_),
             cost_);
  settle(q_sum_, q_count_, trigram_count_, static_cast<size_t>(nb_models_));
}

void CLidMGroupEval::sum_unigrams() {
  memset(unigram_q_sum_, 0, static_cast<size_t>(nb_indices_) * 4);
  memset(unigram_count_, 0, static_cast<size_t>(nb_indices_) * 4);
  for (int b = 0; has_walked_ && b < orva::kNbBytes; ++b) {
    if (byte_counts_[b] == 0) continue;
    const uint32_t* credited = seen(b);
    const UlpEntry* entry = byte_first(b);
    for (int k = 0; k < byte_count(b); ++k, ++entry) {
      uint32_t uncovered = byte_counts_[b] - credited[entry->model];
      if (entry->group != entry->model) uncovered -= credited[entry->group];
      unigram_q_sum_[entry->model] += entry->q * uncovered;
      unigram_count_[entry->model] =
          wrapping_add(unigram_count_[entry->model], static_cast<int>(uncovered));
    }
  }
  if (scorer_ == nullptr) return;
  const orva::LaneSums& unigrams = scorer_->unigrams();
  for (int m = 0; m < nb_models_; ++m) {
    unigram_q_sum_[m] += unigrams.sums[m];
    unigram_count_[m] = wrapping_add(unigram_count_[m], static_cast<int>(unigrams.counts[m]));
  }
}

float* CLidMGroupEval::get_lprobs() {
  if (ready_ == 0) return nullptr;
  int2flt();
  sum_unigrams();
  for (int m = 0; m < nb_models_; ++m) {
    unseen_[m] = wrapping_add(wrapping_add(total_, -trigram_count_[m]), -unigram_count_[m]);
  }
  const CUniChrMG& part = group_->unigram_part;
  const auto n = static_cast<size_t>(nb_models_);
  costs_.add({cost_, unigram_q_sum_, unigram_count_, part.models_grad, part.models_lpmin, unseen_},
             n, scores_);
  costs_.divide(scores_, n, total_);
  return scores_;
}
