#include "lib/eval/run_counter.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

namespace orva {
namespace {

using Counts = std::map<std::string, uint32_t>;

std::string name_of(CountedTrigram t) {
  const char bytes[] = {static_cast<char>(t.pair()), static_cast<char>(t.pair() >> 8),
                        static_cast<char>(t.last_byte())};
  return std::string(bytes, sizeof bytes);
}

// How often each trigram comes that ends after the first two bytes.
Counts count_naively(const std::string& text) {
  Counts counts;
  for (size_t i = 2; i < text.size(); ++i) ++counts[text.substr(i - 2, 3)];
  return counts;
}

// REQUIRES: two bytes at least, which are those before the run.
void expect_all_counted(RunCounter* counter, const std::string& text) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  const unsigned pair = static_cast<unsigned>(bytes[0]) << 8 | bytes[1];
  // Bytes before the pair are no matter.
  const std::vector<unsigned char> run(bytes + 2, bytes + text.size());
  Counts counts;
  for (const CountedTrigram t : counter->count(0xABCD0000 | pair, run.data(), run.size())) {
    ASSERT_GE(t.times(), 1U);
    ASSERT_LE(t.times(), RunCounter::kMostTimes);
    counts[name_of(t)] += t.times();
  }
  ASSERT_EQ(counts, count_naively(text)) << text.size() << " bytes";
}

// With so many letters all slots are needed by several trigrams, or one trigram comes all the time,
// as often as one listed trigram may, and once more.
TEST(RunCounter, EveryTrigramIsCountedHoweverManyThereAre) {
  std::mt19937 random(1);
  RunCounter counter;
  for (const unsigned letters : {1U, 2U, 5U, 30U, 256U}) {
    for (const size_t length : {0, 1, 2, 3, 4, 5, 62, 63, 64, 65, 600, 601, 5000, 5001, 10000}) {
      std::string text;
      for (size_t i = 0; i < length + 2; ++i) text += static_cast<char>(random() % letters);
      expect_all_counted(&counter, text);
    }
  }
}

// Empty slots hold their numbers as such trigrams.
TEST(RunCounter, TrigramsThatLookLikeEmptySlotsAreCounted) {
  RunCounter counter;
  for (const size_t length : {300, 3000, 9999}) {
    for (unsigned from = 0; from < 0x2000; from += 50) {
      std::string text = "xy";
      for (unsigned slot = from; text.size() < length; ++slot) {
        text += static_cast<char>(slot);
        text += static_cast<char>(0x40 | (slot >> 8 & 0x1F));
        text += static_cast<char>(0x3B);
      }
      expect_all_counted(&counter, text);
    }
  }
}

}  // namespace
}  // namespace orva
