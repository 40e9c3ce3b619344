// Numbers of trigrams against a search in the list that they are made of.
#include "lib/detect/known_trigrams.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace orva {
namespace {

std::vector<uint32_t> random_trigrams(size_t count, uint32_t mask) {
  std::mt19937 random(7);
  std::vector<uint32_t> all;
  while (all.size() < count) all.push_back(static_cast<uint32_t>(random()) & mask);
  std::sort(all.begin(), all.end());
  all.erase(std::unique(all.begin(), all.end()), all.end());
  return all;
}

int number_in(const std::vector<uint32_t>& trigrams, uint32_t trigram) {
  const auto at = std::lower_bound(trigrams.begin(), trigrams.end(), trigram);
  const bool there = at != trigrams.end() && *at == trigram;
  return there ? static_cast<int>(at - trigrams.begin()) : KnownTrigrams::kNone;
}

int find(const KnownTrigrams& index, uint32_t trigram) {
  return index.find(static_cast<unsigned char>(trigram >> 16),
                    static_cast<unsigned char>(trigram >> 8), static_cast<unsigned char>(trigram));
}

// All trigrams of `mask`, and neighbours that are not there.
void expect_twin(const std::vector<uint32_t>& trigrams, uint32_t mask) {
  const KnownTrigrams index(trigrams);
  for (const uint32_t trigram : trigrams) {
    for (const uint32_t other : {0U, 1U, 0x80U, 0x100U, 0x10000U}) {
      const uint32_t asked = (trigram ^ other) & 0xFFFFFFU;
      ASSERT_EQ(find(index, asked), number_in(trigrams, asked)) << asked << " of " << mask;
    }
  }
}

TEST(KnownTrigrams, KnowsNothingWhenItIsEmpty) {
  const KnownTrigrams index;
  EXPECT_EQ(index.find(0, 0, 0), KnownTrigrams::kNone);
  EXPECT_EQ(index.find('a', 'b', 'c'), KnownTrigrams::kNone);
}

TEST(KnownTrigrams, NumbersFollowTheOrderOfTheList) {
  const KnownTrigrams index(
      {trigram_of('a', 'b', 'c'), trigram_of('a', 'b', 'd'), trigram_of('b', 'a', 0xFF)});
  EXPECT_EQ(index.find('a', 'b', 'c'), 0);
  EXPECT_EQ(index.find('a', 'b', 'd'), 1);
  EXPECT_EQ(index.find('b', 'a', 0xFF), 2);
  EXPECT_EQ(index.find('b', 'a', 'c'), KnownTrigrams::kNone);
}

TEST(KnownTrigrams, FindsWhatASearchInTheListDoes) {
  for (const uint32_t mask : {0x1F1F1FU, 0x0F0FFFU, 0xF3F3F3U, 0xFF7FFFU}) {
    expect_twin(random_trigrams(20000, mask), mask);
  }
}

TEST(KnownTrigrams, EveryByteMayOccurZeroToo) {
  std::vector<uint32_t> trigrams;
  for (uint32_t b = 0; b < 256; ++b) trigrams.push_back(b << 16 | b << 8 | b);
  expect_twin(trigrams, 0xFFFFFF);
}

}  // namespace
}  // namespace orva
