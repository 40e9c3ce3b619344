#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "lib/eval/lid_mgroup_eval.h"
#include "tests/mgroup/group_files.h"
#include "tests/reference/tiny_group.h"

namespace {

const char* const kNames[] = {"frA", "enA", "enB"};

float max_ratio(const std::vector<float>& scores, int k) {
  const CLidMGLang lang(kNames, static_cast<int>(scores.size()), 2);
  return calcul_ratio_lng_max(&lang, scores.data(), k);
}

float avg_ratio(const std::vector<float>& scores, int k) {
  const CLidMGLang lang(kNames, static_cast<int>(scores.size()), 2);
  return calcul_ratio_lng_avg(&lang, scores.data(), k);
}

// calcul_ratio of an evaluator over the tiny group, whose models are those of kNames.
float ratio(const std::vector<float>& scores, int* best) {
  CLidMGroup group;
  EXPECT_EQ(orva::load_bytes(&group, orva::TinyGroup().bytes()), kGroupOk);
  const CLidMGroupEval eval(&group);
  return eval.calcul_ratio(scores.data(), best);
}

float model_ratio(const std::vector<float>& scores, int k) {
  CLidMGroup group;
  EXPECT_EQ(orva::load_bytes(&group, orva::TinyGroup().bytes()), kGroupOk);
  return calcul_ratio_model(&group, scores.data(), k);
}

const float kOneAgainstThree = static_cast<float>(1 / (1 + std::exp(-2.0)));

}  // namespace

TEST(LanguageRatio, EqualScoresShareEvenly) { EXPECT_EQ(max_ratio({1, 1}, 0), 0.5F); }

TEST(LanguageRatio, ADistanceOfTwoTakesMost) {
  EXPECT_FLOAT_EQ(max_ratio({1, 3}, 0), kOneAgainstThree);
  EXPECT_NEAR(max_ratio({1, 3}, 0), 0.8808, 0.00005);
}

TEST(LanguageRatio, AnotherModelOfTheLanguageDoesNotLowerIt) {
  EXPECT_EQ(max_ratio({3, 1, 1}, 1), max_ratio({3, 1, 9}, 1));
  EXPECT_FLOAT_EQ(max_ratio({3, 1, 1}, 1), kOneAgainstThree);
}

TEST(LanguageRatio, ALanguageIsScoredByItsBestModel) {
  EXPECT_FLOAT_EQ(max_ratio({3, 9, 1}, 1), kOneAgainstThree);
}

TEST(LanguageRatio, OneModelTakesAll) { EXPECT_EQ(max_ratio({5}, 0), 1.0F); }

TEST(LanguageRatio, MembersOfAMillionAndMoreCountAsAMillion) {
  EXPECT_EQ(max_ratio({2000000, 3000000}, 0), 0.5F);
}

TEST(LanguageRatio, AModelThatDoesNotExistHasNone) {
  EXPECT_EQ(max_ratio({1, 3}, -1), -1.0F);
  EXPECT_EQ(max_ratio({1, 3}, 2), -1.0F);
  EXPECT_EQ(avg_ratio({1, 3}, -1), -1.0F);
}

TEST(LanguageRatio, AGroupingThatIsNotReadyGivesNothingFinite) {
  const std::vector<const char*> names(257, "frX");
  const CLidMGLang lang(names.data(), 257, 2);
  const std::vector<float> scores(257, 1.0F);
  EXPECT_FALSE(std::isfinite(calcul_ratio_lng_max(&lang, scores.data(), 0)));
  EXPECT_FALSE(std::isfinite(calcul_ratio_lng_avg(&lang, scores.data(), 0)));
}

TEST(LanguageRatio, TheMeanOfALanguageMayCountInstead) {
  // French 1, English (2 + 4) / 2.
  EXPECT_FLOAT_EQ(avg_ratio({1, 2, 4}, 0), kOneAgainstThree);
  EXPECT_FLOAT_EQ(avg_ratio({1, 2, 4}, 1), 1 - kOneAgainstThree);
}

TEST(ModelRatio, EveryModelCompetes) {
  EXPECT_FLOAT_EQ(model_ratio({1, 1, 1}, 2), 1.0F / 3);
  EXPECT_FLOAT_EQ(model_ratio({1, 3, 100}, 0), kOneAgainstThree);
}

TEST(ModelRatio, AModelThatDoesNotExistHasNone) {
  EXPECT_EQ(model_ratio({1, 1, 1}, -1), -1.0F);
  EXPECT_EQ(model_ratio({1, 1, 1}, 3), -1.0F);
}

TEST(Winner, TheLowestScoreWins) {
  int best = 9;
  EXPECT_FLOAT_EQ(ratio({3, 8, 1}, &best), kOneAgainstThree);
  EXPECT_EQ(best, 2);
}

TEST(Winner, OfEqualScoresTheFirstWins) {
  int best = 9;
  ratio({4, 2, 2}, &best);
  EXPECT_EQ(best, 1);
}

TEST(Winner, ScoresOfTenMillionAndMoreNeverWin) {
  int best = 9;
  EXPECT_EQ(ratio({10000000, 20000000, 10000000}, &best), -1.0F);
  EXPECT_EQ(best, -1);
  ratio({9999999, 20000000, 10000000}, &best);
  EXPECT_EQ(best, 0);
}

TEST(Winner, WhatIsNoNumberNeverWins) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  int best = 9;
  EXPECT_EQ(ratio({nan, nan, nan}, &best), -1.0F);
  EXPECT_EQ(best, -1);
}

TEST(Winner, WithoutScoresTheBestIsLeftAlone) {
  CLidMGroup group;
  ASSERT_EQ(orva::load_bytes(&group, orva::TinyGroup().bytes()), kGroupOk);
  const CLidMGroupEval eval(&group);
  int best = 9;
  EXPECT_EQ(eval.calcul_ratio(nullptr, &best), -1.0F);
  EXPECT_EQ(best, 9);
}

// Scores are compared bit for bit, so the quick way must round as the exact one does.
TEST(Exponential, SumsAreThoseOfExtendedPrecision) {
  std::mt19937 random(1);
  const auto unit = [&random] { return static_cast<float>(random() % 16777216) / 16777216; };
  for (int round = 0; round < 300000; ++round) {
    const float spread = round % 3 == 0 ? 100.0F : 12.0F;
    const float sum = round % 5 == 0 ? 0 : 3 * unit();
    const float reference = spread * unit();
    const float value = round % 7 == 0 ? reference : spread * unit();
    const long double exact = sum + expl(static_cast<long double>(reference) - value);
    ASSERT_EQ(orva::add_exponential(sum, reference, value), static_cast<float>(exact))
        << sum << " " << reference << " " << value;
  }
  // Half way between two floats: the small term decides.
  ASSERT_EQ(orva::add_exponential(0x1.000001p0F, 0, 17.5F),
            static_cast<float>(0x1.000001p0F + expl(-17.5L)));
  EXPECT_TRUE(std::isnan(orva::add_exponential(0, std::nanf(""), 1)));
  EXPECT_TRUE(std::isinf(orva::add_exponential(0, 1e9F, 1)));
}
