#include "lib/eval/lid_mgroup_eval.h"

#include <cstring>
#include <vector>

#include "lib/mgroup/group_format.h"
#include "lib/util/accounting.h"

namespace {

constexpr int kRowSize = 256 * 4;

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
      cost_(array_of<float>(nb_indices_)),
      trigram_count_(array_of<int>(nb_indices_)),
      q_sum_(array_of<uint32_t>(nb_indices_)),
      q_count_(array_of<int>(nb_indices_)),
      scores_(array_of<float>(nb_indices_)),
      unigram_q_sum_(array_of<uint32_t>(nb_indices_)),
      unigram_count_(array_of<int>(nb_indices_)),
      spare_(array_of<int>(nb_indices_)) {
  seen_ = static_cast<int**>(
      malloc_chk_as(nb_indices_ * 4, static_cast<size_t>(nb_indices_) * sizeof(int*)));
  bool ok = seen_ != nullptr;
  for (int i = 0; i < nb_indices_ && seen_ != nullptr; ++i) {
    seen_[i] = static_cast<int*>(malloc_chk(kRowSize));
    if (seen_[i] == nullptr) ok = false;
    // Rows are cleared whole here once; init then clears only what scoring reads.
    if (seen_[i] != nullptr) memset(seen_[i], 0, kRowSize);
  }
  ok = ok && cost_ != nullptr && trigram_count_ != nullptr && q_sum_ != nullptr &&
       q_count_ != nullptr && scores_ != nullptr && unigram_q_sum_ != nullptr &&
       unigram_count_ != nullptr && spare_ != nullptr && unigrams_ready() &&
       languages_->ready != 0;
  memset(byte_counts_, 0, sizeof byte_counts_);
  ready_ = ok ? 1 : 0;
  init();
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
  if (seen_ == nullptr) return;
  for (int i = 0; i < nb_indices_; ++i) {
    if (seen_[i] != nullptr) free_chk(seen_[i], kRowSize);
  }
  free_chk(seen_, nb_indices_ * 4);
}

int CLidMGroupEval::init() {
  if (ready_ == 0) return -1;
  total_ = 0;
  value_total_ = 0;
  for (int b = 0; b < orva::kNbBytes; ++b) {
    // A byte that did not occur was credited no trigram.
    if (byte_counts_[b] != 0) clear_seen(b);
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

void CLidMGroupEval::clear_seen(int byte) {
  const UlpEntry* entry = byte_first(byte);
  for (int k = 0; k < byte_count(byte); ++k, ++entry) {
    seen_[entry->model][byte] = 0;
    seen_[entry->group][byte] = 0;
  }
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

void CLidMGroupEval::credit(unsigned char c, uint32_t leaf) {
  // Kept: the number of values is a signed byte, so a leaf with 128 or more of them credits none.
  const int count = orva::leaf_count(leaf);
  if (count <= 0) return;
  const uint16_t* values = group_->lstates_vals + orva::leaf_first(leaf);
  for (int v = count - 1; v >= 0; --v) {
    const int index = orva::value_index(values[v]);
    ++seen_[index][c];
    q_sum_[index] += orva::value_cost(values[v]);
    ++q_count_[index];
  }
  value_total_ = wrapping_add(value_total_, count);
}

void CLidMGroupEval::auto_nexts(const unsigned char* buf, int n) {
  if (ready_ == 0) return;
  CLidMGroup& g = *group_;
  // Kept: sums wrap at 32 bits, as their types always have.
  total_ = wrapping_add(total_, n);
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
    credit(c, g.lstates[leaf]);
  }
  int2flt();
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

void CLidMGroupEval::sum_unigrams() {
  memset(unigram_q_sum_, 0, static_cast<size_t>(nb_indices_) * 4);
  memset(unigram_count_, 0, static_cast<size_t>(nb_indices_) * 4);
  for (int b = 0; b < orva::kNbBytes; ++b) {
    if (byte_counts_[b] == 0) continue;
    const UlpEntry* entry = byte_first(b);
    for (int k = 0; k < byte_count(b); ++k, ++entry) {
      int uncovered = wrapping_add(byte_counts_[b], -seen_[entry->model][b]);
      if (entry->group != entry->model) {
        uncovered = wrapping_add(uncovered, -seen_[entry->group][b]);
      }
      unigram_q_sum_[entry->model] += uint32_t{entry->q} * static_cast<uint32_t>(uncovered);
      unigram_count_[entry->model] = wrapping_add(unigram_count_[entry->model], uncovered);
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
