// Leaves found by trigrams, and what each credits and covers, whatever the way.
#include <gtest/gtest.h>

#include <array>
#include <random>
#include <set>
#include <vector>

#include "lib/eval/credit_lists.h"
#include "lib/eval/lanes.h"
#include "lib/eval/leaf_table.h"
#include "lib/eval/trigram_index.h"
#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"
#include "tests/mgroup/group_files.h"
#include "tests/reference/plain_group.h"

namespace orva {
namespace {

// The leaf that the automaton reaches by three bytes.
uint32_t walk(const CLidMGroup& group, unsigned char a, unsigned char b, unsigned char c) {
  const int first = group.child(0, a);
  const int second = first == 0 ? 0 : group.child(first, b);
  const int third = second == 0 ? 0 : group.child(second, c);
  if (third < group.nb_istates) return TrigramIndex::kNone;
  return static_cast<uint32_t>(third - group.nb_istates) + 1;
}

TEST(TrigramIndex, FindsTheLeavesOfAllTrigrams) {
  std::mt19937 random(1);
  PlainOptions o;
  o.alphabet = std::string("\0az{\x7f\x80\xbf\xc0\xff", 9);
  o.density = 0.5;
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, file_of(random_group(&random, o))), kGroupOk);
  TrigramIndex index;
  ASSERT_TRUE(index.build(group));
  std::vector<CountedTrigram> trigrams;
  std::vector<uint32_t> expected;
  // Some letters that no trigram has, too.
  const std::string letters = o.alphabet + "b\x01\xfe";
  for (const unsigned char a : letters) {
    for (const unsigned char b : letters) {
      for (const unsigned char c : letters) {
        trigrams.push_back({1U | unsigned{a} << 8 | unsigned{b} << 16 | unsigned{c} << 24});
        expected.push_back(walk(group, a, b, c));
      }
    }
  }
  for (int round = 0; round < 2; ++round) {
    std::vector<uint32_t> found(trigrams.size());
    for (size_t i = 0; i < trigrams.size(); i += TrigramIndex::kMostFound) {
      index.find(trigrams.data() + i, std::min(TrigramIndex::kMostFound, trigrams.size() - i),
                 found.data() + i);
    }
    EXPECT_EQ(found, expected);
    index.use_plain_bits();
  }
}

using Sums = std::array<std::pair<uint32_t, uint32_t>, kLanes>;

Sums credited_naively(std::span<const uint16_t> values, uint32_t times) {
  Sums sums = {};
  for (const uint16_t value : values) {
    sums[static_cast<size_t>(value_index(value))].first += times;
    sums[static_cast<size_t>(value_index(value))].second += times * value_cost(value);
  }
  return sums;
}

Sums credited_by(CreditLists* lists, const LaneOrder& lane_of) {
  lists->drain();
  Sums sums = {};
  for (size_t i = 0; i < kLanes; ++i) {
    const uint64_t by_index = lists->by_index()[i];
    sums[i] = {lists->by_lane().counts[lane_of[i]] + static_cast<uint32_t>(by_index >> 32),
               lists->by_lane().sums[lane_of[i]] + static_cast<uint32_t>(by_index)};
  }
  lists->clear();
  return sums;
}

class Leaves : public ::testing::Test {
 protected:
  void load(const PlainOptions& options, size_t room) {
    std::mt19937 random(2);
    ASSERT_EQ(load_bytes(&group_, file_of(random_group(&random, options))), kGroupOk);
    for (int m = 0; m < group_.nb_models; ++m) {
      const int fact = group_.models_part.models[m].fact_no;
      fact_of_.push_back(fact == -1 ? m : fact);
    }
    lane_of_ = order_lanes(group_);
    leaves_.build(group_, fact_of_, lane_of_, room);
    lists_ = std::make_unique<CreditLists>(&leaves_, row_adders().back());
  }

  // How often a model is covered by the values of a leaf.
  uint32_t covered_naively(uint32_t id, size_t model) const {
    uint32_t times = 0;
    for (const uint16_t value : leaves_.values(id)) {
      const auto index = static_cast<size_t>(value_index(value));
      times += index == model || index == static_cast<size_t>(fact_of_[model]) ? 1 : 0;
    }
    return times;
  }

  // The sets that a leaf covers.
  std::vector<uint32_t> sets_of(const Leaf& leaf) const {
    if (leaves_.nb_sets(leaf) == 1) return {leaves_.cover(leaf)};
    std::vector<uint32_t> sets;
    for (uint32_t i = 0; i < leaves_.nb_sets(leaf); ++i) {
      sets.push_back(LeafTable::set_of_value(leaves_.all_values()[leaves_.cover(leaf) + i]));
    }
    return sets;
  }

  uint32_t covered(const Leaf& leaf, size_t model) const {
    uint32_t times = 0;
    for (const uint32_t set : sets_of(leaf)) {
      times += (leaves_.all_sets()[set].words[model / 64] >> model % 64 & 1) != 0 ? 1 : 0;
    }
    return times;
  }

  // Decides for all leaves, and returns the ways that are taken.
  std::set<int> expect_all_right() {
    std::set<int> ways;
    for (uint32_t id = 1; id <= static_cast<uint32_t>(group_.lstates_tsize); ++id) {
      const uint32_t ids[] = {id, id};
      leaves_.decide(ids, 2);
      const Leaf& leaf = leaves_.leaf(id);
      ways.insert(std::min(leaf.way(), LeafTable::kRows));
      if (leaf.way() == LeafTable::kOneByOne) continue;
      for (size_t m = 0; m < fact_of_.size(); ++m) {
        EXPECT_EQ(covered(leaf, m), covered_naively(id, m)) << "leaf " << id << " model " << m;
      }
      lists_->add(leaf.way(), leaf.place(), 29);
      EXPECT_EQ(credited_by(lists_.get(), lane_of_), credited_naively(leaves_.values(id), 29))
          << "leaf " << id;
    }
    return ways;
  }

  CLidMGroup group_;
  std::vector<int> fact_of_;
  LaneOrder lane_of_ = {};
  LeafTable leaves_;
  std::unique_ptr<CreditLists> lists_;
};

TEST_F(Leaves, OfFewValuesAreCreditedAsTheirValuesSay) {
  PlainOptions o;
  o.nb_models = 6;
  o.density = 0.8;
  o.built = true;
  o.odd_leaves = true;
  load(o, LeafTable::kRoom);
  const std::set<int> ways = expect_all_right();
  for (int n = 1; n <= LeafTable::kMostFew; ++n)
    EXPECT_EQ(ways.count(LeafTable::kFew + n), 1U) << n;
  EXPECT_EQ(ways.count(LeafTable::kOneByOne), 1U);
}

TEST_F(Leaves, OfManyValuesAreCreditedAsTheirValuesSay) {
  PlainOptions o;
  o.nb_models = 180;
  o.nb_sets = 40;
  o.density = 0.8;
  o.built = true;
  load(o, LeafTable::kRoom);
  EXPECT_EQ(expect_all_right().count(LeafTable::kRows), 1U);
}

TEST_F(Leaves, WithoutRoomForARowAreTakenValueByValue) {
  PlainOptions o;
  o.nb_models = 180;
  o.density = 0.8;
  o.built = true;
  load(o, 200);
  const std::set<int> ways = expect_all_right();
  EXPECT_EQ(ways.count(LeafTable::kRows), 1U);
  EXPECT_EQ(ways.count(LeafTable::kOneByOne), 1U);
}

// One of each of many leaves, as often as fills the lists several times.
TEST_F(Leaves, OfAListAreAllCreditedHoweverMany) {
  PlainOptions o;
  o.nb_models = 40;
  o.density = 0.8;
  o.built = true;
  load(o, LeafTable::kRoom);
  Sums expected = {};
  for (uint32_t k = 0; k < 5000; ++k) {
    const uint32_t id = 1 + k * 7 % static_cast<uint32_t>(group_.lstates_tsize);
    leaves_.decide(&id, 1);
    const Leaf& leaf = leaves_.leaf(id);
    if (leaf.way() == LeafTable::kOneByOne) {
      lists_->add_now(leaves_.values(id), 1 + k % 31);
    } else {
      lists_->add(leaf.way(), leaf.place(), 1 + k % 31);
    }
    const Sums added = credited_naively(leaves_.values(id), 1 + k % 31);
    for (size_t i = 0; i < kLanes; ++i) {
      expected[i].first += added[i].first;
      expected[i].second += added[i].second;
    }
  }
  EXPECT_EQ(credited_by(lists_.get(), lane_of_), expected);
}

}  // namespace
}  // namespace orva
