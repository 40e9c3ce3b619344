// Rows of lanes and what is added up from them, by every kind of vector.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <vector>

#include "lib/eval/coverage.h"
#include "lib/eval/lanes.h"
#include "lib/eval/row_adder.h"
#include "lib/eval/unigram_rows.h"
#include "lib/mgroup/group_format.h"
#include "lib/mgroup/lid_mgroup.h"
#include "tests/mgroup/group_files.h"
#include "tests/reference/plain_group.h"

namespace orva {
namespace {

// A row of all blocks.
using FullRow = std::array<RowUnit, 1 + kNbBlocks>;

// Half of the lanes have a value, half of these the largest.
std::vector<FullRow> random_rows(std::mt19937* random, size_t count) {
  std::vector<FullRow> rows(count);
  for (FullRow& row : rows) {
    row.fill(RowUnit());
    for (size_t lane = 0; lane < kLanes; ++lane) {
      const auto drawn = static_cast<uint32_t>((*random)());
      if (drawn % 4 > 1) continue;
      row[0].there[lane / kBlockLanes] |= 1U << lane % kBlockLanes;
      row[1 + lane / kBlockLanes].costs[lane % kBlockLanes] =
          static_cast<uint8_t>(drawn % 4 == 0 ? 255 : drawn >> 24);
    }
  }
  return rows;
}

bool operator==(const LaneSums& a, const LaneSums& b) { return memcmp(&a, &b, sizeof a) == 0; }

// Adds lane by lane.
void add_naively(const RowShape& shape, const FullRow& row, uint32_t times, LaneSums* sums) {
  for (size_t b = 0; b < shape.nb_blocks; ++b) {
    for (size_t i = 0; i < kBlockLanes; ++i) {
      const size_t lane = shape.blocks[b] * kBlockLanes + i;
      sums->counts[lane] += (row[0].there[b] >> i & 1) * times;
      sums->sums[lane] += row[1 + b].costs[i] * times;
    }
  }
}

TEST(RowAdder, AllAddAlikeForEveryShape) {
  std::mt19937 random(1);
  const std::vector<FullRow> rows = random_rows(&random, 50);
  for (unsigned mask = 0; mask < 256; ++mask) {
    const RowShape shape(mask);
    std::vector<uint32_t> places;
    std::vector<uint32_t> times;
    LaneSums expected;
    for (uint32_t i = 0; i < rows.size(); ++i) {
      places.push_back(i * static_cast<uint32_t>(1 + kNbBlocks));
      times.push_back(1 + static_cast<uint32_t>(random()) % kMostTimesOfRow);
      add_naively(shape, rows[i], times.back(), &expected);
    }
    places.resize(rows.size() + kRowsAhead);
    for (const AddRows add : row_adders()) {
      LaneSums sums;
      add(shape, rows[0].data(), {places.data(), times.data(), rows.size()}, &sums);
      ASSERT_TRUE(sums == expected) << "mask " << mask;
    }
  }
}

TEST(RowAdder, ALaneCountsAsManyOfTheLargestAsIsPromised) {
  FullRow row;
  row.fill(RowUnit());
  std::fill_n(row[0].there, kNbBlocks, ~uint32_t{0});
  for (size_t b = 0; b < kNbBlocks; ++b) std::fill_n(row[1 + b].costs, kBlockLanes, uint8_t{255});
  const RowShape shape(0xFF);
  const uint32_t places[2 + kRowsAhead] = {};
  const uint32_t times[] = {kMostTimesOfRow, kMostTimesOfRow};
  for (const AddRows add : row_adders()) {
    LaneSums sums;
    add(shape, row.data(), {places, times, 2}, &sums);
    EXPECT_EQ(sums.counts[77], 2 * kMostTimesOfRow);
    EXPECT_EQ(sums.sums[77], 2 * 255 * kMostTimesOfRow);
  }
}

// Random sets, of which each comes `most` times at most.
void expect_all_add_alike(std::mt19937* random, size_t nb_sets, uint32_t most) {
  std::vector<ModelSet> sets(nb_sets);
  std::vector<CoverTimes> added;
  uint32_t total = 0;
  std::array<uint16_t, kMostModels> expected = {};
  for (uint32_t i = 0; i < nb_sets; ++i) {
    ModelSet& set = sets[i];
    for (uint64_t& word : set.words) word = uint64_t{(*random)()} << 32 | (*random)();
    added.push_back({i, 1 + static_cast<uint32_t>((*random)()) % most});
    total += added.back().times;
    for (size_t m = 0; m < kMostModels; ++m) {
      const bool is_in = (set.words[m / 64] >> m % 64 & 1) != 0;
      expected[m] = static_cast<uint16_t>(expected[m] + (is_in ? added.back().times : 0));
    }
  }
  added.resize(nb_sets + kSetsAhead);
  for (const AddCovered add : cover_adders()) {
    alignas(64) std::array<uint16_t, kMostModels> covered;
    add(sets.data(), added.data(), nb_sets, total, covered.data());
    EXPECT_EQ(covered, expected) << nb_sets << " sets, " << total << " times";
  }
}

// Models of which some know a byte, and counts that are and are not added in the same words.
TEST(UnigramRows, AllAddAlike) {
  constexpr size_t kNbModels = 203;
  std::mt19937 random(6);
  std::vector<int> fact_of;
  std::vector<UlpEntry> entries;
  for (size_t m = 0; m < kNbModels; ++m) {
    fact_of.push_back(static_cast<int>(m));
    const auto model = static_cast<uint8_t>(m);
    if (random() % 3 != 0) entries.push_back({model, static_cast<uint8_t>(random()), model});
  }
  std::array<const UlpEntry*, 256> first;
  first.fill(entries.data());
  std::array<int, 256> count = {};
  count['x'] = static_cast<int>(entries.size());
  for (size_t adder = 0; adder < UnigramRows::nb_adders(); ++adder) {
    UnigramRows rows;
    ASSERT_TRUE(rows.build(fact_of, first.data(), count.data()));
    rows.use_adder(adder);
    std::array<uint32_t, kNbModels> sums = {};
    std::array<uint32_t, kNbModels> counts = {};
    for (const uint32_t times : {1U, 4094U, 2U, 4095U, 4096U, 100000U, 0U, 300U}) {
      alignas(64) std::array<uint16_t, kMostModels> covered;
      // Without occurrences only what is covered is taken off.
      const uint32_t most = times == 0 ? 300 : std::min(times, kMostCovered);
      for (uint16_t& c : covered) c = static_cast<uint16_t>(random() % (most + 1));
      rows.add('x', times, covered.data());
      for (const UlpEntry& e : entries) {
        sums[e.model] += e.q * (times - covered[e.model]);
        counts[e.model] += times - covered[e.model];
      }
    }
    const LaneSums& found = rows.sums();
    for (size_t m = 0; m < kNbModels; ++m) {
      ASSERT_EQ(found.sums[m], sums[m]) << "adder " << adder << ", model " << m;
      ASSERT_EQ(found.counts[m], counts[m]) << "adder " << adder << ", model " << m;
    }
  }
}

TEST(Coverage, AllAddAlike) {
  std::mt19937 random(3);
  expect_all_add_alike(&random, 0, 1);
  expect_all_add_alike(&random, 255, 1);
  expect_all_add_alike(&random, 50, 5);
  expect_all_add_alike(&random, 256, 1);
  expect_all_add_alike(&random, 300, 200);
}

TEST(Coverage, AModelIsCoveredAsOftenAsIsPromised) {
  ModelSet all;
  std::fill(std::begin(all.words), std::end(all.words), ~uint64_t{0});
  for (const uint32_t most : {uint32_t{255}, uint32_t{256}, kMostCovered}) {
    const CoverTimes added[2 + kSetsAhead] = {{0, 200}, {0, most - 200}};
    for (const AddCovered add : cover_adders()) {
      alignas(64) std::array<uint16_t, kMostModels> covered;
      add(&all, added, 2, most, covered.data());
      for (const uint16_t times : covered) EXPECT_EQ(times, most);
    }
  }
}

TEST(LaneOrder, EveryIndexHasALaneOfItsOwn) {
  std::mt19937 random(4);
  PlainOptions o;
  o.nb_models = 150;
  o.nb_sets = 40;
  o.built = true;
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, file_of(random_group(&random, o))), kGroupOk);
  LaneOrder order = order_lanes(group);
  std::sort(order.begin(), order.end());
  for (size_t lane = 0; lane < kLanes; ++lane) EXPECT_EQ(order[lane], lane);
}

// A file may hold leaves that no trigram leads to, which nothing says anything about.
TEST(LaneOrder, LeavesWithValuesOutsideTheirTableTellNothing) {
  std::mt19937 random(5);
  PlainOptions o;
  o.built = true;
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, file_of(random_group(&random, o))), kGroupOk);
  for (int leaf = 0; leaf < group.lstates_tsize; ++leaf) {
    group.lstates[leaf] = leaf % 2 == 0 ? 0x7F7FFFF0 : 0x7F800000;
  }
  const LaneOrder order = order_lanes(group);
  EXPECT_EQ(order[0], 0);
}

}  // namespace
}  // namespace orva
