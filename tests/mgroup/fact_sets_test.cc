#include <gtest/gtest.h>

#include <vector>

#include "lib/mgroup/lid_mg_fact.h"

namespace {

std::vector<int> members(const CLidMGFact& fact, int set) {
  if (fact.set_first[set] == nullptr) return {};
  return {fact.set_first[set], fact.set_first[set] + fact.set_size[set]};
}

}  // namespace

TEST(FactSets, ModelsWithoutSetsMakeNone) {
  const int sets[] = {-1, -1, -1};
  const CLidMGFact fact(sets, 3);
  EXPECT_EQ(fact.nb_models, 3);
  EXPECT_EQ(fact.nb_facts, 0);
  EXPECT_EQ(fact.fact_of_model[2], -1);
  EXPECT_EQ(fact.set_first[0], nullptr);
}

TEST(FactSets, ASetListsItsModelsInAscendingOrder) {
  const int sets[] = {1, 0, 1, -1, 0};
  const CLidMGFact fact(sets, 5);
  EXPECT_EQ(fact.nb_facts, 2);
  EXPECT_EQ(members(fact, 0), (std::vector<int>{1, 4}));
  EXPECT_EQ(members(fact, 1), (std::vector<int>{0, 2}));
  EXPECT_EQ(fact.fact_of_model[4], 0);
}

TEST(FactSets, SetsLieOneBehindTheOther) {
  const int sets[] = {1, 0, 1, -1, 0};
  const CLidMGFact fact(sets, 5);
  EXPECT_EQ(fact.set_first[0], fact.set_models);
  EXPECT_EQ(fact.set_first[1], fact.set_models + 2);
}

TEST(FactSets, AGapInTheNumbersIsASetWithoutModels) {
  const int sets[] = {2, 0};
  const CLidMGFact fact(sets, 2);
  EXPECT_EQ(fact.nb_facts, 3);
  EXPECT_EQ(fact.set_size[1], 0);
  EXPECT_EQ(fact.set_first[1], nullptr);
  EXPECT_EQ(members(fact, 2), (std::vector<int>{0}));
}

TEST(FactSets, BuildingAgainForgetsTheFormerSets) {
  const int sets[] = {2, 0};
  CLidMGFact fact(sets, 2);
  const int none[] = {-1};
  fact.init(none, 1);
  EXPECT_EQ(fact.nb_models, 1);
  EXPECT_EQ(fact.nb_facts, 0);
  EXPECT_EQ(fact.set_size[2], 0);
  EXPECT_EQ(fact.set_first[2], nullptr);
}

TEST(FactSets, AllModelsMayHaveSetsOfTheirOwn) {
  std::vector<int> sets(256);
  for (int m = 0; m < 256; ++m) sets[static_cast<size_t>(m)] = 255 - m;
  const CLidMGFact fact(sets.data(), 256);
  EXPECT_EQ(fact.nb_facts, 256);
  EXPECT_EQ(members(fact, 0), (std::vector<int>{255}));
  EXPECT_EQ(members(fact, 255), (std::vector<int>{0}));
}
