#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lib/eval/lid_mg_lang.h"
#include "lib/util/accounting.h"

namespace {

std::vector<int> members(const CLidMGGrouping& grouping, int g) {
  return {grouping.member_lists[g], grouping.member_lists[g] + grouping.member_counts[g]};
}

const char* const kNames[] = {"frISO-8859-1", "enISO-8859-1", "frUTF-8", "deUTF-8", "enUTF-8"};

}  // namespace

TEST(Languages, ModelsWithOnePrefixAreOfOneLanguage) {
  const CLidMGLang lang(kNames, 5, 2);
  EXPECT_EQ(lang.ready, 1);
  EXPECT_EQ(lang.nb_models, 5);
  EXPECT_EQ(lang.key_length, 2);
  ASSERT_EQ(lang.nb_groups, 3);
  EXPECT_STREQ(lang.labels[0], "fr");
  EXPECT_STREQ(lang.labels[1], "en");
  EXPECT_STREQ(lang.labels[2], "de");
  EXPECT_EQ(members(lang, 0), (std::vector<int>{0, 2}));
  EXPECT_EQ(members(lang, 1), (std::vector<int>{1, 4}));
  EXPECT_EQ(members(lang, 2), (std::vector<int>{3}));
  EXPECT_EQ(lang.model_group[4], 1);
}

TEST(Languages, RunsOfMembersLieOneBehindTheOther) {
  const CLidMGLang lang(kNames, 5, 2);
  EXPECT_EQ(lang.member_lists[0], lang.members);
  EXPECT_EQ(lang.member_lists[1], lang.members + 2);
  EXPECT_EQ(lang.member_lists[2], lang.members + 4);
}

TEST(Languages, ANameShorterThanTheCodeIsTakenWhole) {
  const char* const names[] = {"f", "fr", "f"};
  const CLidMGLang lang(names, 3, 2);
  ASSERT_EQ(lang.nb_groups, 2);
  EXPECT_STREQ(lang.labels[0], "f");
  EXPECT_EQ(members(lang, 0), (std::vector<int>{0, 2}));
}

TEST(Languages, NoModelsAreNotReady) {
  const CLidMGLang lang(nullptr, 0, 2);
  EXPECT_EQ(lang.ready, 0);
  EXPECT_EQ(lang.nb_groups, 0);
}

TEST(Languages, MoreThanTwoHundredFiftySixModelsAreNotReady) {
  const std::vector<const char*> names(257, "frX");
  const CLidMGLang lang(names.data(), 257, 2);
  EXPECT_EQ(lang.ready, 0);
  const CLidMGChrset chrset(names.data(), 257, 2);
  EXPECT_EQ(chrset.ready, 0);
  const CLidMGLang most(names.data(), 256, 2);
  EXPECT_EQ(most.ready, 1);
  EXPECT_EQ(most.member_counts[0], 256);
}

TEST(Languages, LabelsAreAccountedUntilTheirRelease) {
  const int before = _MallocChkNbBytes;
  {
    const CLidMGLang lang(kNames, 5, 2);
    EXPECT_EQ(_MallocChkNbBytes - before, 5 * 3);
    const CLidMGChrset chrset(kNames, 5, 2);
    EXPECT_EQ(_MallocChkNbBytes - before, 5 * 3 + 5 * 20);
  }
  EXPECT_EQ(_MallocChkNbBytes, before);
}

TEST(Charsets, ModelsWithOneEndAreOfOneCharset) {
  const CLidMGChrset chrset(kNames, 5, 2);
  EXPECT_EQ(chrset.ready, 1);
  ASSERT_EQ(chrset.nb_groups, 2);
  EXPECT_STREQ(chrset.labels[0], "ISO-8859-1");
  EXPECT_STREQ(chrset.labels[1], "UTF-8");
  EXPECT_EQ(members(chrset, 0), (std::vector<int>{0, 1}));
  EXPECT_EQ(members(chrset, 1), (std::vector<int>{2, 3, 4}));
}

TEST(Charsets, KeysAreCutToNineteenCharacters) {
  const char* const names[] = {"fr1234567890123456789", "fr1234567890123456789AB",
                               "fr123456789012345678"};
  const CLidMGChrset chrset(names, 3, 2);
  ASSERT_EQ(chrset.nb_groups, 2);
  EXPECT_STREQ(chrset.labels[0], "1234567890123456789");
  EXPECT_EQ(members(chrset, 0), (std::vector<int>{0, 1}));
  EXPECT_STREQ(chrset.labels[1], "123456789012345678");
}

TEST(Charsets, AStartBeyondTheNameIsAnEmptyKey) {
  const char* const names[] = {"fr", "frX", "f"};
  const CLidMGChrset chrset(names, 3, 2);
  ASSERT_EQ(chrset.nb_groups, 2);
  EXPECT_STREQ(chrset.labels[0], "");
  EXPECT_EQ(members(chrset, 0), (std::vector<int>{0, 2}));
}
