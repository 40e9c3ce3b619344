// Writing a group, and reading back what was written.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "lib/mgroup/lid_mgroup.h"
#include "lib/util/accounting.h"
#include "tests/mgroup/group_files.h"
#include "tests/reference/tiny_group.h"
#include "tests/support/temp_dir.h"

using orva::load_bytes;
using orva::saved_bytes;
using orva::TinyGroup;

namespace {

std::string vectors() {
  const char* const folder = getenv("ORVA_VECTORS");
  return folder == nullptr ? "" : folder;
}

// A group that holds the names and nothing else.
void name_models(CLidMGroup* group, int count) {
  group->nb_models = count;
  ASSERT_EQ(group->models_part.init(count), 0);
  for (int m = 0; m < count; ++m) group->models_part.model_init(m, "frX", 1, 2, 3, -1);
}

}  // namespace

TEST(GroupSave, TheTinyGroupIsWrittenAsItWasRead) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  EXPECT_EQ(saved_bytes(group), TinyGroup().bytes());
}

TEST(GroupSave, ReferencesAreAddressesAgainAfterwards) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  saved_bytes(group);
  EXPECT_EQ(group.istates[4].ref.chrs, group.istates_chrs + 4);
  EXPECT_EQ(group.istates[2].ref.dnxts, group.istates_dnxts);
  EXPECT_EQ(saved_bytes(group), TinyGroup().bytes());
}

TEST(GroupSave, NameBytesOfTheRecordsAreWrittenAsZero) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().with_word("model 1 name", 0x12345678)), kGroupOk);
  EXPECT_EQ(saved_bytes(group), TinyGroup().bytes());
}

TEST(GroupSave, AFileIsWrittenUnderItsPath) {
  const orva::TempDir dir;
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  ASSERT_EQ(group.save((dir / "Model.grp").c_str()), 0);
  EXPECT_EQ(orva::bytes_of(dir / "Model.grp"), TinyGroup().bytes());
}

TEST(GroupSave, AFileThatCannotBeCreatedFails) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  EXPECT_EQ(group.save("/nonexistent/Model.grp"), -1);
}

TEST(GroupSave, AFullDeviceFails) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  EXPECT_EQ(group.save("/dev/full"), -1);
}

TEST(GroupSave, AStreamThatCannotBeWrittenFails) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  FILE* const stream = fopen("/dev/null", "rb");
  EXPECT_EQ(group.save(stream), -1);
  EXPECT_EQ(group.f_write(stream), -1);
  fclose(stream);
}

TEST(GroupSave, AnEmptyGroupCanBeSavedAndNotLoaded) {
  const CLidMGroup group;
  const std::string bytes = saved_bytes(group);
  EXPECT_EQ(bytes.size(), 57U + 18U + 17 * 4 + 256 * 4);
  EXPECT_EQ(orva::load_result(bytes), kGroupBadFormat);
}

TEST(GroupSave, NothingIsWrittenForAnEmptyArray) {
  CLidMGroup group;
  name_models(&group, 2);
  group.nb_istates = 1;
  const std::string bytes = saved_bytes(group);
  EXPECT_EQ(bytes.size(), 57U + 18U + 17 * 4 + 2 * (20 + 4 + 4) + 256 * 4);
  EXPECT_EQ(orva::load_result(bytes), kGroupBadFormat);
}

TEST(GroupSave, AnEmptyNameIsStoredWithLengthOne) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().with_byte("name 2", 0)), kGroupOk);
  const std::string bytes = saved_bytes(group);
  const size_t at = TinyGroup().at("name 2 length");
  EXPECT_EQ(bytes.substr(at, 5), std::string("\1\0\0\0\0", 5));
  CLidMGroup again;
  ASSERT_EQ(load_bytes(&again, bytes), kGroupOk);
  EXPECT_STREQ(again.models_part.models[2].name, "");
}

TEST(GroupSave, RealGroupsAreWrittenAsTheyWereRead) {
  if (vectors().empty()) GTEST_SKIP() << "ORVA_VECTORS is not set";
  for (const char* name : {"/group.grp", "/group-nofacts.grp"}) {
    CLidMGroup group;
    ASSERT_EQ(group.load((vectors() + name).c_str()), kGroupOk);
    EXPECT_TRUE(saved_bytes(group) == orva::bytes_of(vectors() + name)) << name;
  }
}

TEST(GroupSave, TheShippedGroupIsWrittenAsItWasRead) {
  const std::string path = std::string(ORVA_SOURCE_DIR) + "/models/Model.grp";
  CLidMGroup group;
  ASSERT_EQ(group.load(path.c_str()), kGroupOk);
  EXPECT_TRUE(saved_bytes(group) == orva::bytes_of(path));
}

TEST(GroupLifeCycle, AnEmptyGroupHasNothing) {
  const CLidMGroup group;
  EXPECT_EQ(group.fact_table, nullptr);
  EXPECT_EQ(group.nb_models, 0);
  EXPECT_EQ(group.nb_istates, -1);
  EXPECT_EQ(group.min_for_direct, 256);
  EXPECT_EQ(group.istates, nullptr);
  EXPECT_EQ(group.def_so_tsize, 0);
  EXPECT_EQ(group.models_part.models, nullptr);
  EXPECT_EQ(group.models_part.nb_models, 0);
  EXPECT_EQ(group.models_part.nb_facts, 0);
  EXPECT_EQ(group.allocated, 0);
}

TEST(GroupLifeCycle, CleaningTwiceIsHarmless) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  group.clean();
  group.clean();
  group.unigram_part.clean();
  group.unigram_part.clean();
  group.init0();
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
}

TEST(GroupLifeCycle, TheAccountingCountsTheStoredSizesOnEveryWidth) {
  const int before = _MallocChkNbBytes;
  {
    CLidMGroup group;
    ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
    const int models = 3 * 20;
    const int automaton = 6 * 8 + 5 + 256 * 4 + 2 * 4 + 3 * 2 + 2 * 2;
    const int unigrams = 3 * 3 * 4 + 3 * 2;
    EXPECT_EQ(_MallocChkNbBytes - before, models + automaton + unigrams);
  }
  EXPECT_EQ(_MallocChkNbBytes, before);
}

TEST(GroupLifeCycle, FreesLeavesAloneWhatWasNotAllocated) {
  CLidMGroup group;
  unsigned char chrs[] = "ab";
  group.istates_chrs = chrs;
  group.istates_chrs_tsize = 2;
  group.frees();
  EXPECT_EQ(group.istates_chrs, chrs);
  group.istates_chrs = nullptr;
  group.istates_chrs_tsize = 0;
}

TEST(GroupLifeCycle, AllocatingAnEmptyArrayFails) {
  CLidMGroup group;
  group.istates_tsize = 1;
  group.istates_chrs_tsize = 1;
  group.istates_dnxts_tsize = 1;
  group.lstates_tsize = 1;
  group.lstates_vals_tsize = 1;
  EXPECT_EQ(group.allocs(), -1);
  group.frees();
  group.istates_tsize = group.istates_chrs_tsize = group.istates_dnxts_tsize = 1;
  group.lstates_tsize = group.lstates_vals_tsize = group.def_so_tsize = 1;
  EXPECT_EQ(group.allocs(), 0);
  EXPECT_EQ(group.allocated, 1);
}

TEST(CmgModelsInit, FreesTheOldRecordsAndMakesZeroedOnes) {
  CmgModels part;
  ASSERT_EQ(part.init(2), 0);
  part.model_init(0, "frX", 1, 2, 3, -1);
  EXPECT_STREQ(part.models[0].name, "frX");
  EXPECT_EQ(part.models[0].grad, 3.0F);
  ASSERT_EQ(part.init(3), 0);
  EXPECT_EQ(part.nb_models, 3);
  EXPECT_EQ(part.models[0].name, nullptr);
  EXPECT_EQ(part.models[0].grad, 0.0F);
  part.clean();
}

TEST(CmgModelsInit, TheNameIsCopied) {
  CmgModels part;
  ASSERT_EQ(part.init(1), 0);
  char name[] = "frX";
  part.model_init(0, name, 1, 2, 3, -1);
  name[0] = 'x';
  EXPECT_STREQ(part.models[0].name, "frX");
  part.clean();
}

TEST(IstateGetChrs, ASparseStateGivesItsOwnBytes) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().bytes()), kGroupOk);
  unsigned char room[256];
  int nchrs = 0;
  int offset = 0;
  EXPECT_EQ(group.istate_get_chrs_and_offset(0, room, &nchrs, &offset), group.istates_chrs);
  EXPECT_EQ(nchrs, 2);
  EXPECT_EQ(offset, 1);
}

TEST(IstateGetChrs, ADirectStateFillsTheRoomAndGivesItsFirstSuccessor) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().with_word("istates_dnxts", 3, 255 * 4)), kGroupOk);
  unsigned char room[256];
  int nchrs = 0;
  int offset = 0;
  EXPECT_EQ(group.istate_get_chrs_and_offset(2, room, &nchrs, &offset), room);
  ASSERT_EQ(nchrs, 2);
  EXPECT_EQ(offset, 4);
  EXPECT_EQ(room[0], 'a');
  EXPECT_EQ(room[1], 255);
}
