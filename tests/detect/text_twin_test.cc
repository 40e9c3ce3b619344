// What prepares a text for the models, against its plain twins.
#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include "lib/detect/byte_blocks.h"
#include "lib/detect/characters.h"
#include "lib/detect/focus.h"
#include "lib/detect/sample.h"
#include "lib/detect/small_letters.h"
#include "lib/detect/utf_codec.h"
#include "tests/reference/naive_text.h"

namespace {

using Random = std::minstd_rand;

// Bits in which the passes differ, in any order: runs, digits, blanks, tags, letters, broken UTF-8.
std::string text_of_bits(Random* random) {
  static const std::string_view kBits[] = {"a",
                                           "aa",
                                           "aaaa",
                                           "B",
                                           "1",
                                           "23",
                                           " ",
                                           "\n ",
                                           "\t\r",
                                           "<",
                                           "<b>",
                                           "</i>",
                                           "< ",
                                           "<!x",
                                           ">",
                                           "\xC3\x89",
                                           "\xD0\xAF",
                                           "\xCE\x86",
                                           "\xC3",
                                           "\x80",
                                           "\xE1\xB8\x80",
                                           "\xE4\xB8\x80",
                                           "\xEA\xB0\x80",
                                           "\xF0\x9F\x98\x80",
                                           "\xF5",
                                           "\xED\xA0\x80",
                                           "\xE0\x80",
                                           "\xC5\xB8",
                                           "\xD4\xB1",
                                           "\xD7\x90",
                                           "Zz"};
  std::string text;
  for (size_t bits = (*random)() % 60; bits > 0; --bits) {
    const size_t kind = (*random)() % (std::size(kBits) + 2);
    if (kind < std::size(kBits)) {
      text += kBits[kind];
    } else if (kind == std::size(kBits)) {
      text.push_back(static_cast<char>((*random)() % 256));
    } else {
      text.append((*random)() % 40 == 0 ? 2100 : (*random)() % 30, 'x');
    }
  }
  return text;
}

void expect_same_small(std::string_view text) {
  orva::ScriptCounts scripts;
  orva::ScriptCounts expected_scripts;
  const std::string expected = orva::naive_small_letters(text, &expected_scripts);
  ASSERT_EQ(orva::with_small_letters(text, &scripts), expected);
  for (int s = 0; s <= orva::kAnyScript; ++s) {
    const auto script = static_cast<orva::Script>(s);
    ASSERT_EQ(scripts.can_be(script), expected_scripts.can_be(script)) << text;
    ASSERT_EQ(scripts.has(script), expected_scripts.has(script)) << text;
  }
}

TEST(TextTwin, TextsArePreparedAsByteByByte) {
  Random random(21);
  for (int run = 0; run < 20000; ++run) {
    const std::string text = text_of_bits(&random);
    for (const bool wide : {false, orva::has_wide_blocks()}) {
      orva::TextBuffer buffer;
      ASSERT_EQ(orva::normalised(text, &buffer, wide), orva::naive_normalised(text)) << text;
      ASSERT_EQ(orva::without_markup(text, &buffer, wide), orva::naive_without_markup(text))
          << text;
    }
    expect_same_small(text);
    size_t high = 0;
    for (const char c : text) high += static_cast<unsigned char>(c) >= 0x80 ? 1 : 0;
    ASSERT_EQ(orva::count_high(text), high);
  }
}

TEST(TextTwin, EveryCharacterGetsTheSmallLetterOfItsOwn) {
  for (uint32_t value = 0; value <= 0x10FFFF; ++value) {
    if (value >= 0xD800 && value <= 0xDFFF) continue;
    std::string text;
    orva::append_utf8(value, &text);
    std::string small;
    orva::append_utf8(orva::small_letter(value), &small);
    ASSERT_EQ(small.size(), text.size()) << value;
    if (value < 0x3000) expect_same_small(text + text);
  }
}

}  // namespace
