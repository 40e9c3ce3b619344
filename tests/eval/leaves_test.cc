// Leaves found by trigrams, and what each credits and covers, whatever the way.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <vector>

#include "lib/eval/trigram_index.h"
#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"
#include "tests/eval/leaf_fixture.h"
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
  std::vector<Trigram> trigrams;
  std::vector<uint32_t> expected;
  // Some letters that no trigram has, too.
  const std::string letters = o.alphabet + "b\x01\xfe";
  for (const unsigned char a : letters) {
    for (const unsigned char b : letters) {
      for (const unsigned char c : letters) {
        trigrams.push_back({unsigned{a} | unsigned{b} << 8 | unsigned{c} << 16});
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

TEST_F(Leaves, OfFewValuesWithoutRoomForTheirSetAreTakenValueByValue) {
  PlainOptions o;
  o.nb_models = 6;
  o.density = 0.8;
  o.built = true;
  load(o, 3);
  const std::set<int> ways = expect_all_right();
  EXPECT_EQ(ways.count(LeafTable::kOneByOne), 1U);
  EXPECT_EQ(ways.count(LeafTable::kFew + 2), 1U);
}

// 32768 leaves of three values, no two of which have the same indices.
TEST_F(Leaves, OfMoreCombinationsOfValuesThanAreKeptAreTakenValueByValue) {
  std::mt19937 random(4);
  PlainOptions o;
  o.nb_models = 60;
  o.nb_sets = 0;
  o.alphabet = "abcdefghijklmnopqrstuvwxyz012345";
  o.density = 1;
  o.built = true;
  PlainGroup plain = random_group(&random, o);
  PlainLeaf* leaf = plain.leaves.data();
  PlainLeaf* const end = leaf + plain.leaves.size();
  for (uint8_t a = 0; a < 60; ++a) {
    for (uint8_t b = 0; b < a; ++b) {
      for (uint8_t c = 0; c < b && leaf != end; ++c) {
        (leaf++)->values = {{a, 1}, {b, static_cast<uint8_t>(random())}, {c, 255}};
      }
    }
  }
  ASSERT_EQ(leaf, end);
  load(plain);
  build(order_lanes(group_), LeafTable::kRoom);
  const std::set<int> ways = expect_right(101);
  EXPECT_EQ(ways, (std::set<int>{LeafTable::kFew + 3, LeafTable::kOneByOne}));
}

// Indices far apart give more shapes than there may be, and some rows one that is too wide.
TEST_F(Leaves, OfMoreShapesThanThereMayBeAreCreditedAsTheirValuesSay) {
  std::mt19937 random(5);
  PlainOptions o;
  o.nb_models = 70;
  o.nb_sets = 0;
  o.alphabet = "abcdefgh";
  o.density = 1;
  o.built = true;
  PlainGroup plain = random_group(&random, o);
  for (PlainLeaf& leaf : plain.leaves) {
    leaf.values.clear();
    for (uint8_t model = 0; model < 70; ++model) {
      if (random() % 12 == 0) leaf.values.push_back({model, static_cast<uint8_t>(random())});
    }
  }
  load(plain);
  LaneOrder lane_of;
  for (size_t i = 0; i < kLanes; ++i) lane_of[i] = static_cast<uint8_t>(i * 37);
  build(lane_of, LeafTable::kRoom);
  EXPECT_EQ(expect_all_right().count(LeafTable::kRows), 1U);
  EXPECT_EQ(leaves_.nb_ways(), LeafTable::kNbWays);
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
    const uint32_t times = 1 + k % 70;
    if (leaf.way() == LeafTable::kOneByOne || times > CreditLists::kMostTimes) {
      lists_->add_now(leaf, times);
    } else {
      add_to_list(leaf, times);
    }
    const Sums added = credited_naively(leaves_.values(id), times);
    for (size_t i = 0; i < kLanes; ++i) {
      expected[i].first += added[i].first;
      expected[i].second += added[i].second;
    }
  }
  EXPECT_EQ(credited_by(lists_.get(), lane_of_), expected);
}

}  // namespace
}  // namespace orva
