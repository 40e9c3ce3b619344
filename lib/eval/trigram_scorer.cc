#include "lib/eval/trigram_scorer.h"

#include <algorithm>

#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"

namespace orva {
namespace {

// Counts of pending occurrences stay within 32 bits.
constexpr size_t kFoldAfter = size_t{1} << 30;
constexpr size_t kMostPending = 32768;
constexpr size_t kPendingAhead = 16;  // fetched before they are needed

}  // namespace

bool TrigramScorer::build(const CLidMGroup& group, const std::vector<int>& fact_of,
                          const UlpEntry* const* first, const int* count) {
  if (group.lstates_tsize > LeafTable::kMostLeaves) return false;
  if (!unigram_rows_.build(fact_of, first, count) || !index_.build(group)) return false;
  lane_of_ = order_lanes(group);
  leaves_.build(group, fact_of, lane_of_);
  lists_ = std::make_unique<CreditLists>(&leaves_, row_adders().back());
  pending_.resize(kMostPending + kMostFed + kPendingAhead);
  sorted_.resize(pending_.size());
  sets_ = std::make_unique_for_overwrite<CoverTimes[]>((pending_.size() + 1) * LeafTable::kMostFew);
  several_ = std::make_unique_for_overwrite<Several[]>(pending_.size());
  reset();
  return true;
}

void TrigramScorer::use_plain_vectors() {
  index_.use_plain_bits();
  lists_->use(row_adders().front());
  unigram_rows_.use_plain_vectors();
  add_covered_ = cover_adders().front();
}

void TrigramScorer::reset() {
  forget_pending();
  lists_->clear();
  unigram_rows_.clear();
}

void TrigramScorer::feed(unsigned pair, const unsigned char* buf, size_t n) {
  const std::span<const CountedTrigram> counted = counter_.count(pair, buf, n);
  constexpr size_t kAtOnce = TrigramIndex::kMostFound;
  for (size_t from = 0; from < counted.size(); from += kAtOnce) {
    credit(counted.subspan(from, std::min(kAtOnce, counted.size() - from)));
  }
  lists_->drain();
  unfolded_ += n;
  if (unfolded_ >= kFoldAfter || nb_pending_ > kMostPending) fold();
}

void TrigramScorer::credit(std::span<const CountedTrigram> trigrams) {
  uint32_t ids[TrigramIndex::kMostFound];
  index_.find(trigrams.data(), trigrams.size(), ids);
  for (size_t i = 0; i < trigrams.size(); ++i) __builtin_prefetch(&leaves_.leaf(ids[i]));
  // Leaves of no list yet, or of none ever.
  static_assert(TrigramIndex::kMostFound <= LeafTable::kMostDecided);
  uint32_t odd[TrigramIndex::kMostFound];
  uint32_t odd_times[TrigramIndex::kMostFound];
  size_t nb_odd = 0;
  uint32_t* pending = pending_.data() + nb_pending_;
  for (size_t i = 0; i < trigrams.size(); ++i) {
    const unsigned char last_byte = trigrams[i].last_byte();
    const uint32_t times = trigrams[i].times();
    Leaf& leaf = leaves_.leaf(ids[i]);
    occurrences_[last_byte] += times;
    // So that no branch depends on whether it is the first.
    *pending = ids[i] << 8 | last_byte;
    pending += leaf.pending == 0 ? 1 : 0;
    leaf.pending += times;
    if (__builtin_expect(leaf.way() <= LeafTable::kOneByOne, 0)) {
      odd[nb_odd] = ids[i];
      odd_times[nb_odd++] = times;
    } else {
      lists_->add(leaf.way(), leaf.place(), times);
    }
  }
  nb_pending_ = static_cast<size_t>(pending - pending_.data());
  if (nb_odd == 0) return;
  leaves_.decide(odd, nb_odd);
  for (size_t i = 0; i < nb_odd; ++i) {
    const Leaf& leaf = leaves_.leaf(odd[i]);
    if (leaf.way() == LeafTable::kOneByOne) {
      lists_->add_now(leaves_.values(odd[i]), odd_times[i]);
    } else {
      lists_->add(leaf.way(), leaf.place(), odd_times[i]);
    }
  }
}

uint32_t TrigramScorer::take_run(size_t n, uint32_t* sums, int* counts) {
  uint32_t all = 0;
  for (size_t i = 0; i < n; ++i) {
    const uint64_t by_index = lists_->by_index()[i];
    const uint32_t count =
        lists_->by_lane().counts[lane_of_[i]] + static_cast<uint32_t>(by_index >> 32);
    sums[i] += lists_->by_lane().sums[lane_of_[i]] + static_cast<uint32_t>(by_index);
    counts[i] = static_cast<int>(static_cast<uint32_t>(counts[i]) + count);
    all += count;
  }
  lists_->clear();
  return all;
}

// Adds the unigrams of all that is pending.
void TrigramScorer::fold() {
  sort_pending();
  const uint32_t* first = sorted_.data();
  for (int byte = 0; byte < kNbBytes; ++byte) {
    const uint32_t* const last = sorted_.data() + ends_[byte];
    if (occurrences_[byte] != 0) fold_byte(byte, first, last);
    first = last;
  }
  // None of these is pending any more.
  nb_pending_ = 0;
  forget_pending();
}

void TrigramScorer::forget_pending() {
  for (size_t i = 0; i < nb_pending_; ++i) leaves_.leaf(pending_[i] >> 8).pending = 0;
  nb_pending_ = 0;
  unfolded_ = 0;
  std::fill(std::begin(occurrences_), std::end(occurrences_), 0);
  // Trigrams without a leaf are never pending, for they always have been.
  leaves_.leaf(0).pending = 1;
}

void TrigramScorer::sort_pending() {
  std::fill(std::begin(ends_), std::end(ends_), 0);
  for (size_t i = 0; i < nb_pending_; ++i) ++ends_[pending_[i] & 0xFF];
  uint32_t end = 0;
  for (uint32_t& e : ends_) {
    const uint32_t count = e;
    e = end;
    end += count;
  }
  for (size_t i = 0; i < nb_pending_; ++i) sorted_[ends_[pending_[i] & 0xFF]++] = pending_[i];
}

// Adds the unigrams of a byte, with which the leaves from `first` on end.
void TrigramScorer::fold_byte(int byte, const uint32_t* first, const uint32_t* last) {
  CoverTimes* sets = sets_.get();
  Several* several = several_.get();
  for (; first != last; ++first) {
    __builtin_prefetch(&leaves_.leaf(first[kPendingAhead] >> 8));
    Leaf& leaf = leaves_.leaf(*first >> 8);
    if (leaf.way() == LeafTable::kOneByOne) uncover_one_by_one(*first, leaf.pending);
    const uint32_t nb_sets = leaves_.nb_sets(leaf);
    // Written to both, of which only one keeps it, for a branch would often be guessed wrong.
    *sets = {leaves_.cover(leaf), leaf.pending};
    sets += nb_sets == 1 ? 1 : 0;
    *several = {nb_sets, leaves_.cover(leaf), leaf.pending};
    several += nb_sets > 1 ? 1 : 0;
    leaf.pending = 0;
  }
  for (const Several* s = several_.get(); s != several; ++s) {
    const uint16_t* const values = leaves_.all_values() + s->cover;
    // All of them, of which some stay.
#pragma GCC unroll 4
    for (size_t i = 0; i < LeafTable::kMostFew; ++i) {
      sets[i] = {LeafTable::set_of_value(values[i]), s->times};
    }
    sets += s->nb_sets;
  }
  add_unigrams(byte, occurrences_[byte], sets_.get(), sets);
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
    CoverTimes part = *end;
    for (uint32_t left = end->times; left != 0; left -= part.times) {
      part.times = std::min(left, kMostCovered);
      add(&part, 1, part.times);
    }
    first = end + 1;
  }
}

// Takes off what a leaf covers that is credited value by value, for it may cover a model twice.
void TrigramScorer::uncover_one_by_one(uint32_t pending, uint32_t times) {
  constexpr size_t kMostValues = 127;
  constexpr uint32_t kMostTimes = kMostCovered / kMostValues;
  const auto byte = static_cast<int>(pending & 0xFF);
  CoverTimes sets[kMostValues];
  for (uint32_t left = times; left != 0;) {
    const uint32_t now = std::min(left, kMostTimes);
    size_t nb_sets = 0;
    for (const uint16_t value : leaves_.values(pending >> 8)) {
      sets[nb_sets++] = {LeafTable::set_of_value(value), now};
    }
    add_unigrams(byte, 0, sets, sets + nb_sets);
    left -= now;
  }
}

}  // namespace orva
