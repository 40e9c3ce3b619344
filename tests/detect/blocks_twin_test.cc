// What looks at blocks of bytes, by vectors or not, against its plain twins: on text, on bytes at
// random and with a hostile byte at every place.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "lib/detect/byte_tally.h"
#include "lib/detect/multi_byte_check.h"
#include "lib/detect/unicode_check.h"
#include "lib/detect/utf8_blocks.h"
#include "lib/detect/utf_codec.h"
#include "tests/reference/naive_evidence.h"

namespace {

using Random = std::minstd_rand;

std::string bytes_at_random(size_t size, unsigned from, unsigned count, Random* random) {
  std::string text(size, '\0');
  for (char& c : text) c = static_cast<char>(from + (*random)() % count);
  return text;
}

// ---------------------------------------------------------------------------------------------
// Kinds of bytes.

void expect_tally(orva::ByteTally::Counter counter, std::string_view first, std::string_view rest) {
  orva::ByteTally tally(counter);
  tally.feed(first);
  tally.feed(rest);
  const std::string text = std::string(first) + std::string(rest);
  const orva::ByteKinds expected = orva::naive_byte_kinds(text);
  ASSERT_EQ(tally.kinds().high, expected.high);
  ASSERT_EQ(tally.kinds().odd_controls, expected.odd_controls);
  ASSERT_EQ(tally.kinds().blanks, expected.blanks);
  ASSERT_EQ(tally.kinds().at_signs, expected.at_signs);
  for (int b = 0; b < 256; ++b) {
    const bool held = text.find(static_cast<char>(b)) != std::string::npos;
    ASSERT_EQ(tally.holds(static_cast<unsigned char>(b)), held) << b;
    ASSERT_EQ((tally.present(static_cast<size_t>(b) / 64) >> b % 64 & 1U) != 0, held) << b;
  }
}

const orva::ByteTally::Counter kTallyCounters[] = {orva::ByteTally::plain_counter(),
                                                   orva::ByteTally::best_counter()};

TEST(BlocksTwin, EveryByteIsSeenAtEveryPlace) {
  const std::string known = "\tabc @\x7F\x80\xE9\x1A";
  for (const auto counter : kTallyCounters) {
    for (int b = 0; b < 256; ++b) {
      std::string text;
      while (text.size() < 3 * orva::ByteTally::kBlock) text += known;
      text[static_cast<size_t>(b * 7) % text.size()] = static_cast<char>(b);
      expect_tally(counter, known, text);
    }
  }
}

TEST(BlocksTwin, BytesAreTalliedAtEveryLengthAndAlignment) {
  Random random(11);
  for (const auto counter : kTallyCounters) {
    for (size_t size = 0; size < 200; ++size) {
      const std::string text = bytes_at_random(size + 64, 0, size % 2 == 0 ? 256 : 48, &random);
      const size_t from = size % 64;
      expect_tally(counter, text.substr(0, from), std::string_view(text).substr(from));
    }
    // More blocks than a counter of 8 bits takes.
    for (const unsigned from : {0U, 0x20U, 0x40U, 0x7FU, 0xC0U}) {
      expect_tally(counter, "", bytes_at_random(50000, from, 1, &random));
    }
    expect_tally(counter, "", bytes_at_random(50000, 0, 256, &random));
  }
}

// ---------------------------------------------------------------------------------------------
// UTF-8 and pairs.

std::string utf8_at_random(size_t size, Random* random) {
  // The ends of all ranges, and what lies between.
  static const uint32_t kValues[] = {'a',     '\n',    0x80,    0x7FF,    0x800,   0xFFF,
                                     0x1000,  0x20AC,  0xD7FF,  0xE000,   0xFFFF,  0x10000,
                                     0x3FFFF, 0x40000, 0xFFFFF, 0x100000, 0x10FFFF};
  std::string text;
  const size_t kinds = 1 + (*random)() % std::size(kValues);
  while (text.size() < size) orva::append_utf8(kValues[(*random)() % kinds], &text);
  return text;
}

void expect_check(orva::MultiByteKind kind, std::string_view text) {
  const orva::NaiveMultiByte expected = orva::naive_multi_byte(kind, text);
  orva::MultiByteCheck check(kind);
  check.feed(text);
  ASSERT_EQ(check.valid(), expected.valid) << multi_byte_name(kind);
  ASSERT_EQ(check.wide(), expected.wide) << multi_byte_name(kind);
  ASSERT_EQ(check.first_bad(), expected.offset) << multi_byte_name(kind);
}

// Text that `kind` takes, of characters at random.
std::string text_in(orva::MultiByteKind kind, size_t size, Random* random) {
  std::string text;
  while (text.size() < size) {
    const std::string next = (*random)() % 8 == 0 ? std::string(1 + (*random)() % 40, 'a')
                                                  : bytes_at_random(4, 0x80, 128, random);
    const int length = orva::character_length(kind, next);
    if (length > 0) text += next.substr(0, next[0] == 'a' ? next.size() : size_t(length));
  }
  return text;
}

TEST(BlocksTwin, ABadByteIsFoundAtEveryPlace) {
  Random random(12);
  for (int k = 0; k < orva::kMultiByteKinds; ++k) {
    const auto kind = static_cast<orva::MultiByteKind>(k);
    for (int run = 0; run < 12; ++run) {
      const std::string good = kind == orva::MultiByteKind::kUtf8 ? utf8_at_random(230, &random)
                                                                  : text_in(kind, 230, &random);
      expect_check(kind, good);
      for (size_t at = 0; at < good.size(); ++at) {
        const auto any = static_cast<int>(random() % 256);
        for (const int hostile : {any, 0x80, 0xC1, 0xE0, 0xED, 0xF4, 0xF5, 0xFF}) {
          std::string text = good;
          text[at] = static_cast<char>(hostile);
          expect_check(kind, text);
        }
      }
    }
  }
}

TEST(BlocksTwin, TextIsCheckedAtEveryLengthAndAlignment) {
  Random random(13);
  for (int k = 0; k < orva::kMultiByteKinds; ++k) {
    const auto kind = static_cast<orva::MultiByteKind>(k);
    for (size_t size = 0; size < 220; ++size) {
      const std::string text = kind == orva::MultiByteKind::kUtf8 ? utf8_at_random(300, &random)
                                                                  : text_in(kind, 300, &random);
      expect_check(kind, std::string_view(text).substr(size % 5, size));
    }
  }
}

TEST(BlocksTwin, AsciiMayBePassedAtOnceButNotBehindHalfAPair) {
  int refused = 0;
  for (int k = 0; k < orva::kMultiByteKinds; ++k) {
    const auto kind = static_cast<orva::MultiByteKind>(k);
    for (int lead = 0x80; lead < 0x100; ++lead) {
      const std::string half(1, static_cast<char>(lead));
      const orva::NaiveMultiByte expected = orva::naive_multi_byte(kind, "abc" + half + "  ");
      orva::MultiByteCheck check(kind);
      check.feed("abc", 3);
      check.feed(half, 0);
      check.feed("  ", 2);
      ASSERT_EQ(check.valid(), expected.valid) << multi_byte_name(kind) << " " << lead;
      ASSERT_EQ(check.first_bad(), expected.offset) << multi_byte_name(kind) << " " << lead;
      refused += expected.offset == 3 ? 1 : 0;
    }
  }
  EXPECT_GT(refused, 500);
}

TEST(BlocksTwin, BothUtf8CountersStopAtTheSameBlock) {
  Random random(14);
  const orva::Utf8Counter plain = orva::plain_utf8_counter();
  const orva::Utf8Counter best = orva::best_utf8_counter();
  for (int run = 0; run < 400; ++run) {
    std::string text = "abc" + utf8_at_random(orva::kUtf8Block * 300, &random);
    if (run % 4 != 0) text[random() % text.size()] = static_cast<char>(random() % 256);
    const size_t nb_blocks = (text.size() - 3) / orva::kUtf8Block;
    uint64_t plain_wide = 0;
    uint64_t best_wide = 0;
    const size_t expected = plain(text.data() + 3, nb_blocks, &plain_wide);
    ASSERT_EQ(best(text.data() + 3, nb_blocks, &best_wide), expected);
    ASSERT_EQ(best_wide, plain_wide);
    if (run % 4 == 0) {
      ASSERT_EQ(expected, nb_blocks);
    }
  }
}

// ---------------------------------------------------------------------------------------------
// UTF-16 and UTF-32.

void expect_unicode(int width, bool big, std::string_view text, size_t piece) {
  const orva::NaiveUnicode expected = orva::naive_unicode(width, big, text);
  orva::UnicodeCheck check(width, big);
  for (std::string_view rest = text; !rest.empty();) {
    check.feed(rest.substr(0, piece));
    rest.remove_prefix(std::min(piece, rest.size()));
  }
  ASSERT_EQ(check.valid(), expected.valid) << check.charset();
  ASSERT_EQ(check.characters(), expected.characters) << check.charset();
}

TEST(BlocksTwin, UnicodeIsCheckedBehindWhatIsPriced) {
  Random random(15);
  const uint32_t kOdd[] = {0,      0xD800, 0xDC00, 0xDFFF,  0xFDCF,  0xFDD0,   0xFDEF,
                           0xFDF0, 0xFFFE, 0xFFFF, 0x1FFFF, 0x10000, 0x10FFFF, 0x110000};
  for (const int width : {2, 4}) {
    for (const bool big : {false, true}) {
      const auto append = width == 2 ? orva::append_utf16 : orva::append_utf32;
      std::string head;
      for (uint64_t i = 0; i < orva::UnicodeCheck::kMostPriced; ++i) append('a', big, &head);
      for (int run = 0; run < 300; ++run) {
        std::string text = head;
        for (size_t i = 0; i < 100; ++i) append(0x4E00 + random() % 0x1000, big, &text);
        std::string odd;
        const uint32_t value = kOdd[random() % std::size(kOdd)];
        append(width == 2 && value > 0x10FFFF ? 0xD800 : value, big, &odd);
        text.insert(head.size() + random() % 100 * static_cast<size_t>(width), odd);
        text.resize(text.size() - random() % 3);
        expect_unicode(width, big, text, run % 2 == 0 ? text.size() : 4099);
      }
    }
  }
}

TEST(BlocksTwin, WhatAUnicodeTextCostsShowsAtItsBeginning) {
  for (const int width : {2, 4}) {
    const auto append = width == 2 ? orva::append_utf16 : orva::append_utf32;
    std::string text;
    for (uint64_t i = 0; i < orva::UnicodeCheck::kMostPriced; ++i) append('a', true, &text);
    orva::UnicodeCheck head(width, true);
    head.feed(text);
    for (int i = 0; i < 1000; ++i) append(0xA500, true, &text);
    orva::UnicodeCheck whole(width, true);
    whole.feed(text);
    EXPECT_EQ(whole.characters(), head.characters() + 1000);
    EXPECT_EQ(whole.cost(), head.cost());
  }
}

}  // namespace
