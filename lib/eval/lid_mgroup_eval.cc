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

template <typename T>
T* array_of(int n) {
  static_assert(sizeof(T) == 4);
  return static_cast<T*>(malloc_chk(n * 4));
}

template <typename T>
void release(T* array, int n) {
  if (array != nullptr) free_chk(array, n * 4);
}

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
      credits_(nb_indices_),
      cost_(array_of<float>(nb_indices_)),
      trigram_count_(array_of<int>(nb_indices_)),
      q_sum_(array_of<uint32_t>(nb_indices_)),
      q_count_(array_of<int>(nb_indices_)),
      scores_(array_of<float>(nb_indices_)),
      unigram_q_sum_(array_of<uint32_t>(nb_indices_)),
      unigram_count_(array_of<int>(nb_indices_)),
      spare_(array_of<int>(nb_indices_)) {
  const bool ok = credits_.ok() && cost_ != nullptr && trigram_count_ != nullptr &&
                  q_sum_ != nullptr && q_count_ != nullptr && scores_ != nullptr &&
                  unigram_q_sum_ != nullptr && unigram_count_ != nullptr && spare_ != nullptr &&
                  unigrams_ready() && languages_->ready != 0;
  memset(byte_counts_, 0, sizeof byte_counts_);
  ready_ = ok ? 1 : 0;
  init();
}

// At the first text, for a group may be opened without reading any. Without memory for an index the
// automaton is walked, which gives the same scores.
void CLidMGroupEval::make_index() {
  index_tried_ = true;
  try {
    index_ = std::make_unique<orva::TrigramIndex>();
    if (!index_->build(*group_)) index_.reset();
    if (index_ == nullptr) return;
    counter_ = std::make_unique<orva::RunCounter>(index_.get());
    credits_.prepare(*group_, *index_);
    make_unigram_rows();
  } catch (const std::bad_alloc&) {
    unigram_rows_.reset();
    counter_.reset();
    index_.reset();
  }
}

void CLidMGroupEval::make_unigram_rows() {
  std::vector<int> facts;
  for (int m = 0; m < nb_models_; ++m) {
    const int fact = group_->models_part.models[m].fact_no;
    facts.push_back(fact == -1 ? m : fact);
  }
  const UlpEntry* first[orva::kNbBytes];
  int count[orva::kNbBytes];
  for (int b = 0; b < orva::kNbBytes; ++b) {
    first[b] = byte_first(b);
    count[b] = byte_count(b);
  }
  unigram_rows_ = std::make_unique<orva::UnigramRows>();
  if (!unigram_rows_->build(facts, credits_.lanes(), first, count)) unigram_rows_.reset();
}

void CLidMGroupEval::use_plain_vectors() {
  if (ready_ != 0 && !index_tried_) make_index();
  credits_.use_plain_vectors();
  if (unigram_rows_ != nullptr) unigram_rows_->use_plain_vectors();
}

CLidMGroupEval::~CLidMGroupEval() {
  release(cost_, nb_indices_);
  release(trigram_count_, nb_indices_);
  release(q_sum_, nb_indices_);
  release(q_count_, nb_indices_);
  release(scores_, nb_indices_);
  release(unigram_q_sum_, nb_indices_);
  release(unigram_count_, nb_indices_);
  release(spare_, nb_indices_);
  delete languages_;
}

int CLidMGroupEval::init() {
  if (ready_ == 0) return -1;
  total_ = 0;
  value_total_ = 0;
  for (int b = 0; b < orva::kNbBytes; ++b) {
    // A byte that did not occur was credited no trigram.
    if (byte_counts_[b] != 0) credits_.clear_row(b);
    byte_counts_[b] = 0;
  }
  for (int i = 0; i < nb_indices_; ++i) {
    cost_[i] = 0;
    trigram_count_[i] = 0;
    q_sum_[i] = 0;
    q_count_[i] = 0;
  }
  return 0;
}

void CLidMGroupEval::auto_init(unsigned char c1, unsigned char c2) {
  if (ready_ == 0) return;
  group_->walk_state = 0;
  group_->walk_last_byte = 0;
  const int value_total = value_total_;
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
  value_total_ = value_total;
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

// Feeds bytes one transition after the other.
void CLidMGroupEval::walk(const unsigned char* buf, int n) {
  CLidMGroup& g = *group_;
  for (int i = 0; i < n; ++i) {
    const unsigned char c = buf[i];
    ++byte_counts_[c];
    const int next = g.child(g.walk_state, c);
    if (next < g.nb_istates) {
      step(c);
      continue;
    }
    const int leaf = next - g.nb_istates;
    g.walk_last_byte = c;
    g.walk_state = g.def_so[leaf];
    value_total_ = wrapping_add(value_total_, credits_.add(g, g.lstates[leaf], c));
  }
}

// Feeds a run of bytes by their trigrams alone. Only the first byte needs the state.
void CLidMGroupEval::run(const unsigned char* buf, int n) {
  CLidMGroup& g = *group_;
  const auto before = static_cast<unsigned>(g.walk_last_byte);
  walk(buf, 1);
  if (n == 1) return;
  counter_->count(before << 8 | buf[0], buf + 1, n - 1, byte_counts_);
  const uint32_t credited = credits_.add(g, counter_->leaves());
  value_total_ = wrapping_add(value_total_, static_cast<int>(credited));
  g.walk_state = index_->state_after(static_cast<unsigned>(buf[n - 2]) << 8 | buf[n - 1]);
  g.walk_last_byte = buf[n - 1];
}

void CLidMGroupEval::auto_nexts(const unsigned char* buf, int n) {
  if (ready_ == 0) return;
  if (!index_tried_) make_index();
  // Kept: sums wrap at 32 bits, as their types always have.
  total_ = wrapping_add(total_, n);
  while (n > 0) {
    const int length = std::min(n, orva::RunCounter::kMaxRun);
    if (index_ != nullptr && index_->is_consistent(group_->walk_state, group_->walk_last_byte)) {
      run(buf, length);
    } else {
      walk(buf, length);
    }
    take_credits();
    buf += length;
    n -= length;
  }
  int2flt();
}

// Moves what a run has credited to the pending sums.
void CLidMGroupEval::take_credits() {
  for (int i = 0; i < nb_indices_; ++i) {
    q_sum_[i] += credits_.q_sum(i);
    q_count_[i] = wrapping_add(q_count_[i], static_cast<int>(credits_.q_count(i)));
  }
  credits_.take_sums();
}

void CLidMGroupEval::int2flt() {
  if (ready_ == 0) return;
  const CmgModel* models = group_->models_part.models;
  for (int m = 0; m < nb_models_; ++m) {
    const int fact = models[m].fact_no;
    if (fact == -1) continue;
    q_sum_[m] += q_sum_[fact];
    q_count_[m] = wrapping_add(q_count_[m], q_count_[fact]);
  }
  for (int f = nb_models_; f < nb_indices_; ++f) {
    q_sum_[f] = 0;
    q_count_[f] = 0;
  }
  for (int m = 0; m < nb_models_; ++m) {
    if (q_count_[m] == 0) continue;
    const long double added = static_cast<long double>(q_sum_[m]) * models[m].grad +
                              static_cast<long double>(q_count_[m]) * models[m].lpmin;
    cost_[m] = static_cast<float>(cost_[m] + added);
    trigram_count_[m] = wrapping_add(trigram_count_[m], q_count_[m]);
    q_sum_[m] = 0;
    q_count_[m] = 0;
  }
}

void CLidMGroupEval::sum_unigram_rows() {
  orva::DenseSums all;
  for (int b = 0; b < orva::kNbBytes; ++b) {
    if (byte_counts_[b] != 0) unigram_rows_->add(b, byte_counts_[b], credits_.row(b), &all);
  }
  for (int m = 0; m < nb_models_; ++m) {
    const int lane = credits_.lane_of(m);
    unigram_q_sum_[m] = all.sums[lane];
    uint32_t count = all.counts[lane];
    const int fact = group_->models_part.models[m].fact_no;
    if (fact != -1) {
      unigram_q_sum_[m] += all.sums[credits_.lane_of(fact)];
      count += all.counts[credits_.lane_of(fact)];
    }
    unigram_count_[m] = static_cast<int>(count);
  }
}

void CLidMGroupEval::sum_unigrams() {
  if (unigram_rows_ != nullptr) return sum_unigram_rows();
  memset(unigram_q_sum_, 0, static_cast<size_t>(nb_indices_) * 4);
  memset(unigram_count_, 0, static_cast<size_t>(nb_indices_) * 4);
  for (int b = 0; b < orva::kNbBytes; ++b) {
    if (byte_counts_[b] == 0) continue;
    const uint32_t* credited = credits_.row(b);
    const UlpEntry* entry = byte_first(b);
    for (int k = 0; k < byte_count(b); ++k, ++entry) {
      uint32_t uncovered = byte_counts_[b] - credited[credits_.lane_of(entry->model)];
      if (entry->group != entry->model) uncovered -= credited[credits_.lane_of(entry->group)];
      unigram_q_sum_[entry->model] += entry->q * uncovered;
      unigram_count_[entry->model] =
          wrapping_add(unigram_count_[entry->model], static_cast<int>(uncovered));
    }
  }
}

float* CLidMGroupEval::get_lprobs() {
  if (ready_ == 0) return nullptr;
  int2flt();
  sum_unigrams();
  const CUniChrMG& part = group_->unigram_part;
  for (int m = 0; m < nb_models_; ++m) {
    long double cost = cost_[m];
    if (unigram_count_[m] != 0) {
      cost += static_cast<long double>(unigram_q_sum_[m]) * part.models_grad[m] +
              static_cast<long double>(unigram_count_[m]) * part.models_lpmin[m];
    }
    const int unseen = wrapping_add(wrapping_add(total_, -trigram_count_[m]), -unigram_count_[m]);
    const auto sum = static_cast<float>(cost + kUnseenCost * unseen);
    scores_[m] = static_cast<float>(static_cast<long double>(sum) / total_);
  }
  return scores_;
}
