#include "lib/eval/trigram_numbers.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

namespace orva {
namespace {

Trigram trigram_of(unsigned char a, unsigned char b, unsigned char c) {
  return {unsigned{a} | unsigned{b} << 8 | unsigned{c} << 16};
}

using Known = std::map<uint32_t, uint16_t>;

// Finds the trigrams of a text, whose first two bytes are those before the run.
void expect_found(const TrigramNumbers& numbers, const Known& known, const std::string& text) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  const unsigned pair = static_cast<unsigned>(bytes[0]) << 8 | bytes[1];
  std::vector<uint16_t> expected;
  for (size_t i = 2; i < text.size(); ++i) {
    const auto place = known.find(trigram_of(bytes[i - 2], bytes[i - 1], bytes[i]).bits);
    expected.push_back(place != known.end() ? place->second : TrigramNumbers::kNone);
  }
  // Its own memory, so that no byte beside it is read unnoticed.
  const std::vector<unsigned char> run(bytes + 2, bytes + text.size());
  std::vector<uint16_t> found(run.size());
  // Bytes before the pair are no matter.
  numbers.find(0xABCD0000 | pair, run.data(), run.size(), found.data());
  ASSERT_EQ(found, expected) << run.size() << " bytes";
}

TEST(TrigramNumbers, AreFoundForTheTrigramsThatHaveOne) {
  std::mt19937 random(1);
  for (const unsigned letters : {1U, 2U, 5U, 30U, 256U}) {
    TrigramNumbers numbers;
    Known known;
    for (const size_t length : {0, 1, 2, 3, 4, 5, 7, 8, 9, 100, 2047, 2048}) {
      std::string text;
      for (size_t i = 0; i < length + 2; ++i) text += static_cast<char>(random() % letters);
      expect_found(numbers, known, text);
      // Every other one gets a number.
      for (size_t i = 2; i < text.size(); i += 2) {
        const auto* bytes = reinterpret_cast<const unsigned char*>(text.data()) + i;
        const auto number = static_cast<uint16_t>(1 + random() % 65535);
        const Trigram trigram = trigram_of(bytes[-2], bytes[-1], bytes[0]);
        uint16_t* const place = numbers.place_of(trigram);
        ASSERT_NE(place, nullptr);
        EXPECT_EQ(*place, known.count(trigram.bits) != 0 ? known[trigram.bits] : 0);
        *place = number;
        known[trigram.bits] = number;
        EXPECT_EQ(numbers.find_one(trigram), number);
      }
      expect_found(numbers, known, text);
    }
  }
}

TEST(TrigramNumbers, HaveRoomForMoreThanIsFoundAtOnceAfterClear) {
  TrigramNumbers numbers;
  std::mt19937 random(2);
  for (int round = 0; round < 3; ++round) {
    size_t nb_set = 0;
    Trigram last = {static_cast<uint32_t>(random() & 0xFFFFFF)};
    while (uint16_t* const place = numbers.place_of(last)) {
      *place = 7;
      EXPECT_EQ(numbers.find_one(last), 7);
      last = {static_cast<uint32_t>(random() & 0xFFFFFF)};
      ++nb_set;
    }
    EXPECT_GE(nb_set, TrigramNumbers::kMostFound);
    EXPECT_EQ(numbers.find_one(last), TrigramNumbers::kNone);
    numbers.clear();
    for (uint32_t bits = 0; bits < 1U << 24; bits += 5) {
      ASSERT_EQ(numbers.find_one({bits}), TrigramNumbers::kNone);
    }
  }
}

}  // namespace
}  // namespace orva
