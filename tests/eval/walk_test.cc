// Walk and scores on the tiny group, computed by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <string_view>

#include "lib/eval/lid_mgroup_eval.h"
#include "lib/util/accounting.h"
#include "tests/mgroup/group_files.h"
#include "tests/reference/tiny_group.h"

using orva::TinyGroup;

namespace {

// The tiny group, or a variant, and an evaluator over it.
class Fed {
 public:
  explicit Fed(const std::string& bytes = TinyGroup().bytes())
      : loaded_(orva::load_bytes(&group, bytes)), eval(&group) {
    EXPECT_EQ(loaded_, kGroupOk);
  }
  void feed(std::string_view text) {
    eval.auto_nexts(reinterpret_cast<const unsigned char*>(text.data()),
                    static_cast<int>(text.size()));
  }
  void start(std::string_view text) {
    EXPECT_EQ(eval.init(), 0);
    eval.auto_init(static_cast<unsigned char>(text[0]), static_cast<unsigned char>(text[1]));
    feed(text.substr(2));
  }

  CLidMGroup group;

 private:
  int loaded_;

 public:
  CLidMGroupEval eval;
};

// The unigram table as its users see it.
class Unigrams : public CLidMGEvUlpAcs {
 public:
  using CLidMGEvUlpAcs::byte_count;
  using CLidMGEvUlpAcs::byte_first;
  using CLidMGEvUlpAcs::CLidMGEvUlpAcs;
};

}  // namespace

TEST(Walk, ATrigramIsCreditedToItsModelAndToTheModelsOfItsSet) {
  Fed fed;
  fed.start("aba");
  const float* const scores = fed.eval.get_lprobs();
  EXPECT_EQ(scores[0], 3.0F);  // 10 x 0.25 + 0.5
  EXPECT_EQ(scores[1], 3.5F);  // 5 x 0.5 + 1.0
  EXPECT_EQ(scores[2], 5.0F);  // 5 x 1.0 + 0.0
  EXPECT_EQ(fed.eval.total(), 1);
  EXPECT_EQ(fed.eval.value_total(), 2);
}

TEST(Walk, AByteWithoutTrigramCostsItsUnigramOrThirty) {
  Fed fed;
  fed.start("abab");
  const float* const scores = fed.eval.get_lprobs();
  EXPECT_EQ(scores[0], 16.5F);  // (3.0 + 30.0) / 2
  EXPECT_EQ(scores[1], 3.75F);  // (3.5 + 12 x 0.25 + 1.0) / 2
  EXPECT_EQ(scores[2], 6.0F);   // (5.0 + 7.0) / 2
}

TEST(Walk, CoverageBySetAndModelIsTakenOffAModelsUnigram) {
  // "bab" credits the set instead of model 2.
  Fed fed(TinyGroup().with_byte("lstates_vals", 3, 4));
  fed.start("bab");
  const float* const scores = fed.eval.get_lprobs();
  EXPECT_EQ(scores[0], 30.0F);
  EXPECT_EQ(scores[1], 4.5F);  // 7 x 0.5 + 1.0, without the unigram
  EXPECT_EQ(scores[2], 7.0F);
}

TEST(Walk, UnknownBytesCostThirtyForEveryModel) {
  Fed fed;
  fed.start("xyzzy");
  for (int m = 0; m < 3; ++m) EXPECT_EQ(fed.eval.get_lprobs()[m], 30.0F);
}

TEST(Walk, TheFirstTwoBytesAreNotScored) {
  Fed fed;
  fed.start("ab");
  EXPECT_EQ(fed.eval.total(), 0);
  EXPECT_FALSE(std::isfinite(fed.eval.get_lprobs()[0]));
  fed.start("zz");
  fed.feed("a");
  EXPECT_EQ(fed.eval.get_lprobs()[0], 12.0F);  // 20 x 0.5 + 2.0
}

TEST(Walk, TheWalkTakesUpTheLastByteWhereATrigramIsUnknown) {
  Fed fed;
  fed.start("abbab");  // the second "b" begins anew
  EXPECT_EQ(fed.eval.value_total(), 1);
  fed.start("abxbab");
  EXPECT_EQ(fed.eval.value_total(), 1);
}

TEST(Walk, TheWalkGoesOnFromTheLastTwoBytesOfALeaf) {
  Fed fed;
  fed.start("ababab");
  EXPECT_EQ(fed.eval.value_total(), 2 + 1 + 2 + 1);
}

TEST(Walk, SumsCarryOnAfterScoresWereRead) {
  Fed once;
  once.start("abab");
  Fed twice;
  twice.start("aba");
  twice.eval.get_lprobs();
  twice.feed("b");
  for (int m = 0; m < 3; ++m) EXPECT_EQ(twice.eval.get_lprobs()[m], once.eval.get_lprobs()[m]);
}

TEST(Walk, ANewTextForgetsTheFormer) {
  Fed fed;
  fed.start("ababxyz");
  fed.start("aba");
  EXPECT_EQ(fed.eval.get_lprobs()[1], 3.5F);
  EXPECT_EQ(fed.eval.value_total(), 2);
}

TEST(Walk, ALeafOfOneHundredTwentyEightValuesCreditsNone) {
  Fed fed(TinyGroup().with_byte("lstates", 128, 3));
  fed.start("aba");
  EXPECT_EQ(fed.eval.value_total(), 0);
  EXPECT_EQ(fed.eval.get_lprobs()[0], 12.0F);
}

TEST(Walk, TwoEvaluatorsOverOneGroupShareOnePosition) {
  Fed fed;
  CLidMGroupEval other(&fed.group);
  fed.start("ab");
  other.auto_init('b', 'a');
  fed.feed("b");
  EXPECT_EQ(fed.eval.value_total(), 1);
}

TEST(Walk, FeedingNothingChangesNothing) {
  Fed fed;
  fed.start("aba");
  fed.feed("");
  EXPECT_EQ(fed.eval.total(), 1);
  EXPECT_EQ(fed.eval.get_lprobs()[0], 3.0F);
}

TEST(Walk, AnEvaluatorReleasesAllThatItAccounted) {
  CLidMGroup group;
  ASSERT_EQ(orva::load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  const int before = _MallocChkNbBytes;
  {
    CLidMGroupEval eval(&group);
    // Four indices with nine words and a row of 256 words each, four unigram entries, and the
    // language codes of three models.
    EXPECT_EQ(_MallocChkNbBytes - before, 4 * (9 * 4 + 1024) + 4 * 4 + 3 * 3);
  }
  EXPECT_EQ(_MallocChkNbBytes, before);
}

TEST(UnigramEntries, APairOfASetIsOneEntryForEachOfItsModels) {
  CLidMGroup group;
  ASSERT_EQ(orva::load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  const Unigrams unigrams(&group);
  ASSERT_EQ(unigrams.byte_count('a'), 3);
  const UlpEntry* const entries = unigrams.byte_first('a');
  EXPECT_EQ(entries[0].model, 0);
  EXPECT_EQ(entries[0].q, 20);
  EXPECT_EQ(entries[0].group, 0);
  EXPECT_EQ(entries[1].model, 1);
  EXPECT_EQ(entries[1].q, 8);
  EXPECT_EQ(entries[1].group, 3);
  EXPECT_EQ(entries[2].model, 2);
  EXPECT_EQ(entries[2].group, 3);
}

TEST(UnigramEntries, AModelsOwnPairNamesItsSet) {
  CLidMGroup group;
  ASSERT_EQ(orva::load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  const Unigrams unigrams(&group);
  ASSERT_EQ(unigrams.byte_count('b'), 1);
  EXPECT_EQ(unigrams.byte_first('b')[0].model, 1);
  EXPECT_EQ(unigrams.byte_first('b')[0].group, 3);
  EXPECT_EQ(unigrams.byte_first('b'), unigrams.byte_first('a') + 3);
}

TEST(UnigramEntries, OtherBytesHaveNone) {
  CLidMGroup group;
  ASSERT_EQ(orva::load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  const Unigrams unigrams(&group);
  EXPECT_EQ(unigrams.byte_count('c'), 0);
  EXPECT_EQ(unigrams.byte_count(0), 0);
  EXPECT_EQ(unigrams.byte_count(255), 0);
}
