#include "lib/eval/trigram_scorer.h"

#include <algorithm>

#include "lib/mgroup/lid_mgroup.h"

namespace orva {
namespace {

// Counts of pending occurrences stay within 32 bits.
constexpr size_t kFoldAfter = size_t{1} << 30;

}  // namespace

bool TrigramScorer::build(const CLidMGroup& group, const std::vector<int>& fact_of,
                          const UlpEntry* const* first, const int* count) {
  if (group.lstates_tsize > LeafTable::kMostLeaves) return false;
  if (!unigram_rows_.build(fact_of, first, count) || !index_.build(group)) return false;
  lane_of_ = order_lanes(group);
  leaves_.build(group, fact_of, lane_of_);
  lists_ = std::make_unique<CreditLists>(&leaves_, row_adders().back());
  static_assert(NumberedLeaves::kMostNumbers <= PendingCovers::kMost);
  return true;
}

void TrigramScorer::use_plain_vectors() {
  index_.use_plain_bits();
  numbered_.use_plain_vectors();
  lists_->use(row_adders().front());
  unigram_rows_.use_adder(0);
  add_covered_ = cover_adders().front();
}

void TrigramScorer::reset() {
  numbered_.forget_pending();
  unfolded_ = 0;
  if (is_fed_) lists_->clear();
  is_fed_ = false;
  unigram_rows_.clear();
}

void TrigramScorer::feed(unsigned pair, const unsigned char* buf, size_t n) {
  is_fed_ = true;
  for (size_t now = 0; n != 0; buf += now, n -= now) {
    now = std::min(n, TrigramNumbers::kMostFound);
    uint16_t numbers[TrigramNumbers::kMostFound];
    numbers_.find(pair, buf, now, numbers);
    numbered_.count(numbers, now);
    if (numbered_.take_none()) learn(pair, buf, numbers, now);
    unfolded_ += now;
    for (size_t i = now - std::min<size_t>(now, 2); i < now; ++i) pair = pair << 8 | buf[i];
  }
  credit();
  if (unfolded_ >= kFoldAfter) fold();
}

void TrigramScorer::credit() {
  numbered_.take_run(lists_.get());
  lists_->drain();
}

// What is counted and what is pending goes by numbers.
void TrigramScorer::forget_numbers() {
  credit();
  fold();
  numbered_.clear();
  numbers_.clear();
}

// Gives numbers to the trigrams that end in buf[0], ..., buf[n - 1] and have none, and counts
// these.
void TrigramScorer::learn(unsigned pair, const unsigned char* buf, const uint16_t* numbers,
                          size_t n) {
  Trigram trigrams[TrigramNumbers::kMostFound];
  size_t nb_unknown = 0;
  for (size_t i = 0; i < n; ++i) {
    if (numbers[i] != TrigramNumbers::kNone) continue;
    const unsigned first = i > 1 ? buf[i - 2] : pair >> (i == 0 ? 8 : 0) & 0xFF;
    const unsigned second = i > 0 ? buf[i - 1] : pair & 0xFF;
    trigrams[nb_unknown++] = {first | second << 8 | unsigned{buf[i]} << 16};
  }
  uint16_t given[TrigramNumbers::kMostFound];
  if (!learn_all(trigrams, nb_unknown, given)) {
    static_assert(NumberedLeaves::kMostAfterClear >= TrigramNumbers::kMostFound);
    forget_numbers();
    learn_all(trigrams, nb_unknown, given);
  }
  numbered_.count(given, nb_unknown);
}

// False when not enough numbers are left.
bool TrigramScorer::learn_all(const Trigram* trigrams, size_t n, uint16_t* numbers) {
  constexpr size_t kAtOnce = TrigramIndex::kMostFound;
  for (size_t from = 0; from < n; from += kAtOnce) {
    if (!learn_some(trigrams + from, std::min(kAtOnce, n - from), numbers + from)) return false;
  }
  return true;
}

bool TrigramScorer::learn_some(const Trigram* trigrams, size_t n, uint16_t* numbers) {
  static_assert(NumberedLeaves::kNone == TrigramNumbers::kNone);
  static_assert(TrigramIndex::kMostFound <= LeafTable::kMostDecided);
  uint32_t ids[TrigramIndex::kMostFound];
  index_.find(trigrams, n, ids);
  for (size_t i = 0; i < n; ++i) __builtin_prefetch(&leaves_.leaf(ids[i]));
  uint32_t undecided[TrigramIndex::kMostFound];
  size_t nb_undecided = 0;
  for (size_t i = 0; i < n; ++i) {
    undecided[nb_undecided] = ids[i];
    nb_undecided += leaves_.leaf(ids[i]).way() == LeafTable::kNotYet ? 1 : 0;
  }
  leaves_.decide(undecided, nb_undecided);
  for (size_t i = 0; i < n; ++i) leaves_.prefetch(leaves_.leaf(ids[i]));
  for (size_t i = 0; i < n; ++i) {
    uint16_t* const number = numbers_.place_of(trigrams[i]);
    if (number == nullptr) return false;
    // It may have come twice.
    if (*number == TrigramNumbers::kNone) *number = number_for(ids[i], trigrams[i].last_byte());
    if (*number == TrigramNumbers::kNone) return false;
    numbers[i] = *number;
  }
  return true;
}

uint16_t TrigramScorer::number_for(uint32_t leaf_id, unsigned char last_byte) {
  if (leaf_id == TrigramIndex::kNone) return NumberedLeaves::without_leaf(last_byte);
  const Leaf leaf = leaves_.leaf(leaf_id);
  return numbered_.add(leaf, leaves_.set_of(leaf), last_byte);
}

uint32_t TrigramScorer::take_run(size_t n, uint32_t* sums, int* counts) {
  uint32_t all = 0;
  for (size_t i = 0; i < n; ++i) {
    const uint64_t by_index = lists_->by_index(i);
    const uint32_t count =
        lists_->by_lane().counts[lane_of_[i]] + static_cast<uint32_t>(by_index >> 32);
    sums[i] += lists_->by_lane().sums[lane_of_[i]] + static_cast<uint32_t>(by_index);
    counts[i] = static_cast<int>(static_cast<uint32_t>(counts[i]) + count);
    all += count;
  }
  lists_->clear();
  is_fed_ = false;
  return all;
}

// Adds the unigrams of all that is pending.
void TrigramScorer::fold() {
  numbered_.take_pending(&covers_);
  for (const ByteCover& b : covers_.sort()) {
    add_unigrams(b.byte, b.count, b.sets.data(), b.sets.data() + b.sets.size());
  }
  for (const PendingCovers::OneByOne& leaf : covers_.one_by_one()) uncover_one_by_one(leaf);
  covers_.clear_one_by_one();
  unfolded_ = 0;
}

// Adds the cost of `count` occurrences of a byte, which are covered as often as is told from
// `first` on.
void TrigramScorer::add_unigrams(int byte, uint32_t count, const CoverTimes* first,
                                 const CoverTimes* last) {
  const auto add = [&](const CoverTimes* sets, size_t nb_sets, uint32_t most) {
    alignas(64) uint16_t covered[kMostModels];
    add_covered_(leaves_.all_sets(), sets, nb_sets, most, covered);
    unigram_rows_.add(byte, count, covered);
    count = 0;
  };
  if (count != 0 && count <= kMostCovered) {
    return add(first, static_cast<size_t>(last - first), count);
  }
  for (;;) {
    const CoverTimes* end = first;
    uint32_t total = 0;
    while (end != last && end->times <= kMostCovered - total) total += (end++)->times;
    add(first, static_cast<size_t>(end - first), total);
    if (end == last) return;
    // The next one alone, as often as it takes.
    CoverTimes part[1 + kSetsAhead] = {*end};
    for (uint32_t left = end->times; left != 0; left -= part[0].times) {
      part[0].times = std::min(left, kMostCovered);
      add(part, 1, part[0].times);
    }
    first = end + 1;
  }
}

// Takes off what a leaf covers that is credited value by value, for it may cover a model twice.
void TrigramScorer::uncover_one_by_one(const PendingCovers::OneByOne& leaf) {
  constexpr size_t kMostValues = 127;
  constexpr uint32_t kMostTimes = kMostCovered / kMostValues;
  CoverTimes sets[kMostValues + kSetsAhead] = {};
  for (uint32_t left = leaf.times; left != 0;) {
    const uint32_t now = std::min(left, kMostTimes);
    size_t nb_sets = 0;
    for (const uint16_t value : leaves_.values(leaf.leaf)) {
      sets[nb_sets++] = {LeafTable::set_of_value(value), now};
    }
    add_unigrams(leaf.byte, 0, sets, sets + nb_sets);
    left -= now;
  }
}

}  // namespace orva
