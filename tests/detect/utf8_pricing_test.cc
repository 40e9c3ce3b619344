// Costs of UTF-8 text: pieces against the whole, and what a little of a text tells against all.
#include "lib/detect/utf8_pricing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "lib/detect/builtin_models.h"
#include "lib/detect/charset_table.h"
#include "lib/detect/readings.h"
#include "tests/reference/scorer.h"

namespace orva {
namespace {

constexpr double kNever = std::numeric_limits<double>::infinity();

// Small letters, no digits and no runs, so that nothing is to be normalised.
constexpr const char* kTexts[] = {
    "in the morning we walked down to the river to catch some fish, but the water was cold.\n",
    "am morgen gingen wir zum fluß, um fische zu fangen, aber das wasser war so kühl und hoch.\n",
    "утром мы пошли на реку ловить рыбу, но вода была очень холодной, и мы вернулись домой.\n",
    "今朝は川へ魚を釣りに行きましたが、水がとても冷たかったので、すぐに帰りました。\n"};
constexpr const char* kLanguages[] = {"en", "de", "ru", "ja"};

class Utf8PricingTest : public testing::Test {
 protected:
  void SetUp() override {
    tables_ = builtin_models();
    if (tables_ == nullptr) GTEST_SKIP() << "no models are built in";
    scorer_ = std::make_unique<Scorer>(*tables_);
  }

  std::string best(const std::vector<double>& costs) const {
    const auto at = std::min_element(costs.begin(), costs.end());
    return tables_->languages()[static_cast<size_t>(at - costs.begin())];
  }

  std::shared_ptr<const ModelTables> tables_;
  std::unique_ptr<Scorer> scorer_;
};

std::string repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

TEST_F(Utf8PricingTest, PiecesTogetherCostWhatTheWholeDoes) {
  const int utf8 = find_charset_index("UTF-8");
  Utf8Pricing pricing(*tables_);
  pricing.set_margin(kNever);
  for (const char* sentence : kTexts) {
    const std::string text = repeated(sentence, 40);
    const std::vector<double> costs = pricing.price(text, {}, kNoCost);
    scorer_->reset();
    scorer_->feed(text);
    const std::vector<double> whole = scorer_->totals();
    int compared = 0;
    for (int m = 0; m < tables_->nb_models(); ++m) {
      const double cost = costs[static_cast<size_t>(tables_->model(m).language)];
      if (tables_->model(m).charset != utf8 || cost == kNoCost) continue;
      EXPECT_NEAR(cost, whole[static_cast<size_t>(m)], 1e-6 * cost) << sentence << m;
      ++compared;
    }
    EXPECT_GT(compared, 0) << sentence;
  }
}

TEST_F(Utf8PricingTest, ALittleOfTheTextTellsWhatAllOfItDoes) {
  Utf8Pricing quick(*tables_);
  Utf8Pricing patient(*tables_);
  patient.set_margin(kNever);
  for (size_t i = 0; i < std::size(kTexts); ++i) {
    const std::string text = repeated(kTexts[i], 200);
    const std::vector<double> some = quick.price(text, {}, kNoCost);
    const std::vector<double> all = patient.price(text, {}, kNoCost);
    EXPECT_EQ(best(some), kLanguages[i]);
    EXPECT_EQ(best(all), kLanguages[i]);
    const double least = *std::min_element(all.begin(), all.end());
    EXPECT_NEAR(*std::min_element(some.begin(), some.end()), least, 0.2 * least) << kTexts[i];
  }
}

TEST_F(Utf8PricingTest, WhatIsFarBehindStaysBehind) {
  Utf8Pricing pricing(*tables_);
  const std::string text = repeated("漽潲獴 楦敬 湡浥\n", 500);
  const double most = 1000;
  const std::vector<double> costs = pricing.price(text, {}, most);
  EXPECT_GT(*std::min_element(costs.begin(), costs.end()), most);
}

TEST_F(Utf8PricingTest, OnlyLanguagesThatAreAllowedHaveCosts) {
  Utf8Pricing pricing(*tables_);
  std::vector<char> allowed(tables_->languages().size(), 0);
  const auto at = std::find(tables_->languages().begin(), tables_->languages().end(), "fr");
  allowed[static_cast<size_t>(at - tables_->languages().begin())] = 1;
  const std::vector<double> costs = pricing.price(kTexts[0], allowed, kNoCost);
  for (size_t l = 0; l < costs.size(); ++l) EXPECT_EQ(costs[l] != kNoCost, allowed[l] != 0) << l;
}

TEST_F(Utf8PricingTest, AnEmptyTextCostsNothing) {
  Utf8Pricing pricing(*tables_);
  const std::vector<double> costs = pricing.price("", {}, kNoCost);
  EXPECT_EQ(*std::min_element(costs.begin(), costs.end()), 0);
}

}  // namespace
}  // namespace orva
