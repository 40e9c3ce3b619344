#include "lib/eval/numbered_leaves.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <vector>

#include "tests/eval/leaf_fixture.h"

namespace orva {
namespace {

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
      add(numbered_.add(leaves_.leaf(id), byte), id, byte);
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

  void expect_pending() const {
    std::set<uint32_t> pending;
    for (const uint32_t number : numbered_.pending()) {
      EXPECT_TRUE(pending.insert(number).second) << number << " twice";
      const Known& known = known_.at(static_cast<uint16_t>(number));
      EXPECT_EQ(numbered_.nb_pending_of(number), known.pending);
      EXPECT_EQ(numbered_.last_byte(number), known.last_byte);
      EXPECT_EQ(numbered_.leaf(number).way(), leaves_.leaf(known.id).way());
      EXPECT_EQ(numbered_.leaf(number).place(), leaves_.leaf(known.id).place());
    }
    for (const auto& [number, known] : known_) {
      EXPECT_EQ(pending.count(number), known.pending != 0 ? 1U : 0U);
    }
  }

  void forget_pending() {
    numbered_.forget_pending();
    for (auto& [number, known] : known_) known.pending = 0;
  }

  NumberedLeaves numbered_;
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
    for (const size_t length : {0, 1, 16, 700, 1500, 1501, 10000}) {
      // What is pending stays so until it is forgotten.
      for (int runs = 0; runs < 2; ++runs) {
        const std::vector<uint16_t> run = random_run(&random, length);
        count(run);
        numbered_.take_run(lists_.get());
        ASSERT_EQ(credited_by(lists_.get(), lane_of_), credited_naively_by(run)) << length;
        expect_pending();
      }
      forget_pending();
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
      given.insert(numbered.add(Leaf(static_cast<uint8_t>(way), 1), 'x'));
    }
    size_t nb_given = given.size();
    for (uint16_t number = 1; number != NumberedLeaves::kNone; ++nb_given) {
      number = numbered.add(Leaf(LeafTable::kRows, 5), 'y');
      EXPECT_TRUE(given.insert(number).second) << number;
    }
    EXPECT_GT(nb_given, NumberedLeaves::kMostNumbers - 1000);
    EXPECT_LT(*given.rbegin(), NumberedLeaves::kMostNumbers);
    numbered.clear();
  }
}

}  // namespace
}  // namespace orva
