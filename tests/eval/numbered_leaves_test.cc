#include "lib/eval/numbered_leaves.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "tests/eval/leaf_fixture.h"

namespace orva {
namespace {

// How often each set, or leaf, is covered.
using CoverCounts = std::map<uint32_t, uint32_t>;

class NumberedLeavesOf : public Leaves {
 protected:
  // What is known of a number, and how often it is pending.
  struct Known {
    uint32_t id;
    unsigned char last_byte;
    uint32_t pending;
  };

  void add(uint16_t number, uint32_t id, unsigned char last_byte) {
    EXPECT_NE(number, NumberedLeaves::kNone);
    EXPECT_TRUE(known_.insert({number, {id, last_byte, 0}}).second) << number << " twice";
    numbers_.push_back(number);
  }

  void add_all(std::mt19937* random) {
    for (int b = 0; b < 256; ++b) {
      const auto byte = static_cast<unsigned char>(b);
      add(NumberedLeaves::without_leaf(byte), 0, byte);
    }
    for (uint32_t id = 1; id <= static_cast<uint32_t>(group_.lstates_tsize); ++id) {
      leaves_.decide(&id, 1);
      const auto byte = static_cast<unsigned char>((*random)());
      add(numbered_.add(leaves_.leaf(id), leaves_.set_of(leaves_.leaf(id)), byte), id, byte);
    }
  }

  // Random numbers, among them one so often that no list takes it at once.
  std::vector<uint16_t> random_run(std::mt19937* random, size_t length) const {
    std::vector<uint16_t> run(length, numbers_[length % numbers_.size()]);
    for (size_t i = 0; i < length; i += 1 + (*random)() % 2) {
      run[i] = numbers_[(*random)() % numbers_.size()];
    }
    return run;
  }

  // Counts a run in pieces.
  void count(const std::vector<uint16_t>& run) {
    constexpr size_t kPiece = 2048;
    for (size_t from = 0; from < run.size(); from += kPiece) {
      numbered_.count(run.data() + from, std::min(kPiece, run.size() - from));
    }
    for (const uint16_t number : run) ++known_.at(number).pending;
  }

  Sums credited_naively_by(const std::vector<uint16_t>& run) const {
    Sums sums = {};
    for (const uint16_t number : run) {
      const uint32_t id = known_.at(number).id;
      if (id == 0) continue;
      const Sums added = credited_naively(leaves_.values(id), 1);
      for (size_t i = 0; i < kLanes; ++i) {
        sums[i].first += added[i].first;
        sums[i].second += added[i].second;
      }
    }
    return sums;
  }

  // Takes what is pending, and compares it by last byte.
  void expect_pending() {
    numbered_.take_pending(&covers_);
    std::array<uint32_t, 256> expected_counts = {};
    std::array<CoverCounts, 256> expected = {};
    CoverCounts expected_one_by_one;
    for (auto& [number, known] : known_) {
      const uint32_t times = std::exchange(known.pending, 0);
      expected_counts[known.last_byte] += times;
      const uint8_t way = leaves_.leaf(known.id).way();
      if (times == 0 || way == LeafTable::kNone) continue;
      CoverCounts& counts =
          way == LeafTable::kOneByOne ? expected_one_by_one : expected[known.last_byte];
      const uint32_t set = leaves_.set_of(leaves_.leaf(known.id));
      counts[way == LeafTable::kOneByOne ? known.id : set] += times;
    }
    std::array<uint32_t, 256> counts = {};
    std::array<CoverCounts, 256> covered = {};
    for (const ByteCover& b : covers_.sort()) {
      counts[b.byte] = b.count;
      for (const CoverTimes& c : b.sets) covered[b.byte][c.set] += c.times;
    }
    EXPECT_EQ(counts, expected_counts);
    EXPECT_EQ(covered, expected);
    CoverCounts one_by_one;
    for (const PendingCovers::OneByOne& o : covers_.one_by_one()) one_by_one[o.leaf] += o.times;
    EXPECT_EQ(one_by_one, expected_one_by_one);
    covers_.clear_one_by_one();
  }

  NumberedLeaves numbered_;
  PendingCovers covers_;
  std::map<uint16_t, Known> known_;
  std::vector<uint16_t> numbers_;
};

TEST_F(NumberedLeavesOf, RunsAreCreditedAndPendingAsOftenAsTheyCame) {
  PlainOptions o;
  o.nb_models = 40;
  o.density = 0.8;
  o.built = true;
  o.odd_leaves = true;
  load(o, 2000);
  std::mt19937 random(3);
  add_all(&random);
  for (const bool plain : {false, true}) {
    if (plain) numbered_.use_plain_vectors();
    for (const size_t length : {0, 1, 16, 600, 601, 5000, 5001, 10000}) {
      // What is pending stays so until it is taken or forgotten.
      for (int runs = 0; runs < 2; ++runs) {
        const std::vector<uint16_t> run = random_run(&random, length);
        count(run);
        numbered_.take_run(lists_.get());
        ASSERT_EQ(credited_by(lists_.get(), lane_of_), credited_naively_by(run)) << length;
      }
      expect_pending();
      count(random_run(&random, length));
      numbered_.take_run(lists_.get());
      credited_by(lists_.get(), lane_of_);
      numbered_.forget_pending();
      for (auto& [number, known] : known_) known.pending = 0;
      expect_pending();
    }
  }
}

TEST(NumberedLeaves, AreGivenOutAsLongAsThereAreAny) {
  NumberedLeaves numbered;
  for (int round = 0; round < 2; ++round) {
    std::set<uint16_t> given;
    // Of some ways a block each, of one all others.
    for (int way = LeafTable::kOneByOne; way < LeafTable::kRows + 5; ++way) {
      given.insert(numbered.add(Leaf(static_cast<uint8_t>(way), 1), 1, 'x'));
    }
    size_t nb_given = given.size();
    for (uint16_t number = 1; number != NumberedLeaves::kNone; ++nb_given) {
      number = numbered.add(Leaf(LeafTable::kRows, 5), 1, 'y');
      EXPECT_TRUE(given.insert(number).second) << number;
    }
    EXPECT_GT(nb_given, NumberedLeaves::kMostNumbers - 1000);
    EXPECT_LT(*given.rbegin(), NumberedLeaves::kMostNumbers);
    numbered.clear();
  }
}

}  // namespace
}  // namespace orva
