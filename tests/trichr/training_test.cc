#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "lib/util/accounting.h"
#include "tests/reference/naive_trainer.h"
#include "tests/support/streams.h"
#include "tests/trichr/trichr_fixture.h"

namespace {

using orva::Options;
using orva::train;

std::string key_at(const CTrichrModel& model, int i) {
  return reinterpret_cast<const char*>(model.key(i));
}

int nb_lines(const std::string& text) {
  return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

void expect_naive(const CTrichrModel& model, const std::string& text, const Options& o) {
  const orva::NaiveModel naive =
      orva::naive_training(text, o.max_tri, o.min_freq, o.weight, o.coverage);
  for (unsigned v = 0; v < 256; ++v) ASSERT_EQ(model.uch_lps[v], naive.byte_costs[v]) << v;
  ASSERT_EQ(model.nb_tri, static_cast<int>(naive.trigrams.size()));
  for (int i = 0; i < model.nb_tri; ++i) {
    ASSERT_EQ(key_at(model, i), naive.trigrams[static_cast<size_t>(i)].first) << i;
    ASSERT_EQ(model.tri_lps[i], naive.trigrams[static_cast<size_t>(i)].second) << i;
  }
}

std::string random_text(size_t length, unsigned nb_letters, unsigned seed) {
  std::mt19937 random(seed);
  std::string text;
  for (size_t i = 0; i < length; ++i) {
    // The lower of two throws is the likelier: frequencies of all sizes, with many ties.
    text.push_back(static_cast<char>(std::min(random() % nb_letters, random() % nb_letters)));
  }
  return text;
}

}  // namespace

TEST(Training, EmptyTextGivesTheFixedLinesAlone) {
  CTrichrModel model;
  train(model, "");
  EXPECT_EQ(model.nb_tri, 0);
  for (const float cost : model.uch_lps) EXPECT_EQ(cost, -1.0f);
  EXPECT_EQ(nb_lines(orva::saved(model)), 35);
}

TEST(Training, TextOfTwoBytesIsContextAlone) {
  CTrichrModel model;
  train(model, "ab");
  EXPECT_EQ(model.nb_tri, 0);
  EXPECT_EQ(model.uch_lps['a'], -1.0f);
}

TEST(Training, KeysAreHexadecimalInTextOrder) {
  CTrichrModel model;
  train(model, "AB ");
  ASSERT_EQ(model.nb_tri, 1);
  EXPECT_EQ(key_at(model, 0), "414220");
  EXPECT_EQ(model.lp_base, 1.0f);
  EXPECT_EQ(model.lp_scale, 2.0f);
  EXPECT_EQ(model.lp_const, 2.0f);
  EXPECT_EQ(model.lp_unseen, 30.0f);
}

TEST(Training, CostsAgreeWithTheNaiveTwinOnTextsOfEverySize) {
  for (const size_t length : {3u, 10u, 100u, 2000u, 30000u, 200000u}) {
    for (const unsigned letters : {2u, 30u, 256u}) {
      const std::string text = random_text(length, letters, 17 + letters);
      CTrichrModel model;
      train(model, text);
      expect_naive(model, text, {});
    }
  }
}

TEST(Training, SelectionsAgreeWithTheNaiveTwin) {
  const std::string text = random_text(20000, 60, 5);
  std::vector<Options> cases(7);
  cases[0].max_tri = 300;
  cases[1].min_freq = 3;
  cases[2].min_freq = 1000000;
  cases[3].coverage = 0.5f;
  cases[4].coverage = 1.0f;
  cases[5].min_freq = 2, cases[5].max_tri = 1000;
  cases[6].weight = 0.25f;
  for (const Options& o : cases) {
    CTrichrModel model;
    train(model, text, o);
    expect_naive(model, text, o);
  }
}

TEST(Training, TiesKeepTheOrderOfFirstAppearanceWhateverTheSize) {
  // All 3-letter combinations of 16 letters once: 4096 records in four rows, all of frequency 1
  // but for the trigrams that straddle.
  std::string text;
  for (int i = 0; i < 4096; ++i) {
    for (const int shift : {8, 4, 0}) text.push_back(static_cast<char>('a' + ((i >> shift) & 15)));
  }
  CTrichrModel model;
  train(model, text);
  EXPECT_GT(model.nb_tri, 4000);
  expect_naive(model, text, {});
}

TEST(Training, MinFreqTakesPrecedenceOverCoverage) {
  CTrichrModel model;
  Options o;
  o.min_freq = 2;
  o.coverage = 1.0f;
  o.max_tri = 1;
  train(model, "abcabcxyz", o);
  ASSERT_EQ(model.nb_tri, 1);
  EXPECT_EQ(key_at(model, 0), "616263");
}

TEST(Training, FullCoverageKeepsEverythingWhateverTheMaximumSays) {
  CTrichrModel model;
  Options o;
  o.coverage = 1.0f;
  o.max_tri = 1;
  train(model, "abcabcxyz", o);
  EXPECT_EQ(model.nb_tri, 6);
}

TEST(Training, MaximumOfNoneKeepsNone) {
  CTrichrModel model;
  Options o;
  o.max_tri = 0;
  train(model, "abcdef", o);
  EXPECT_EQ(model.nb_tri, 0);
}

TEST(Training, EachSegmentBringsItsOwnContext) {
  // Mode 1: of every five bytes the first two are context and the next two are counted.
  CTrichrModel model;
  Options o;
  o.mode = 1;
  o.start = 2;
  o.end = 5;
  train(model, "abcd_efgh_", o);
  std::vector<std::string> keys;
  for (int i = 0; i < model.nb_tri; ++i) keys.push_back(key_at(model, i));
  EXPECT_EQ(keys, (std::vector<std::string>{"616263", "626364", "656667", "666768"}));
}

TEST(Training, FlagsAreThoseGivenAndTheTextIsPreprocessed) {
  CTrichrModel model;
  Options o;
  o.flags = "CX";
  train(model, "A1B2C", o);
  EXPECT_EQ(model.rm_tridups, 0);
  EXPECT_EQ(model.rm_caps, 1);
  EXPECT_EQ(model.rm_digits, 1);
  EXPECT_EQ(model.rm_blks, 0);
  ASSERT_EQ(model.nb_tri, 1);
  EXPECT_EQ(key_at(model, 0), "616263");
}

TEST(Training, SecondTrainingForgetsTheFirst) {
  CTrichrModel model;
  train(model, "first text of all");
  train(model, "xyz");
  ASSERT_EQ(model.nb_tri, 1);
  EXPECT_EQ(model[reinterpret_cast<const unsigned char*>("666972")], -1);
}

TEST(Training, EverythingIsGivenBack) {
  const int before = _MallocChkNbBytes;
  {
    CTrichrModel model;
    train(model, random_text(5000, 40, 9));
    EXPECT_EQ(model.tri_lps_tsize, model.nb_tri);
  }
  EXPECT_EQ(_MallocChkNbBytes, before);
}

TEST(Training, VerboseTellsCountsAndTime) {
  CTrichrModel model;
  model.verbose = 1;
  const std::string text = random_text(150000, 30, 2);
  const std::string said = orva::stderr_of([&] { train(model, text); });
  EXPECT_EQ(said.rfind("\rMBuild.P1: N 100", 0), 0u) << said;
  std::set<std::string> trigrams;
  std::set<std::string> bigrams;
  for (size_t i = 2; i < text.size(); ++i) {
    trigrams.insert(text.substr(i - 2, 3));
    bigrams.insert(text.substr(i - 2, 2));
  }
  char counts[80];
  snprintf(counts, sizeof counts, "\rMBuild.P1: N 149998  T %6zu  B %6zu    T 0.", trigrams.size(),
           bigrams.size());
  EXPECT_NE(said.find(counts), std::string::npos) << said;
}
