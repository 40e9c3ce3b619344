// Scores of random groups, compared bit for bit with those of the naive twin.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "lib/eval/lid_mgroup_eval.h"
#include "lib/eval/trigram_index.h"
#include "lib/mgroup/group_format.h"
#include "tests/mgroup/group_files.h"
#include "tests/reference/naive_scorer.h"
#include "tests/reference/plain_group.h"

using orva::NaiveScorer;
using orva::PlainGroup;
using orva::PlainOptions;
using orva::Shape;
using orva::States;

namespace {

std::string hex(float value) {
  char text[64];
  snprintf(text, sizeof text, "%a", static_cast<double>(value));
  return text;
}

// A loaded group, its evaluator and the twin, fed alike.
class Pair {
 public:
  explicit Pair(const PlainGroup* plain) : plain_(*plain) {
    if (orva::load_bytes(&group_, orva::file_of(plain_), &why_) != kGroupOk) return;
    eval_ = std::make_unique<CLidMGroupEval>(&group_);
  }

  const std::string& refusal() const { return why_; }

  bool has_scorer() const { return eval_->has_scorer(); }
  void use_plain_vectors() { eval_->use_plain_vectors(); }

  void start(const std::string& text) {
    twin_ = std::make_unique<NaiveScorer>(&plain_);
    ASSERT_EQ(eval_->init(), 0);
    const auto c1 = static_cast<uint8_t>(text[0]);
    const auto c2 = static_cast<uint8_t>(text[1]);
    eval_->auto_init(c1, c2);
    twin_->start(c1, c2);
  }

  void feed(const std::string& piece) {
    eval_->auto_nexts(reinterpret_cast<const unsigned char*>(piece.data()),
                      static_cast<int>(piece.size()));
    twin_->feed(piece);
  }

  void expect_same() {
    ASSERT_EQ(eval_->total(), twin_->total());
    ASSERT_EQ(eval_->value_total(), twin_->value_total());
    const float* const scores = eval_->get_lprobs();
    const std::vector<float> expected = twin_->scores();
    for (size_t m = 0; m < expected.size(); ++m) {
      ASSERT_EQ(hex(scores[m]), hex(expected[m])) << "model " << m;
    }
  }

 private:
  PlainGroup plain_;
  CLidMGroup group_;
  std::string why_;
  std::unique_ptr<CLidMGroupEval> eval_;
  std::unique_ptr<NaiveScorer> twin_;
};

void expect_same_in_pieces(Pair* pair, const std::string& text, size_t piece) {
  pair->start(text);
  for (size_t at = 2; at < text.size(); at += piece) {
    pair->feed(text.substr(at, piece));
    pair->expect_same();
  }
}

const char* name_of(States states) {
  if (states == States::kSparse) return "Sparse";
  return states == States::kDirect ? "Direct" : "Mixed";
}

const char* name_of(Shape shape) {
  if (shape == Shape::kTrie) return "Trie";
  return shape == Shape::kAnySuccessors ? "AnySuccessors" : "AnyGraph";
}

using Parameters = std::tuple<States, Shape, bool>;

class Twin : public ::testing::TestWithParam<Parameters> {
 protected:
  PlainOptions options() const {
    PlainOptions o;
    o.states = std::get<0>(GetParam());
    o.shape = std::get<1>(GetParam());
    o.nb_sets = std::get<2>(GetParam()) ? 2 : 0;
    return o;
  }
};

}  // namespace

// Otherwise the tests below would compare one way of scoring only.
TEST_P(Twin, TriesAreIndexedAndOtherAutomataWalked) {
  std::mt19937 random(6);
  const PlainGroup plain = orva::random_group(&random, options());
  CLidMGroup group;
  ASSERT_EQ(orva::load_bytes(&group, orva::file_of(plain)), kGroupOk);
  orva::TrigramIndex index;
  EXPECT_EQ(index.build(group), std::get<1>(GetParam()) == Shape::kTrie);
}

TEST_P(Twin, ScoresAreTheSameHoweverAShortTextIsFed) {
  std::mt19937 random(1);
  PlainOptions o = options();
  o.alphabet = std::string("a\0\xff", 3);
  for (int round = 0; round < 40; ++round) {
    o.density = 0.1 + 0.02 * round;
    const PlainGroup plain = orva::random_group(&random, o);
    Pair pair(&plain);
    ASSERT_EQ(pair.refusal(), "");
    const std::string text = orva::random_text(&random, o, 24);
    expect_same_in_pieces(&pair, text, 1);
    for (size_t cut = 2; cut <= text.size(); ++cut) {
      pair.start(text);
      pair.feed(text.substr(2, cut - 2));
      pair.feed("");
      pair.feed(text.substr(cut));
      pair.expect_same();
    }
  }
}

TEST_P(Twin, ScoresAreTheSameForLongTextsInAnyPieces) {
  std::mt19937 random(2);
  PlainOptions o = options();
  o.long_leaves = true;
  for (int round = 0; round < 6; ++round) {
    const PlainGroup plain = orva::random_group(&random, o);
    Pair pair(&plain);
    ASSERT_EQ(pair.refusal(), "");
    const std::string text = orva::random_text(&random, o, 5000);
    for (const size_t piece : {37, 1024, 5000}) expect_same_in_pieces(&pair, text, piece);
  }
}

TEST_P(Twin, ScoresAreTheSameForManyDistinctTrigrams) {
  std::mt19937 random(3);
  PlainOptions o = options();
  o.alphabet = "abcdefghijklmnop";
  o.density = 0.8;
  o.nb_models = 9;
  const PlainGroup plain = orva::random_group(&random, o);
  Pair pair(&plain);
  ASSERT_EQ(pair.refusal(), "");
  const std::string text = orva::random_text(&random, o, 25000);
  for (const size_t piece : {700, 9999, 10000, 25000}) expect_same_in_pieces(&pair, text, piece);
}

TEST_P(Twin, AnEvaluatorForgetsItsFormerTexts) {
  std::mt19937 random(4);
  const PlainOptions o = options();
  const PlainGroup plain = orva::random_group(&random, o);
  Pair pair(&plain);
  ASSERT_EQ(pair.refusal(), "");
  for (int round = 0; round < 30; ++round) {
    const std::string text = orva::random_text(&random, o, 2 + random() % 200);
    expect_same_in_pieces(&pair, text, 1 + random() % 60);
  }
}

INSTANTIATE_TEST_SUITE_P(
    OfEveryKind, Twin,
    ::testing::Combine(::testing::Values(States::kSparse, States::kDirect, States::kMixed),
                       ::testing::Values(Shape::kTrie, Shape::kAnySuccessors, Shape::kAnyGraph),
                       ::testing::Bool()),
    [](const ::testing::TestParamInfo<Parameters>& p) {
      return std::string(name_of(std::get<0>(p.param))) + name_of(std::get<1>(p.param)) +
             (std::get<2>(p.param) ? "WithSets" : "WithoutSets");
    });

TEST(TwinOfManyModels, ScoresAreTheSameForAllTwoHundredFiftySixIndices) {
  std::mt19937 random(5);
  PlainOptions o;
  o.nb_models = 200;
  o.nb_sets = 56;
  const PlainGroup plain = orva::random_group(&random, o);
  Pair pair(&plain);
  ASSERT_EQ(pair.refusal(), "");
  expect_same_in_pieces(&pair, orva::random_text(&random, o, 3000), 1000);
}

// Of built groups trigrams are credited by vectors, but for odd leaves.
class TwinOfRows : public ::testing::TestWithParam<bool> {
 protected:
  static void expect_same_for(const PlainGroup& plain, const std::string& text,
                              std::initializer_list<size_t> pieces) {
    Pair pair(&plain);
    ASSERT_EQ(pair.refusal(), "");
    if (GetParam()) pair.use_plain_vectors();
    for (const size_t piece : pieces) expect_same_in_pieces(&pair, text, piece);
    EXPECT_TRUE(pair.has_scorer());
  }
};

TEST_P(TwinOfRows, ScoresAreTheSameWhateverTheVectors) {
  std::mt19937 random(7);
  for (int round = 0; round < 12; ++round) {
    PlainOptions o;
    o.nb_models = 100 + 9 * round;
    o.nb_sets = round % 3 == 0 ? 0 : 4 * round;
    o.alphabet = round % 2 == 0 ? "ab" : "abcd";
    o.density = 0.9;
    o.built = true;
    o.odd_leaves = round % 4 == 3;
    const PlainGroup plain = orva::random_group(&random, o);
    // With two letters, trigrams come thousands of times in a run.
    expect_same_for(plain, orva::random_text(&random, o, 12000), {61, 3000, 12000});
  }
}

TEST_P(TwinOfRows, ScoresAreTheSameWhenMoreTrigramsComeThanThereIsRoomFor) {
  std::mt19937 random(10);
  PlainOptions o;
  o.alphabet.clear();
  for (int c = 0; c < 110; ++c) o.alphabet += static_cast<char>(0x21 + c);
  o.density = 0.005;
  o.nb_models = 150;
  o.nb_sets = 30;
  o.built = true;
  o.odd_leaves = true;
  const PlainGroup plain = orva::random_group(&random, o);
  expect_same_for(plain, orva::random_text(&random, o, 150000), {9999, 40000});
}

TEST_P(TwinOfRows, ScoresAreTheSameWhenMoreLeavesComeThanThereAreNumbers) {
  std::mt19937 random(12);
  PlainOptions o;
  o.alphabet.clear();
  for (int c = 0; c < 42; ++c) o.alphabet += static_cast<char>(0x40 + c);
  o.density = 1;
  o.nb_models = 3;
  o.nb_sets = 0;
  o.built = true;
  const PlainGroup plain = orva::random_group(&random, o);
  expect_same_for(plain, orva::random_text(&random, o, 300000), {10000, 100000});
}

// Two hundred thousand occurrences of one trigram are more than vectors of 16 bits can count.
TEST_P(TwinOfRows, ScoresAreTheSameForOneTrigramOverAndOver) {
  std::mt19937 random(11);
  PlainOptions o;
  o.alphabet = "a";
  o.density = 1;
  o.nb_models = 199;
  o.built = true;
  expect_same_for(orva::random_group(&random, o), std::string(200000, 'a'), {200000, 70000});
}

INSTANTIATE_TEST_SUITE_P(PlainAndBest, TwinOfRows, ::testing::Bool(),
                         [](const ::testing::TestParamInfo<bool>& p) {
                           return std::string(p.param ? "Plain" : "Best");
                         });
