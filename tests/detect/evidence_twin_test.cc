// The passes over a document, which skip what needs no look, against their plain twins.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "lib/detect/escape_check.h"
#include "lib/detect/sample.h"
#include "lib/detect/unicode_check.h"
#include "tests/reference/naive_evidence.h"

namespace {

using Random = std::minstd_rand;

// Texts in which every kind of byte that a pass may stumble on stands at every place of a block.
std::string adversarial(Random* random) {
  static const std::string_view kBits[] = {"\x80",
                                           "\xFF",
                                           "\x8E",
                                           "\x8E\xA1\xA1\xA1",
                                           "\x8F\xA2\xAF",
                                           "\x81\x30\x81\x30",
                                           "\x84\x31\xA4\x39",
                                           "\xC3\xA9",
                                           "\xE2\x82\xAC",
                                           "\xF0\x9F\x98\x80",
                                           "\xED\xA0\x80",
                                           "\xA4\xA2",
                                           "\x83\x5C",
                                           "\xB0\xA1",
                                           "\x1B$B",
                                           "\x1B(B",
                                           "\x1B$)C",
                                           "\x0E",
                                           "\x0F",
                                           "~{",
                                           "~}",
                                           "~~",
                                           "!!",
                                           "\n",
                                           "\0",
                                           "\xD8\x00",
                                           "\xFD\xD0"};
  std::string text;
  const size_t parts = (*random)() % 12;
  for (size_t p = 0; p < parts; ++p) {
    text.append((*random)() % 80, 'a');
    if ((*random)() % 9 == 0) text.append((*random)() % 700, 'b');
    text += kBits[(*random)() % std::size(kBits)];
  }
  return text;
}

std::string random_bytes(Random* random) {
  std::string text((*random)() % 200, '\0');
  const unsigned range = (*random)() % 2 == 0 ? 256 : 8;
  for (char& c : text) c = static_cast<char>(0xA0 + (*random)() % range);
  return text;
}

std::vector<std::string> documents() {
  Random random(7);
  std::vector<std::string> all = {"", "a", "\xC3", std::string(5000, '\xE9')};
  for (int i = 0; i < 3000; ++i) {
    all.push_back(i % 3 == 0 ? random_bytes(&random) : adversarial(&random));
  }
  return all;
}

// Feeds `text` in pieces of random lengths.
template <typename Target>
void feed_in_pieces(std::string_view text, Random* random, Target* target) {
  while (!text.empty()) {
    const std::string_view piece = text.substr(0, 1 + (*random)() % 90);
    target->feed(piece);
    text.remove_prefix(piece.size());
  }
}

template <typename Target>
void feed_bytes(std::string_view text, Target* target) {
  for (size_t i = 0; i < text.size(); ++i) target->feed(text.substr(i, 1));
}

TEST(EvidenceTwin, MultiByteCheckReadsOneCharacterAfterTheOther) {
  Random random(1);
  for (const std::string& text : documents()) {
    for (int k = 0; k < orva::kMultiByteKinds; ++k) {
      const auto kind = static_cast<orva::MultiByteKind>(k);
      const orva::NaiveMultiByte expected = orva::naive_multi_byte(kind, text);
      orva::MultiByteCheck whole(kind);
      whole.feed(text);
      orva::MultiByteCheck cut(kind);
      feed_in_pieces(text, &random, &cut);
      for (const auto& check : {whole, cut}) {
        ASSERT_EQ(check.valid(), expected.valid) << multi_byte_name(kind);
        ASSERT_EQ(check.wide(), expected.wide) << multi_byte_name(kind);
        ASSERT_EQ(check.first_bad(), expected.offset) << multi_byte_name(kind);
      }
    }
  }
}

TEST(EvidenceTwin, EscapesAreSeenWhereverTheyStand) {
  Random random(2);
  int named = 0;
  for (const std::string& text : documents()) {
    orva::EscapeCheck bytewise;
    feed_bytes(text, &bytewise);
    orva::EscapeCheck whole;
    whole.feed(text);
    orva::EscapeCheck cut;
    feed_in_pieces(text, &random, &cut);
    const char* expected = bytewise.charset();
    named += expected != nullptr ? 1 : 0;
    ASSERT_STREQ(whole.charset(), expected) << text;
    ASSERT_STREQ(cut.charset(), expected) << text;
  }
  EXPECT_GT(named, 10);
}

// Runs of pairs are read at once, whatever byte ends them.
TEST(EvidenceTwin, EveryByteIsSeenAmongPairs) {
  static const std::string_view kStarts[] = {"\x1B$B",           "\x1B$@",      "\x1B$)C\x0E",
                                             "\x1B$)A\x0E",      "~{",          "\x1B$)G\x0E",
                                             "\x1B$B!!\x1B(B~{", "~{!!~}\x1B$B"};
  static const std::string_view kEnds[] = {"", "\x0F", "\x1B(B", "~}", "\n~{!!~}", "\x1B$B!!"};
  Random random(5);
  int named = 0;
  for (int run = 0; run < 40000; ++run) {
    std::string text(kStarts[random() % std::size(kStarts)]);
    const size_t pairs = random() % 24;
    for (size_t i = 0; i < 2 * pairs; ++i) text.push_back(static_cast<char>(0x30 + random() % 24));
    if (random() % 2 == 0) {
      const auto hostile = random() % 3 == 0 ? random() % 256 : 0x77 + random() % 10;
      text[random() % text.size()] = static_cast<char>(hostile);
    }
    text += kEnds[random() % std::size(kEnds)];
    orva::EscapeCheck bytewise;
    feed_bytes(text, &bytewise);
    orva::EscapeCheck whole;
    whole.feed(text);
    named += bytewise.charset() != nullptr ? 1 : 0;
    ASSERT_STREQ(whole.charset(), bytewise.charset()) << text;
  }
  EXPECT_GT(named, 10000);
}

TEST(EvidenceTwin, AnEscapeSequenceIsSeenBehindAnyNumberOfPlainBytes) {
  for (size_t plain = 0; plain < 200; ++plain) {
    orva::EscapeCheck check;
    check.feed(std::string(plain, 'a') + "\x1B$B$3$l\x1B(B" + std::string(plain, 'b'));
    ASSERT_STREQ(check.charset(), "ISO-2022-JP") << plain;
    check.reset();
    check.feed(std::string(plain, 'a') + "\x1B$B$3$l\x1B(B" + std::string(plain, 'b') + '\x80');
    ASSERT_EQ(check.charset(), nullptr) << plain;
  }
}

// Units of 16 bits cost what the same characters cost in 32 bits, which are read one by one.
TEST(EvidenceTwin, UnicodeUnitsCostWhatTheirCharactersCost) {
  Random random(3);
  for (int run = 0; run < 400; ++run) {
    const auto from = static_cast<uint32_t>(random() % 0x10000);
    for (const bool big : {false, true}) {
      std::string units;
      std::string values;
      for (int i = 0; i < 60; ++i) {
        const auto near = static_cast<uint32_t>((from + random() % 64) & 0xFFFF);
        const uint32_t value = random() % 4 == 0 ? 'e' : near;
        if (value >= 0xD800 && value <= 0xDFFF) continue;
        const char low = static_cast<char>(value);
        const char high = static_cast<char>(value >> 8);
        units += big ? std::string{high, low} : std::string{low, high};
        values += big ? std::string{0, 0, high, low} : std::string{low, high, 0, 0};
      }
      orva::UnicodeCheck narrow(2, big);
      feed_in_pieces(units, &random, &narrow);
      orva::UnicodeCheck wide(4, big);
      wide.feed(values);
      ASSERT_EQ(narrow.valid(), wide.valid()) << from;
      ASSERT_EQ(narrow.characters(), wide.characters()) << from;
      if (narrow.characters() == 0) continue;
      ASSERT_DOUBLE_EQ(narrow.cost(), wide.cost()) << from;
    }
  }
}

TEST(EvidenceTwin, SamplesKeepTheHeadAndTheLinesWithHighBytes) {
  Random random(4);
  for (int run = 0; run < 60; ++run) {
    std::string text(static_cast<size_t>(run) * 331, 'h');
    while (text.size() < 60000) {
      text += adversarial(&random);
      if (random() % 2 == 0) text += std::string(random() % 1500, random() % 2 == 0 ? 'x' : '\xE1');
      if (random() % 2 == 0) text += '\n';
      // More lines of plain ASCII than are looked at together.
      if (random() % 6 == 0) {
        for (size_t lines = random() % 200; lines > 0; --lines) {
          text += std::string(random() % 70, 'y') + '\n';
        }
        text += std::string(random() % 6000, 'z');
      }
    }
    const std::string expected = orva::naive_sample(text);
    orva::Sample whole;
    whole.feed(text);
    ASSERT_EQ(whole.text(), expected) << run;
    orva::Sample cut;
    feed_in_pieces(text, &random, &cut);
    ASSERT_EQ(cut.text(), expected) << run;
  }
}

}  // namespace
