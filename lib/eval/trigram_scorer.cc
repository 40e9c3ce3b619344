#include "lib/eval/trigram_scorer.h"

#include <algorithm>

#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"

namespace orva {
namespace {

// Counts of pending occurrences stay within 32 bits.
constexpr size_t kFoldAfter = size_t{1} << 30;

}  // namespace

bool TrigramScorer::build(const CLidMGroup& group, const std::vector<int>& fact_of,
                          const UlpEntry* const* first, const int* count) {
  if (!unigram_rows_.build(fact_of, first, count)) return false;
  lane_of_ = order_lanes(group);
  if (!rows_.build(group, fact_of, lane_of_)) return false;
  cache_ = std::make_unique<TrigramCache>(&rows_);
  lists_ =
      std::make_unique<RowLists>(&rows_.shapes(), TrigramRows::kMostShapes, row_adders().back());
  pending_.resize(TrigramCache::kMostTrigrams + 1);
  odd_.reserve(TrigramCache::kMostTrigrams);
  by_byte_ = std::make_unique_for_overwrite<CoverTimes[]>(TrigramCache::kMostTrigrams);
  return true;
}

void TrigramScorer::use_plain_vectors() {
  lists_->use(row_adders().front());
  unigram_rows_.use_plain_vectors();
  add_covered_ = cover_adders().front();
}

void TrigramScorer::reset() {
  forget_pending();
  run_ = unigrams_ = LaneSums();
}

void TrigramScorer::feed(unsigned pair, const unsigned char* buf, size_t n) {
  cache_->count(pair, buf, n);
  credit_counted();
  if (cache_->is_full()) {
    fold();
    cache_->clear();
    cache_->count_waiting();
    credit_counted();
  }
  unfolded_ += n;
  if (unfolded_ >= kFoldAfter) fold();
}

// Credits the trigrams counted.
void TrigramScorer::credit_counted() {
  constexpr size_t kAhead = 8;
  const uint16_t* const counted = cache_->counted();
  const size_t nb_counted = cache_->nb_counted();
  uint16_t* pending = pending_.data() + nb_pending_;
  for (size_t i = 0; i < nb_counted; ++i) {
    if (i + kAhead < nb_counted) __builtin_prefetch(&cache_->rest(counted[i + kAhead]));
    Trigram& t = cache_->trigram(counted[i]);
    const uint32_t times = t.count;
    t.count = 0;
    occurrences_[t.last_byte()] += times;
    // Without a leaf it covers nothing; no branch depends on that, nor on whether it is the first.
    const uint32_t has_leaf = t.shape != TrigramRows::kLeafless ? 1 : 0;
    const uint32_t covering = times & (0 - has_leaf);
    TrigramRest& rest = cache_->rest(counted[i]);
    *pending = counted[i];
    const uint32_t newly = (rest.pending == 0 ? 1 : 0) & has_leaf;
    pending += newly;
    rest.pending += covering;
    ends_[t.last_byte()] += newly;
    if (t.shape == TrigramRows::kOdd) {
      credit_odd(t, times);
      continue;
    }
    const LaneValue* row = rows_.row(rest.row);
    __builtin_prefetch(row);
    __builtin_prefetch(row + kBlockLanes);
    lists_->add(t.shape, row, times, &run_);
  }
  nb_pending_ = static_cast<size_t>(pending - pending_.data());
  lists_->drain(&run_);
}

void TrigramScorer::credit_odd(const Trigram& trigram, uint32_t times) {
  for (const uint16_t value : rows_.values(trigram)) {
    const uint8_t lane = lane_of(value_index(value));
    run_.sums[lane] += value_cost(value) * times;
    run_.counts[lane] += times;
  }
}

// Adds the unigrams of all that is pending.
void TrigramScorer::fold() {
  sort_pending();
  size_t from = 0;
  for (int byte = 0; byte < kNbBytes; ++byte) {
    const size_t to = ends_[byte];
    if (occurrences_[byte] == 0) continue;
    add_unigrams(byte, by_byte_.get() + from, by_byte_.get() + to);
    from = to;
  }
  for (const uint16_t number : odd_) uncover_odd(number);
  forget_pending();
}

void TrigramScorer::forget_pending() {
  for (size_t i = 0; i < nb_pending_; ++i) cache_->rest(pending_[i]).pending = 0;
  nb_pending_ = 0;
  unfolded_ = 0;
  std::fill(std::begin(ends_), std::end(ends_), 0);
  std::fill(std::begin(occurrences_), std::end(occurrences_), 0);
}

void TrigramScorer::sort_pending() {
  uint32_t end = 0;
  for (uint32_t& e : ends_) {
    const uint32_t count = e;
    e = end;
    end += count;
  }
  odd_.clear();
  for (size_t i = 0; i < nb_pending_; ++i) {
    const uint16_t number = pending_[i];
    const Trigram& t = cache_->trigram(number);
    __builtin_prefetch(&cache_->models(number));
    // An odd trigram covers nothing here.
    by_byte_[ends_[t.last_byte()]++] = {&cache_->models(number), cache_->rest(number).pending};
    if (t.shape == TrigramRows::kOdd) odd_.push_back(number);
  }
}

// Adds the cost of a byte, all of whose occurrences are with the trigrams from `first` on.
void TrigramScorer::add_unigrams(int byte, const CoverTimes* first, const CoverTimes* last) {
  uint32_t count = occurrences_[byte];
  const auto add = [&](const CoverTimes* sets, size_t nb_sets, uint32_t total) {
    alignas(64) uint16_t covered[kMostModels];
    add_covered_(sets, nb_sets, total, covered);
    unigram_rows_.add(byte, count, covered, &unigrams_);
    count = 0;
  };
  for (;;) {
    const CoverTimes* end = first;
    uint32_t total = 0;
    while (end != last && end->times <= kMostCovered - total) total += (end++)->times;
    add(first, static_cast<size_t>(end - first), total);
    if (end == last) return;
    // The next one alone, as often as it takes.
    CoverTimes part = *end;
    for (uint32_t left = end->times; left != 0; left -= part.times) {
      part.times = std::min(left, kMostCovered);
      add(&part, 1, part.times);
    }
    first = end + 1;
  }
}

// Takes off what an odd trigram covers.
void TrigramScorer::uncover_odd(uint16_t number) {
  // Each of at most 127 values may cover a model.
  constexpr uint32_t kMostTimes = kMostCovered / 127;
  const Trigram& t = cache_->trigram(number);
  for (uint32_t left = cache_->rest(number).pending; left != 0;) {
    const uint32_t times = std::min(left, kMostTimes);
    alignas(64) uint16_t covered[kMostModels] = {};
    rows_.count_models(t, covered);
    for (uint16_t& count : covered) count = static_cast<uint16_t>(count * times);
    unigram_rows_.add(t.last_byte(), 0, covered, &unigrams_);
    left -= times;
  }
}

const LaneSums& TrigramScorer::unigrams() {
  fold();
  return unigrams_;
}

}  // namespace orva
