// Leaves of random groups, and what they credit by their values alone.
#ifndef ORVA_TESTS_EVAL_LEAF_FIXTURE_H_
#define ORVA_TESTS_EVAL_LEAF_FIXTURE_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <random>
#include <set>
#include <span>
#include <utility>
#include <vector>

#include "lib/eval/credit_lists.h"
#include "lib/eval/lanes.h"
#include "lib/eval/leaf_table.h"
#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"
#include "tests/mgroup/group_files.h"
#include "tests/reference/plain_group.h"

namespace orva {

// By index how many values are credited, and the sum of their costs.
using Sums = std::array<std::pair<uint32_t, uint32_t>, kLanes>;

inline Sums credited_naively(std::span<const uint16_t> values, uint32_t times) {
  Sums sums = {};
  for (const uint16_t value : values) {
    sums[static_cast<size_t>(value_index(value))].first += times;
    sums[static_cast<size_t>(value_index(value))].second += times * value_cost(value);
  }
  return sums;
}

inline Sums credited_by(CreditLists* lists, const LaneOrder& lane_of) {
  lists->drain();
  Sums sums = {};
  for (size_t i = 0; i < kLanes; ++i) {
    const uint64_t by_index = lists->by_index(i);
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
    load(random_group(&random, options));
    build(order_lanes(group_), room);
  }

  void load(const PlainGroup& plain) {
    ASSERT_EQ(load_bytes(&group_, file_of(plain)), kGroupOk);
    for (int m = 0; m < group_.nb_models; ++m) {
      const int fact = group_.models_part.models[m].fact_no;
      fact_of_.push_back(fact == -1 ? m : fact);
    }
  }

  void build(const LaneOrder& lane_of, size_t room) {
    lane_of_ = lane_of;
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

  bool covers(uint32_t id, size_t model) const {
    const ModelSet& models = leaves_.all_sets()[leaves_.set_of(leaves_.leaf(id))];
    return (models.words[model / 64] >> model % 64 & 1) != 0;
  }

  void add_to_list(const Leaf& leaf, uint32_t times) {
    const CreditLists::End end = lists_->end(leaf.way());
    end.places[0] = leaf.place();
    end.times[0] = times;
    lists_->added(leaf.way(), 1);
  }

  // Decides for all leaves, and returns the ways that are taken.
  std::set<int> expect_all_right() { return expect_right(1); }

  // Decides for all leaves, looks at every `step`-th, and returns the ways that all take.
  std::set<int> expect_right(uint32_t step) {
    std::set<int> ways;
    for (uint32_t id = 1; id <= static_cast<uint32_t>(group_.lstates_tsize); ++id) {
      const uint32_t ids[] = {id, id};
      leaves_.decide(ids, 2);
      const Leaf& leaf = leaves_.leaf(id);
      ways.insert(std::min(leaf.way(), LeafTable::kRows));
      if (id % step != 0) continue;
      lists_->add_now(leaf, 10000);
      EXPECT_EQ(credited_by(lists_.get(), lane_of_), credited_naively(leaves_.values(id), 10000))
          << "leaf " << id;
      if (leaf.way() == LeafTable::kOneByOne) {
        for (size_t m = 0; m < fact_of_.size(); ++m) EXPECT_FALSE(covers(id, m));
        continue;
      }
      for (size_t m = 0; m < fact_of_.size(); ++m) {
        EXPECT_EQ(covers(id, m) ? 1U : 0U, covered_naively(id, m))
            << "leaf " << id << " model " << m;
      }
      add_to_list(leaf, 29);
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

}  // namespace orva

#endif  // ORVA_TESTS_EVAL_LEAF_FIXTURE_H_
