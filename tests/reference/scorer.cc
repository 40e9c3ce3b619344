#include "tests/reference/scorer.h"

#include <algorithm>

namespace orva {

namespace {

constexpr int kLongestRun = 3;
// Counts of one leaf stay well within 32 bits.
constexpr uint64_t kFoldAfter = uint64_t{1} << 30;

bool is_blank(unsigned char c) { return c == ' ' || c == '\r' || c == '\n' || c == '\t'; }

}  // namespace

Scorer::Scorer(const ModelTables& tables)
    : tables_(tables),
      counts_(static_cast<size_t>(tables.nb_leaves()), 0),
      q_sums_(static_cast<size_t>(tables.nb_indices()), 0),
      q_counts_(q_sums_),
      unigram_sums_(static_cast<size_t>(tables.nb_models()), 0),
      unigram_counts_(unigram_sums_),
      seen_(q_sums_) {}

void Scorer::reset() {
  for (const Touched& t : touched_) counts_[static_cast<size_t>(t.leaf)] = 0;
  touched_.clear();
  std::fill(std::begin(byte_counts_), std::end(byte_counts_), 0);
  for (auto* sums : {&q_sums_, &q_counts_, &unigram_sums_, &unigram_counts_}) {
    std::fill(sums->begin(), sums->end(), 0);
  }
  unfolded_ = 0;
  scored_ = 0;
  run_ = 0;
  last_raw_ = -1;
  position_ = 0;
}

void Scorer::begin_segment() {
  run_ = 0;
  last_raw_ = -1;
  position_ = 0;
}

void Scorer::feed(std::string_view bytes) {
  const CmgModels& switches = tables_.switches();
  for (const char raw : bytes) {
    auto c = static_cast<unsigned char>(raw);
    if (switches.rm_tridups != 0) {
      run_ = c == last_raw_ ? std::min(run_ + 1, kLongestRun + 1) : 1;
      last_raw_ = c;
      if (run_ > kLongestRun) continue;
    }
    if (switches.rm_caps != 0 && c >= 'A' && c <= 'Z') c = static_cast<unsigned char>(c + 32);
    if (switches.rm_digits != 0 && c >= '0' && c <= '9') continue;
    if (switches.rm_blks != 0 && is_blank(c)) continue;
    take(c);
  }
  if (unfolded_ >= kFoldAfter) fold();
}

void Scorer::take(unsigned char byte) {
  if (position_ < 2) {
    before_[position_++] = byte;
    return;
  }
  score(byte);
  before_[0] = before_[1];
  before_[1] = byte;
}

void Scorer::score(unsigned char byte) {
  ++byte_counts_[byte];
  ++scored_;
  ++unfolded_;
  const CLidMGroup& group = tables_.group();
  int state = 0;
  for (const unsigned char next : {before_[0], before_[1], byte}) {
    state = state < group.nb_istates ? group.child(state, next) : 0;
    if (state == 0) return;
  }
  const int leaf = state - group.nb_istates;
  if (leaf >= 0 && counts_[static_cast<size_t>(leaf)]++ == 0) touched_.push_back({leaf, byte});
}

void Scorer::fold() {
  std::sort(touched_.begin(), touched_.end(),
            [](const Touched& a, const Touched& b) { return a.last < b.last; });
  size_t at = 0;
  for (int b = 0; b < kNbBytes; ++b) {
    const size_t from = at;
    while (at < touched_.size() && touched_[at].last == b) ++at;
    if (byte_counts_[b] != 0) fold_byte(b, touched_.data() + from, at - from);
    byte_counts_[b] = 0;
  }
  for (const Touched& t : touched_) counts_[static_cast<size_t>(t.leaf)] = 0;
  touched_.clear();
  unfolded_ = 0;
}

// Credits the trigrams that end in `byte`, and its unigram cost for the occurrences that no trigram
// of a model or of its fact set covers.
void Scorer::fold_byte(int byte, const Touched* first, size_t count) {
  std::fill(seen_.begin(), seen_.end(), 0);
  for (size_t i = 0; i < count; ++i) {
    const auto times = int64_t{counts_[static_cast<size_t>(first[i].leaf)]};
    int nb_values = 0;
    const uint16_t* values = tables_.leaf_values(first[i].leaf, &nb_values);
    for (int v = 0; v < nb_values; ++v) {
      const auto index = static_cast<size_t>(value_index(values[v]));
      q_sums_[index] += int64_t{value_cost(values[v])} * times;
      seen_[index] += times;
    }
  }
  for (size_t i = 0; i < seen_.size(); ++i) q_counts_[i] += seen_[i];
  tables_.for_each_unigram(static_cast<unsigned char>(byte), [&](const UnigramEntry& entry) {
    const auto model = static_cast<size_t>(entry.model);
    int64_t uncovered = static_cast<int64_t>(byte_counts_[byte]) - seen_[model];
    if (entry.fact >= 0) uncovered -= seen_[static_cast<size_t>(entry.fact)];
    unigram_sums_[model] += entry.q * uncovered;
    unigram_counts_[model] += uncovered;
  });
}

std::vector<double> Scorer::totals() {
  fold();
  std::vector<double> totals;
  for (int i = 0; i < tables_.nb_models(); ++i) {
    const ModelInfo& info = tables_.model(i);
    const auto m = static_cast<size_t>(i);
    int64_t sum = q_sums_[m];
    int64_t count = q_counts_[m];
    if (info.fact >= 0) {
      sum += q_sums_[static_cast<size_t>(info.fact)];
      count += q_counts_[static_cast<size_t>(info.fact)];
    }
    const int64_t unseen = static_cast<int64_t>(scored_) - count - unigram_counts_[m];
    totals.push_back(static_cast<double>(sum) * info.step +
                     static_cast<double>(count) * info.least +
                     static_cast<double>(unigram_sums_[m]) * info.unigram_step +
                     static_cast<double>(unigram_counts_[m]) * info.unigram_least +
                     kUnseenCost * static_cast<double>(unseen));
  }
  return totals;
}

}  // namespace orva
