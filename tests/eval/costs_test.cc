#include "lib/eval/costs.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>
#include <vector>

namespace orva {
namespace {

constexpr size_t kNbModels = 203;

struct Numbers {
  std::vector<float> before, grads, lpmins;
  std::vector<uint32_t> sums;
  std::vector<int> counts, unexplained;

  CostTerms terms(bool with_unexplained) const {
    return {before.data(), sums.data(),   counts.data(),
            grads.data(),  lpmins.data(), with_unexplained ? unexplained.data() : nullptr};
  }
};

// As those of texts, or of any bits.
Numbers random_numbers(std::mt19937* random, bool any_bits) {
  const auto draw = [&](uint32_t below) { return static_cast<uint32_t>((*random)()) % below; };
  const auto number = [&](float scale) {
    const auto bits = static_cast<uint32_t>((*random)());
    float any = 0;
    memcpy(&any, &bits, sizeof any);
    return any_bits && bits % 3 == 0 ? any : static_cast<float>(bits >> 8) * scale;
  };
  Numbers n;
  for (size_t m = 0; m < kNbModels; ++m) {
    n.before.push_back(number(0x1p-10F));
    n.grads.push_back(number(0x1p-30F));
    n.lpmins.push_back(number(0x1p-24F));
    n.sums.push_back(any_bits ? static_cast<uint32_t>((*random)()) : draw(100000));
    n.counts.push_back(draw(3) == 0 ? 0 : static_cast<int>(any_bits ? (*random)() : draw(10000)));
    n.unexplained.push_back(static_cast<int>(any_bits ? (*random)() : draw(10000)));
  }
  return n;
}

// The sign of what is no number is no matter.
void expect_same(const std::vector<float>& found, const std::vector<float>& expected) {
  for (size_t m = 0; m < kNbModels; ++m) {
    if (expected[m] != expected[m]) {
      ASSERT_TRUE(found[m] != found[m]) << "model " << m;
    } else {
      ASSERT_EQ(memcmp(&found[m], &expected[m], sizeof(float)), 0)
          << "model " << m << ": " << found[m] << " " << expected[m];
    }
  }
}

TEST(Costs, AllAddAlike) {
  std::mt19937 random(1);
  for (int round = 0; round < 400; ++round) {
    const Numbers n = random_numbers(&random, round % 2 == 1);
    const CostTerms terms = n.terms(round % 4 < 2);
    std::vector<float> expected(kNbModels);
    cost_adders().front().add(terms, kNbModels, expected.data());
    for (const CostAdders& adders : cost_adders()) {
      std::vector<float> costs(kNbModels);
      adders.add(terms, kNbModels, costs.data());
      expect_same(costs, expected);
    }
  }
}

TEST(Costs, AllDivideAlike) {
  std::mt19937 random(2);
  for (int round = 0; round < 400; ++round) {
    const Numbers n = random_numbers(&random, round % 2 == 1);
    for (const int total : {0, 1, 3, -7, 1000, static_cast<int>(random())}) {
      std::vector<float> expected = n.before;
      cost_adders().front().divide(expected.data(), kNbModels, total);
      for (const CostAdders& adders : cost_adders()) {
        std::vector<float> costs = n.before;
        adders.divide(costs.data(), kNbModels, total);
        expect_same(costs, expected);
      }
    }
  }
}

// Half-way between two floats a bit that double precision loses decides.
TEST(Costs, AreRoundedOnceFromExtendedPrecision) {
  const size_t n = 8;
  const std::vector<float> before(n, 1);
  const std::vector<float> grads(n, 0x1p-60F);
  const std::vector<float> lpmins(n, 0x1p-24F);
  const std::vector<uint32_t> sums(n, 1);
  const std::vector<int> counts(n, 1);
  const CostTerms terms = {before.data(), sums.data(),   counts.data(),
                           grads.data(),  lpmins.data(), nullptr};
  for (const CostAdders& adders : cost_adders()) {
    std::vector<float> costs(n);
    adders.add(terms, n, costs.data());
    for (const float cost : costs) EXPECT_EQ(cost, 1 + 0x1p-23F);
  }
}

// Numbers with few bits often lie half-way between two floats, and no step rounds them.
TEST(Costs, OfFewBitsAreAddedAlike) {
  std::mt19937 random(3);
  const auto draw = [&](uint32_t below) { return static_cast<uint32_t>(random()) % below; };
  for (int round = 0; round < 400; ++round) {
    Numbers n = random_numbers(&random, false);
    for (size_t m = 0; m < kNbModels; ++m) {
      n.before[m] = static_cast<float>(draw(1U << 24));
      n.grads[m] = static_cast<float>(1 + draw(3)) * 0x1p-2F;
      n.lpmins[m] = static_cast<float>(draw(8)) * 0x1p-2F;
    }
    // Of some the least bit of all decides.
    n.grads[round % kNbModels] += 0x1p-24F;
    const CostTerms terms = n.terms(round % 2 == 0);
    std::vector<float> expected(kNbModels);
    cost_adders().front().add(terms, kNbModels, expected.data());
    for (const CostAdders& adders : cost_adders()) {
      std::vector<float> costs = n.before;
      adders.add(
          {costs.data(), terms.sums, terms.counts, terms.grads, terms.lpmins, terms.unexplained},
          kNbModels, costs.data());
      expect_same(costs, expected);
    }
  }
}

TEST(Costs, OfNoValuesAreWhatTheyWere) {
  const size_t n = 11;
  const std::vector<float> before(n, 0x1.234567p3F);
  const std::vector<float> infinite(n, std::numeric_limits<float>::infinity());
  const std::vector<uint32_t> sums(n, 5);
  const std::vector<int> counts(n, 0);
  const CostTerms terms = {before.data(),   sums.data(),     counts.data(),
                           infinite.data(), infinite.data(), nullptr};
  for (const CostAdders& adders : cost_adders()) {
    std::vector<float> costs(n);
    adders.add(terms, n, costs.data());
    EXPECT_EQ(costs, before);
  }
}

}  // namespace
}  // namespace orva
