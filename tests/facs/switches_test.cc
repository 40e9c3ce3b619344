#include <gtest/gtest.h>

#include <random>
#include <string>

#include "lib/facs/lid_facs.h"
#include "tests/reference/naive_facs.h"

using orva::Switches;

namespace {

std::string preprocessed(std::string text, const Switches& s) {
  CLidFacs facs;
  EXPECT_EQ(facs.init(s.dups, s.caps, s.digits, s.blks), 1);
  text += '#';  // room for the terminator that follows a cut
  const int kept = facs.preprocess(reinterpret_cast<unsigned char*>(text.data()),
                                   static_cast<int>(text.size()) - 1);
  return text.substr(0, static_cast<size_t>(kept));
}

// The buffer itself after one step, with what lies behind its new length.
std::string after_dups(std::string buffer, int* length) {
  CLidFacs facs;
  *length = facs.remove_tricar_dups(reinterpret_cast<unsigned char*>(buffer.data()),
                                    static_cast<int>(buffer.size()));
  return buffer;
}

}  // namespace

TEST(Preprocess, OnlyAsciiCapitalsAreFolded) {
  EXPECT_EQ(preprocessed("ABC\xc9@[Z", {0, 1, 0, 0}), "abc\xc9@[z");
}

TEST(Preprocess, RunsOfFourAndMoreAreCutToThree) {
  EXPECT_EQ(preprocessed("aaaaab", {1, 0, 0, 0}), "aaab");
  EXPECT_EQ(preprocessed("aaab", {1, 0, 0, 0}), "aaab");
  EXPECT_EQ(preprocessed("abbbbbbcccccd", {1, 0, 0, 0}), "abbbcccd");
}

TEST(Preprocess, ACutWritesANulBehindTheText) {
  int length = 0;
  EXPECT_EQ(after_dups("aaaaab", &length), std::string("aaab\0b", 6));
  EXPECT_EQ(length, 4);
}

TEST(Preprocess, WithoutARunNothingIsWritten) {
  int length = 0;
  EXPECT_EQ(after_dups("aaab", &length), "aaab");
  EXPECT_EQ(length, 4);
}

TEST(Preprocess, NulsAtTheStartCountAsIfAnotherPrecededThem) {
  EXPECT_EQ(preprocessed(std::string("\0\0\0x", 4), {1, 0, 0, 0}), std::string("\0\0x", 3));
  EXPECT_EQ(preprocessed(std::string("\0\0x", 3), {1, 0, 0, 0}), std::string("\0\0x", 3));
  EXPECT_EQ(preprocessed(std::string("x\0\0\0x", 5), {1, 0, 0, 0}), std::string("x\0\0\0x", 5));
}

TEST(Preprocess, BlanksAreRemovedAndNotCollapsed) {
  EXPECT_EQ(preprocessed("a b\r\nc\td", {0, 0, 0, 1}), "abcd");
  EXPECT_EQ(preprocessed("a\v\f\xa0", {0, 0, 0, 1}), "a\v\f\xa0");
}

TEST(Preprocess, DigitsAndBlanksMayLeaveNothing) {
  EXPECT_EQ(preprocessed("12 34", {0, 0, 1, 1}), "");
  EXPECT_EQ(preprocessed("", {1, 1, 1, 1}), "");
}

TEST(Preprocess, StepsThatAreOffChangeNothing) {
  EXPECT_EQ(preprocessed("AAAA 12\n", {0, 0, 0, 0}), "AAAA 12\n");
}

TEST(Preprocess, RunsAreCutBeforeCapitalsAreFolded) {
  EXPECT_EQ(preprocessed("aaAAa", {1, 1, 0, 0}), "aaaaa");
}

TEST(Preprocess, AnyNonzeroSwitchIsOn) { EXPECT_EQ(preprocessed("A1 ", {0, -1, 7, 2}), "a"); }

TEST(Preprocess, EverySetOfSwitchesAgreesWithTheNaiveOne) {
  std::mt19937 random(11);
  const std::string alphabet("aAbB01 \n\0\xc9", 10);
  for (int i = 0; i < 3000; ++i) {
    std::string text;
    const auto length = random() % 40;
    while (text.size() < length) {
      text.append(1 + random() % 6, alphabet[random() % alphabet.size()]);
    }
    const Switches s = {i & 1, i & 2, i & 4, i & 8};
    ASSERT_EQ(preprocessed(text, s), orva::naive_preprocess(text, s)) << i;
  }
}
