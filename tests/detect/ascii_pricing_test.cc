// ASCII that is asked about in part against all of it.
#include "lib/detect/ascii_pricing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "lib/detect/builtin_models.h"

namespace orva {
namespace {

constexpr char kEnglish[] =
    "In the morning we went down to the river to fish, but the water was so cold that nobody "
    "wanted to stay, and before noon all of us were home again drinking tea. ";
constexpr char kDutch[] =
    "In de ochtend gingen we naar de rivier om te vissen, maar het water was zo koud dat niemand "
    "wilde blijven, en voor de middag zaten we allemaal weer thuis thee te drinken. ";

class AsciiPricingTest : public testing::Test {
 protected:
  void SetUp() override {
    tables_ = builtin_models();
    if (tables_ == nullptr) GTEST_SKIP() << "no models are built in";
  }

  static std::string times(const char* text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
  }

  // By language, of a text asked about until one is so many nats ahead.
  std::vector<double> costs(const std::string& text, double margin) const {
    AsciiPricing pricing(*tables_);
    pricing.set_margin(margin);
    pricing.start(text);
    pricing.finish();
    std::vector<double> costs = pricing.base();
    for (size_t l = 0; l < costs.size(); ++l) costs[l] += pricing.extra()[l];
    return costs;
  }

  std::string best(const std::vector<double>& costs) const {
    const auto at = std::min_element(costs.begin(), costs.end()) - costs.begin();
    return tables_->languages()[static_cast<size_t>(at)];
  }

  const double all_ = std::numeric_limits<double>::infinity();
  std::shared_ptr<const ModelTables> tables_;
};

TEST_F(AsciiPricingTest, ALongTextIsAskedAboutInPart) {
  const std::string text = times(kEnglish, 40);
  const std::vector<double> part = costs(text, 80);
  const std::vector<double> whole = costs(text, all_);
  EXPECT_NE(part, whole);
  EXPECT_EQ(best(part), "en");
  EXPECT_EQ(best(whole), "en");
  const double least = *std::min_element(whole.begin(), whole.end());
  EXPECT_NEAR(*std::min_element(part.begin(), part.end()) / least, 1, 0.25);
}

TEST_F(AsciiPricingTest, AShortTextIsAskedAboutAsAWhole) {
  AsciiPricing pricing(*tables_);
  pricing.start(kDutch);
  EXPECT_FALSE(pricing.finish());
  EXPECT_EQ(best(costs(kDutch, 80)), "nl");
}

TEST_F(AsciiPricingTest, OnlyTrigramsOfAsciiCount) {
  std::string text = times(kEnglish, 1).substr(0, 120);
  const std::vector<double> without = costs(text, all_);
  text += "\xE9\xE8 \xE9 \xE0 b\xE9";
  EXPECT_EQ(costs(text, all_), without);
}

TEST_F(AsciiPricingTest, ItCostsACharsetHardlyMoreThanItsBestLanguage) {
  AsciiPricing pricing(*tables_);
  const std::string text = times(kEnglish, 3);
  pricing.start(text);
  pricing.finish();
  for (const double base : pricing.base()) {
    if (base != std::numeric_limits<double>::infinity()) {
      EXPECT_LE(base, pricing.least() + 6);
    }
  }
}

TEST_F(AsciiPricingTest, ItMayBeginAgain) {
  AsciiPricing pricing(*tables_);
  const std::string english = times(kEnglish, 20);
  const std::string dutch = times(kDutch, 20);
  pricing.start(english);
  pricing.finish();
  const std::vector<double> first = pricing.extra();
  pricing.start(dutch);
  pricing.finish();
  EXPECT_NE(pricing.extra(), first);
  pricing.start(english);
  pricing.finish();
  EXPECT_EQ(pricing.extra(), first);
}

}  // namespace
}  // namespace orva
