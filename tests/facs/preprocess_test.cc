#include "lib/facs/preprocess.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

#include "lib/facs/lid_facs.h"

namespace orva {
namespace {

// The four steps one after the other, each over the whole buffer.
std::string step_by_step(const PreprocessSwitches& on, std::string text) {
  CLidFacs facs;
  auto* bytes = reinterpret_cast<unsigned char*>(text.data());
  int length = static_cast<int>(text.size());
  if (on.cut_runs) length = facs.remove_tricar_dups(bytes, length);
  if (on.fold_caps) length = facs.remove_caps(bytes, length);
  if (on.drop_digits) length = facs.remove_digits(bytes, length);
  if (on.drop_blanks) length = facs.remove_blks(bytes, length);
  return text.substr(0, static_cast<size_t>(length));
}

// Bytes beside the text, which must stay as they are.
const std::string kBeside(64, 'A');

std::string in_one_pass(Preprocess preprocess, const PreprocessSwitches& on,
                        const std::string& text) {
  std::string all = kBeside + text + kBeside;
  auto* const bytes = reinterpret_cast<unsigned char*>(all.data()) + kBeside.size();
  const int length = preprocess(on, bytes, static_cast<int>(text.size()));
  EXPECT_EQ(all.substr(0, kBeside.size()), kBeside);
  EXPECT_EQ(all.substr(kBeside.size() + text.size()), kBeside);
  return all.substr(kBeside.size(), static_cast<size_t>(length));
}

TEST(Preprocess, OnePassGivesWhatTheStepsGiveOneAfterTheOther) {
  std::mt19937 random(20261);
  // Few different bytes make runs, digits, capitals and blanks frequent; many make them rare.
  const std::string alphabets[] = {std::string("a\0", 2), std::string("aA0 \n\0\xC1", 7),
                                   "abcdefghijklmnopqrstuvwxyzABC 01\t\r\xE9"};
  for (int round = 0; round < 20000; ++round) {
    const std::string& alphabet = alphabets[random() % 3];
    std::string text(random() % 300, ' ');
    for (char& c : text) c = alphabet[random() % alphabet.size()];
    const unsigned bits = static_cast<unsigned>(round) % 16;
    const PreprocessSwitches on = {(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0,
                                   (bits & 8) != 0};
    const std::string expected = step_by_step(on, text);
    for (const Preprocess preprocess : preprocessors()) {
      ASSERT_EQ(in_one_pass(preprocess, on, text), expected) << "round " << round;
    }
  }
}

TEST(Preprocess, ACutRunLeavesANulAtTheEnd) {
  for (const Preprocess preprocess : preprocessors()) {
    unsigned char text[] = "aaaaab!";
    EXPECT_EQ(preprocess({.cut_runs = true}, text, 6), 4);
    EXPECT_EQ(memcmp(text, "aaab\0b!", 7), 0);
    unsigned char no_run[] = "aaab!";
    EXPECT_EQ(preprocess({.cut_runs = true}, no_run, 4), 4);
    EXPECT_EQ(no_run[4], '!');
  }
}

}  // namespace
}  // namespace orva
