#include <gtest/gtest.h>

#include "lib/build/lid_mg_build_data.h"
#include "lib/util/accounting.h"
#include "tests/build/build_fixture.h"
#include "tests/support/streams.h"

namespace {

using orva::ModelFiles;
using orva::Values;
using orva::values_of;

int get_data(CLidMGBuildData& bd, ModelFiles& files) {
  const CLidMGFact fact(files.sets.data(), files.nb());
  return bd.get_model_data(files.paths().data(), files.nb(), &fact);
}

int nb_unigrams(const CLidMGBuildData& bd) {
  int nb = 0;
  for (unsigned c = 0; c < 256; ++c) nb += bd.uch_words[c].nb;
  return nb;
}

}  // namespace

TEST(BuildData, PairArraysGrowByFour) {
  CLidMGBuildData bd;
  const int before = _MallocChkNbBytes;
  int nb = bd.table_insert(bd.words, 0, 0, 3, 1.5f);
  EXPECT_EQ(nb, 1);
  EXPECT_EQ(bd.words[0].cap, 4);
  for (int m = 0; m < 4; ++m) nb = bd.table_insert(bd.words, nb, 0, m, 1.0f);
  EXPECT_EQ(nb, 1);
  EXPECT_EQ(bd.words[0].nb, 5);
  EXPECT_EQ(bd.words[0].cap, 8);
  EXPECT_EQ(bd.words[0].vals[0].model, 3);
  // One page table, a page of one record of the 32-bit platform, and eight pairs.
  EXPECT_EQ(_MallocChkNbBytes - before, 4 + 16 + 8 * 8);
  bd.table_clean(bd.words, 1);
  EXPECT_EQ(_MallocChkNbBytes - before, 4 + 16);
}

TEST(BuildData, EveryTrigramOfAnyModelIsAWord) {
  ModelFiles files;
  files.add("enA", {{"abc", 1.0f}, {"abd", 40.0f}});
  files.add("frA", {{"abc", 2.0f}, {"xyz", 3.0f}});
  CLidMGBuildData bd;
  ASSERT_EQ(get_data(bd, files), kBuildOk);
  EXPECT_EQ(bd.nb_words, 3);
  EXPECT_EQ(bd.nb_word_vals, 4);
  EXPECT_EQ(bd.models[0].tri_lpmin, 1.0f);
  EXPECT_EQ(bd.models[0].tri_lpmax, 40.0f);
  EXPECT_EQ(bd.models[0].tri_grad, 40.0f / 256);
  EXPECT_EQ(bd.models[0].tri_normlp, 1.0f + 30.0f * 2.0f);
  EXPECT_EQ(bd.models[0].uch_normlp, 2.0f);
}

TEST(BuildData, ByteCostsNearTheUnseenOrNegativeAreNotStored) {
  ModelFiles files;
  files.add("enA", {{"abc", 1.0f}},
            {{'a', 29.98f}, {'b', 29.995f}, {'c', 30.0f}, {'d', -0.5f}, {'e', 35.0f}, {'f', 0.0f}});
  CLidMGBuildData bd;
  ASSERT_EQ(get_data(bd, files), kBuildOk);
  EXPECT_EQ(nb_unigrams(bd), 2);
  EXPECT_EQ(bd.uch_words['a'].nb, 1);
  EXPECT_EQ(bd.uch_words['f'].nb, 1);
  EXPECT_EQ(bd.models[0].uch_lpmin, 0.0f);
  EXPECT_EQ(bd.models[0].uch_lpmax, 29.98f);
}

TEST(BuildData, OtherFlagsAreMinusTwoAndAMissingModelMinusOne) {
  ModelFiles files;
  files.add("enA", {{"abc", 1.0f}});
  files.add("frA", {{"abc", 1.0f}}, {{'a', 1.0f}}, "DC  ");
  CLidMGBuildData bd;
  EXPECT_EQ(get_data(bd, files), kBuildOtherFlags);

  ModelFiles broken;
  broken.add_text("enA", "V24a\n");
  EXPECT_EQ(get_data(bd, broken), kBuildFailed);
}

TEST(BuildData, UsedObjectStartsAfresh) {
  ModelFiles first;
  first.add("enA", {{"abc", 1.0f}, {"xyz", 2.0f}});
  ModelFiles second;
  second.add("frA", {{"xyz", 5.0f}});
  CLidMGBuildData bd;
  ASSERT_EQ(get_data(bd, first), kBuildOk);
  ASSERT_EQ(get_data(bd, second), kBuildOk);
  EXPECT_EQ(bd.nb_words, 1);
  EXPECT_EQ(bd.words[0].vals[0].model, 0);
  EXPECT_EQ(bd.models[0].tri_lpmin, 5.0f);
}

TEST(BuildData, KeyIsItsLongestHexadecimalBeginning) {
  ModelFiles files;
  files.add_text("enA", orva::model_text({}) + "1\t61626g\n2\tABCDEF\n3\t1616263\n4\tzz\n");
  CLidMGroup group;
  ASSERT_EQ(files.build(group), 0);
  EXPECT_EQ(values_of(group, std::string("\x06\x16\x26", 3)).size(), 1u);
  EXPECT_EQ(values_of(group, "\xab\xcd\xef").size(), 1u);
  EXPECT_EQ(values_of(group, "abc").size(), 1u);  // the low 24 bits of seven digits
  EXPECT_EQ(values_of(group, std::string(3, '\0')).size(), 1u);
}

TEST(BuildData, RepeatedKeysKeepTheirShiftedCosts) {
  ModelFiles files;
  files.add("enA", {{"aaa", 1.0f}, {"aaa", 2.0f}, {"bbb", 3.0f}});
  CLidMGBuildData bd;
  ASSERT_EQ(get_data(bd, files), kBuildOk);
  EXPECT_EQ(bd.nb_words, 2);
  EXPECT_EQ(bd.models[0].tri_lpmax, 2.0f);
}

TEST(Quantisation, CodesAreRoundedStepsAboveTheSmallestCost) {
  ModelFiles files;
  files.add("enA", {{"aaa", 0.0f}, {"aab", 7.0f}, {"aac", 3.5f}, {"aad", 0.015f}, {"aae", 0.017f}});
  CLidMGroup group;
  ASSERT_EQ(files.build(group), 0);
  // 256 codes for a range of 8: a step is 1/32.
  EXPECT_EQ(values_of(group, "aaa"), (Values{{0, 0}}));
  EXPECT_EQ(values_of(group, "aab"), (Values{{0, 224}}));
  EXPECT_EQ(values_of(group, "aac"), (Values{{0, 112}}));
  EXPECT_EQ(values_of(group, "aad"), (Values{{0, 0}}));
  EXPECT_EQ(values_of(group, "aae"), (Values{{0, 1}}));
}

TEST(Quantisation, CostsOverARangeOf511WrapToZero) {
  ModelFiles files;
  files.add("enA", {{"aaa", 0.0f}, {"aab", 511.0f}, {"aac", 255.0f}});
  files.add("frA", {{"aaa", 0.0f}, {"aab", 500.0f}});
  CLidMGroup group;
  ASSERT_EQ(files.build(group), 0);
  EXPECT_EQ(values_of(group, "aab"), (Values{{0, 0}, {1, 255}}));
}

TEST(Factorisation, EqualCodesOfAWholeSetBecomeOnePair) {
  ModelFiles files;
  files.add("enA", {{"aaa", 0.0f}, {"aab", 7.0f}});
  files.add("deA", {{"aaa", 1.0f}, {"aab", 2.0f}});
  files.add("enB", {{"aaa", 0.0f}, {"aab", 7.0f}});
  files.sets = {0, -1, 0};
  CLidMGroup group;
  ASSERT_EQ(files.build(group), 0);
  EXPECT_EQ(values_of(group, "aaa"), (Values{{1, 0}, {3, 0}}));
  EXPECT_EQ(values_of(group, "aab"), (Values{{1, 128}, {3, 224}}));
  EXPECT_EQ(group.models_part.nb_facts, 1);
  EXPECT_EQ(group.models_part.models[0].fact_no, 3);
  EXPECT_EQ(group.models_part.models[1].fact_no, -1);
}

TEST(Factorisation, OtherCodeOrMissingModelKeepsThePairs) {
  ModelFiles files;
  files.add("enA", {{"aaa", 0.0f}, {"aab", 7.0f}, {"aac", 1.0f}});
  files.add("enB", {{"aaa", 0.0f}, {"aab", 7.0f}, {"aac", 2.0f}, {"aad", 3.0f}});
  files.sets = {0, 0};
  CLidMGroup group;
  ASSERT_EQ(files.build(group), 0);
  EXPECT_EQ(values_of(group, "aaa"), (Values{{2, 0}}));
  EXPECT_EQ(values_of(group, "aac"), (Values{{0, 32}, {1, 64}}));
  EXPECT_EQ(values_of(group, "aad"), (Values{{1, 96}}));
}

TEST(Factorisation, SetOfOneModelIsSharedAndSavesNothing) {
  ModelFiles files;
  files.add("enA", {{"aaa", 0.0f}});
  files.add("frA", {{"aaa", 0.0f}});
  files.sets = {-1, 0};
  CLidMGroup group;
  group.verbose = 1;
  orva::stdout_of([&] {
    const std::string said = orva::stderr_of([&] { ASSERT_EQ(files.build(group), 0); });
    EXPECT_NE(said.find("  F  0 :  Factd    1  (sauve 0)\n"), std::string::npos) << said;
  });
  EXPECT_EQ(values_of(group, "aaa"), (Values{{0, 0}, {2, 0}}));
}

TEST(Factorisation, GapInTheSetNumbersIsAnEmptySet) {
  ModelFiles files;
  files.add("enA", {{"aaa", 0.0f}});
  files.add("frA", {{"aaa", 0.0f}});
  files.sets = {0, 2};
  CLidMGroup group;
  ASSERT_EQ(files.build(group), 0);
  EXPECT_EQ(group.models_part.nb_facts, 3);
  EXPECT_EQ(values_of(group, "aaa"), (Values{{2, 0}, {4, 0}}));
}

TEST(Factorisation, VerboseBuildTellsItsProgress) {
  ModelFiles files;
  files.add("enA", {{"aaa", 0.0f}, {"aab", 7.0f}}, {{'a', 2.0f}, {'b', 3.0f}});
  files.add("enB", {{"aaa", 0.0f}, {"aab", 7.0f}}, {{'a', 2.0f}, {'b', 3.0f}});
  files.add("frA", {{"aaa", 1.0f}}, {{'a', 2.0f}});
  files.sets = {0, 0, -1};
  CLidMGroup group;
  group.verbose = 1;
  std::string err;
  const std::string out =
      orva::stdout_of([&] { err = orva::stderr_of([&] { ASSERT_EQ(files.build(group), 0); }); });
  const std::vector<char*> paths = files.paths();
  const std::string sets = "FactVals:\n  F  0 :  Factd    2  (sauve 2)\nFactOK.\n";
  const std::string facts = "\nFactorisation: Init 5  Fact 3  (60.00 %)\n" + sets;
  EXPECT_EQ(out, "RmDups 1, RmCaps 1, RmDgts 1  RmBlks 0\nUchMG: \nNbFact     3 * 2 =      6\n");
  EXPECT_EQ(err, "[ 0] F  0  " + std::string(paths[0]) + "\n[ 1] F  0  " + paths[1] +
                     "\n[ 2]       " + paths[2] + "\n" + facts + facts);
}

TEST(Build, SilentUnlessVerbose) {
  ModelFiles files;
  files.add("enA", {{"aaa", 0.0f}});
  CLidMGroup group;
  std::string err;
  EXPECT_EQ(orva::stdout_of([&] { err = orva::stderr_of([&] { files.build(group); }); }), "");
  EXPECT_EQ(err, "");
}
