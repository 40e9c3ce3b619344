// Scores of random groups, compared bit for bit with those of the naive twin.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "lib/eval/dense_rows.h"
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

  bool has_unigram_rows() const { return eval_->has_unigram_rows(); }
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

// Leaves that most of many models know are credited by vectors.
class TwinOfRows : public ::testing::TestWithParam<bool> {};

TEST_P(TwinOfRows, ScoresAreTheSameWhateverTheVectors) {
  std::mt19937 random(7);
  for (int round = 0; round < 12; ++round) {
    PlainOptions o;
    o.nb_models = 100 + 9 * round;
    o.nb_sets = round % 2 == 0 ? 0 : 4 * round;
    o.alphabet = round % 3 == 0 ? "ab" : "abcd";
    o.density = 0.9;
    o.built = round % 4 != 3;
    o.long_leaves = !o.built;
    const PlainGroup plain = orva::random_group(&random, o);
    Pair pair(&plain);
    ASSERT_EQ(pair.refusal(), "");
    if (GetParam()) pair.use_plain_vectors();
    // With two letters, trigrams come thousands of times in a run.
    const std::string text = orva::random_text(&random, o, 12000);
    for (const size_t piece : {61, 3000, 12000}) expect_same_in_pieces(&pair, text, piece);
    EXPECT_TRUE(pair.has_unigram_rows() || !o.built);
  }
}

INSTANTIATE_TEST_SUITE_P(PlainAndBest, TwinOfRows, ::testing::Bool(),
                         [](const ::testing::TestParamInfo<bool>& p) {
                           return std::string(p.param ? "Plain" : "Best");
                         });

// What the rows above are made of, and what gets none.
TEST(DenseRows, LeavesWithManyValuesHaveRows) {
  std::mt19937 random(8);
  PlainOptions o;
  o.nb_models = 199;
  o.nb_sets = 40;
  o.density = 0.9;
  o.built = true;
  const PlainGroup plain = orva::random_group(&random, o);
  CLidMGroup group;
  ASSERT_EQ(orva::load_bytes(&group, orva::file_of(plain)), kGroupOk);
  orva::DenseRows rows;
  rows.build(group);
  int nb_rows = 0;
  for (int leaf = 0; leaf < group.lstates_tsize; ++leaf) {
    const uint32_t word = group.lstates[leaf];
    const uint32_t number = rows.number_of(static_cast<size_t>(leaf));
    if (number == 0) continue;
    ++nb_rows;
    const orva::DenseRows::Row row = rows.row(number);
    const uint16_t* values = group.lstates_vals + orva::leaf_first(word);
    for (int v = 0; v < orva::leaf_count(word); ++v) {
      const int lane = rows.lane_of(orva::value_index(values[v]));
      EXPECT_EQ(row.values[lane], 0x1000 | orva::value_cost(values[v]));
      EXPECT_TRUE(!row.is_short || lane < static_cast<int>(orva::kShortLanes));
    }
  }
  EXPECT_GT(nb_rows, 10);
}

TEST(DenseRows, AllAddersAgree) {
  std::mt19937 random(9);
  std::vector<uint16_t> values(orva::kLanes * 40);
  for (uint16_t& value : values) {
    // The largest cost is in many of them.
    const auto drawn = static_cast<uint32_t>(random());
    value =
        static_cast<uint16_t>(drawn % 3 == 0 ? 0 : 0x1000 | (drawn % 2 == 0 ? 255 : drawn >> 24));
  }
  orva::RowBatch batch;
  while (!batch.is_full()) {
    const size_t row = random() % 40;
    batch.add(values.data() + row * orva::kLanes, static_cast<uint32_t>(1 + random() % 20));
  }
  using Add = void (*)(const orva::RowBatch&, uint32_t*, orva::DenseSums*);
  const auto added = [&batch](Add add) {
    std::vector<uint32_t> credited(orva::kLanes, 1);
    orva::DenseSums sums;
    add(batch, credited.data(), &sums);
    credited.insert(credited.end(), sums.counts, sums.counts + orva::kLanes);
    credited.insert(credited.end(), sums.sums, sums.sums + orva::kLanes);
    return credited;
  };
  std::vector<uint32_t> expected(3 * orva::kLanes, 0);
  for (size_t j = 0; j < batch.nb_rows; ++j) {
    for (size_t k = 0; k < orva::kLanes; ++k) {
      const uint16_t lane = batch.rows[j][k];
      expected[orva::kLanes + k] += lane == 0 ? 0U : batch.times[j];
      expected[2 * orva::kLanes + k] += static_cast<uint32_t>(lane & 0xFFF) * batch.times[j];
    }
  }
  for (size_t k = 0; k < orva::kLanes; ++k) expected[k] = 1 + expected[orva::kLanes + k];
  EXPECT_EQ(added(orva::plain_row_adders().add_long), expected);
  EXPECT_EQ(added(orva::best_row_adders().add_long), expected);
  const auto short_plain = added(orva::plain_row_adders().add_short);
  EXPECT_EQ(added(orva::best_row_adders().add_short), short_plain);
  for (size_t k = 0; k < orva::kShortLanes; ++k) EXPECT_EQ(short_plain[k], expected[k]);
  for (size_t k = orva::kShortLanes; k < orva::kLanes; ++k) EXPECT_EQ(short_plain[k], 1U);
}
