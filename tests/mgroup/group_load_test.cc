// Reading a group: what is found in the tiny group, the header's results, hostile bodies.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "lib/mgroup/lid_mgroup.h"
#include "tests/mgroup/group_files.h"
#include "tests/reference/tiny_group.h"
#include "tests/support/temp_dir.h"

using orva::load_bytes;
using orva::load_result;
using orva::TinyGroup;

namespace {

constexpr char kVersionLine[] = "Package Lid -- Modele Tricar Version 2.25a (20 oct 1998)\n";
constexpr char kPlatformLine[] = "Plateforme  LINUX\n";

// The tiny group's body behind another header.
std::string behind(const std::string& header) {
  const TinyGroup tiny;
  return header + tiny.bytes().substr(sizeof kVersionLine + sizeof kPlatformLine - 2);
}

std::string reason(const std::string& bytes) {
  CLidMGroup group;
  std::string why;
  EXPECT_EQ(load_bytes(&group, bytes, &why), kGroupBadFormat);
  return why;
}

}  // namespace

TEST(GroupLoad, TheTinyGroupIsReadFieldByField) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  EXPECT_EQ(group.nb_models, 3);
  EXPECT_EQ(group.nb_istates, 5);
  EXPECT_EQ(group.min_for_direct, 256);
  EXPECT_EQ(group.istates_tsize, 6);
  EXPECT_EQ(group.istates_chrs_tsize, 5);
  EXPECT_EQ(group.istates_dnxts_tsize, 256);
  EXPECT_EQ(group.lstates_tsize, 2);
  EXPECT_EQ(group.lstates_vals_tsize, 3);
  EXPECT_EQ(group.def_so_tsize, 2);
  EXPECT_EQ(group.lstates[0], 0x02000000U);
  EXPECT_EQ(group.lstates_vals[1], 0x0503);
  EXPECT_EQ(group.def_so[0], 4);
  EXPECT_EQ(group.istates_dnxts[97], 4);
  EXPECT_EQ(group.allocated, 1);
}

TEST(GroupLoad, ModelsHaveTheirParametersAndNames) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  const CmgModels& part = group.models_part;
  EXPECT_EQ(part.nb_models, 3);
  EXPECT_EQ(part.nb_facts, 1);
  EXPECT_EQ(part.rm_tridups, 1);
  EXPECT_EQ(part.rm_caps, 1);
  EXPECT_EQ(part.rm_digits, 1);
  EXPECT_EQ(part.rm_blks, 0);
  EXPECT_STREQ(part.models[1].name, "enA");
  EXPECT_EQ(part.models[1].normlp, 2.0F);
  EXPECT_EQ(part.models[1].lpmin, 1.0F);
  EXPECT_EQ(part.models[1].grad, 0.5F);
  EXPECT_EQ(part.models[1].fact_no, 3);
  EXPECT_EQ(part.models[0].fact_no, -1);
}

TEST(GroupLoad, TheUnigramPartHasItsPairs) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  const CUniChrMG& part = group.unigram_part;
  EXPECT_EQ(part.nb_models, 3);
  EXPECT_EQ(part.nb_facts, 1);
  EXPECT_EQ(part.uch_lps_buff_tsize, 3);
  EXPECT_EQ(part.models_lpmin[0], 2.0F);
  EXPECT_EQ(part.models_grad[1], 0.25F);
  EXPECT_EQ(part.uch_lps_buff[1].index, 3);
  EXPECT_EQ(part.uch_lps_buff[1].q, 8);
  EXPECT_EQ(part.uch_lps['a'], 0x00800000U);
  EXPECT_EQ(part.uch_lps['b'], 0x00400002U);
  EXPECT_EQ(part.uch_lps[255], 3U);
}

TEST(GroupLoad, ReferencesAreAddressesInTheirArrays) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  EXPECT_EQ(group.istates[0].ref.chrs, group.istates_chrs);
  EXPECT_EQ(group.istates[4].ref.chrs, group.istates_chrs + 4);
  EXPECT_EQ(group.istates[2].ref.dnxts, group.istates_dnxts);
}

TEST(GroupLoad, ARecordThatIsNotInUseStaysAsStored) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  EXPECT_EQ(group.istates[5].ref.unused, 0xdeadbeefU);
  EXPECT_EQ(group.istates[5].info, 0x12345678U);
}

TEST(GroupLoad, TheFactTableIsMadeFromTheModels) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  ASSERT_NE(group.fact_table, nullptr);
  EXPECT_EQ(group.fact_table->nb_facts, 1);
  EXPECT_EQ(group.fact_table->fact_of_model[0], -1);
  EXPECT_EQ(group.fact_table->set_size[0], 2);
  EXPECT_EQ(group.fact_table->set_first[0][0], 1);
  EXPECT_EQ(group.fact_table->set_first[0][1], 2);
}

TEST(GroupLoad, BytesBehindTheBodyAreAccepted) {
  EXPECT_EQ(load_result(TinyGroup().bytes() + "more"), kGroupOk);
}

TEST(GroupLoad, SwitchesMayHoldAnyWordButMinusOne) {
  EXPECT_EQ(load_result(TinyGroup().with_word("rm_caps", 77)), kGroupOk);
  EXPECT_EQ(load_result(TinyGroup().with_word("rm_caps", -2)), kGroupOk);
  EXPECT_EQ(load_result(TinyGroup().with_word("min_for_direct", 0)), kGroupOk);
}

TEST(GroupLoad, AStoredMinusOneIsTakenForTheEndOfTheFile) {
  for (const char* field :
       {"nb_models", "nb_istates", "min_for_direct", "istates_tsize", "istates_chrs_tsize",
        "istates_dnxts_tsize", "lstates_tsize", "lstates_vals_tsize", "def_so_tsize", "nb_facts",
        "rm_tridups", "rm_caps", "rm_digits", "rm_blks", "name 0 length", "unigram nb_models",
        "unigram nb_facts", "uch_lps_buff_tsize"}) {
    EXPECT_EQ(load_result(TinyGroup().with_word(field, -1)), kGroupBadFormat) << field;
  }
}

TEST(GroupLoad, AGroupIsReadAgainOverAnother) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  ASSERT_EQ(load_bytes(&group, TinyGroup().with_byte("name 1", 'x')), kGroupOk);
  EXPECT_STREQ(group.models_part.models[1].name, "xnA");
}

TEST(GroupLoad, AFailureLeavesTheGroupFitForAnother) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes().substr(0, 1500)), kGroupBadFormat);
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  EXPECT_EQ(orva::saved_bytes(group), TinyGroup().bytes());
}

TEST(GroupHeader, EachRefusalHasItsResultInTheOrderOfTheChecks) {
  const std::string version = kVersionLine;
  const std::string platform = kPlatformLine;
  const struct {
    const char* what;
    std::string header;
    int result;
  } cases[] = {
      {"as it should be", version + platform, kGroupOk},
      {"nothing at all", "", kGroupBadFormat},
      {"an empty first line", "\n" + platform, kGroupBadFormat},
      {"a first line of NUL", std::string("\0\n", 2) + platform, kGroupBadFormat},
      {"another package", "Package Lie -- Modele Tricar Version 2.25a (20 oct 1998)\n" + platform,
       kGroupBadFormat},
      {"the last character of the package", "Package Lid -- Modele TricaR V\n" + platform,
       kGroupBadFormat},
      {"a shortened package", "Package Lid -- Modele Trica\n" + platform, kGroupBadFormat},
      {"another version", "Package Lid -- Modele Tricar Version 2.26a (20 oct 1998)\n" + platform,
       kGroupOtherVersion},
      {"no version", "Package Lid -- Modele Tricar\n" + platform, kGroupOtherVersion},
      {"more than the version", "Package Lid -- Modele Tricar Version 2.25a (20 oct 1998) \n",
       kGroupOtherVersion},
      {"a carriage return", version.substr(0, version.size() - 1) + "\r\n", kGroupOtherVersion},
      {"another version and platform", "Package Lid -- Modele Tricar Version 1\nPlateforme  X\n",
       kGroupOtherVersion},
      {"another platform", version + "Plateforme  SUN\n", kGroupOtherPlatform},
      {"one blank in the platform", version + "Plateforme LINUX\n", kGroupOtherPlatform},
      {"an empty platform", version + "\n", kGroupOtherPlatform},
      {"a platform of NUL", version + std::string("\0\n", 2), kGroupOtherPlatform},
  };
  for (const auto& c : cases) EXPECT_EQ(load_result(behind(c.header)), c.result) << c.what;
}

TEST(GroupHeader, WithoutASecondLineTheFormatIsBad) {
  EXPECT_EQ(load_result(kVersionLine), kGroupBadFormat);
}

TEST(GroupHeader, AFirstLineWithoutNewlineLosesItsLastCharacter) {
  EXPECT_EQ(load_result("Package Lid -- Modele Tricar Version 2.25a (20 oct 1998)"),
            kGroupOtherVersion);
}

TEST(GroupHeader, ALineLongerThanItsRoomGoesOnAsTheNext) {
  const std::string line = std::string("Package Lid -- Modele Tricar") + std::string(200, ' ');
  EXPECT_EQ(load_result(line + "\n"), kGroupOtherVersion);
}

TEST(GroupLoad, AMissingFileCannotBeOpened) {
  CLidMGroup group;
  EXPECT_EQ(group.load("/nonexistent/Model.grp"), kGroupCannotOpen);
}

TEST(GroupLoad, ADirectoryHasNoFirstLine) {
  CLidMGroup group;
  EXPECT_EQ(group.load("/tmp"), kGroupBadFormat);
}

TEST(GroupLoad, OnlyASuccessClosesTheStream) {
  const orva::TempDir dir;
  const std::string good = dir.file("good", TinyGroup().bytes());
  const std::string bad = dir.file("bad", TinyGroup().bytes().substr(0, 200));
  CLidMGroup group;
  const int free_before = dup(0);
  close(free_before);
  ASSERT_EQ(group.load(good.c_str()), kGroupOk);
  const int free_after_success = dup(0);
  close(free_after_success);
  EXPECT_EQ(free_after_success, free_before);
  ASSERT_EQ(group.load(bad.c_str()), kGroupBadFormat);
  const int free_after_failure = dup(0);
  close(free_after_failure);
  EXPECT_NE(free_after_failure, free_before);
}

TEST(GroupLoad, ARefusalSaysWhatAndWhere) {
  EXPECT_EQ(reason(TinyGroup().with_word("def_so_tsize", 0)).substr(0, 17), "an array is empty");
  EXPECT_NE(reason(TinyGroup().with_word("nb_models", 0)).find("(at byte "), std::string::npos);
}
