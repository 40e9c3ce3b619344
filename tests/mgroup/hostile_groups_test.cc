// Files that were damaged by chance or on purpose: every one is refused, or loads and can be
// walked.
#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "lib/eval/lid_mgroup_eval.h"
#include "lib/mgroup/lid_mgroup.h"
#include "tests/mgroup/group_files.h"
#include "tests/reference/tiny_group.h"

using orva::load_bytes;
using orva::load_result;
using orva::TinyGroup;

namespace {

// Loads these bytes and, when they are taken for a group, walks over every pair of bytes.
int load_and_walk(const std::string& bytes) {
  CLidMGroup group;
  const int result = load_bytes(&group, bytes);
  if (result != kGroupOk) return result;
  CLidMGroupEval eval(&group);
  if (eval.init() != 0) return result;
  const unsigned char text[] = "ababbabaabcabab\x00\xff\x61\x62\x61";
  for (int c = 0; c < 256; ++c) {
    eval.auto_init(static_cast<unsigned char>(c), 'b');
    eval.auto_nexts(text, sizeof text - 1);
  }
  int best = 0;
  eval.calcul_ratio(eval.get_lprobs(), &best);
  return result;
}

// Where one word is changed into something that no valid file holds.
struct Hostile {
  const char* field;
  size_t offset;
  int32_t value;
};

void expect_refused(const Hostile& h) {
  EXPECT_EQ(load_result(TinyGroup().with_word(h.field, h.value, h.offset)), kGroupBadFormat)
      << h.field << " + " << h.offset << " = " << h.value;
}

}  // namespace

TEST(HostileGroup, TruncatedAtAnyLengthItIsRefused) {
  const std::string bytes = TinyGroup().bytes();
  for (size_t length = 0; length < bytes.size(); ++length) {
    const int result = load_result(bytes.substr(0, length));
    // Inside the header lines the last character is cut from what there is.
    if (length > 28 && length <= 56) {
      EXPECT_EQ(result, kGroupOtherVersion) << length;
    } else if (length == 28) {
      EXPECT_EQ(result, kGroupBadFormat) << length;
    } else if (length > 57 && length <= 74) {
      EXPECT_EQ(result, kGroupOtherPlatform) << length;
    } else {
      EXPECT_EQ(result, kGroupBadFormat) << length;
    }
  }
}

TEST(HostileGroup, WithAnyByteChangedItIsRefusedOrCanBeWalked) {
  const std::string bytes = TinyGroup().bytes();
  int nb_loaded = 0;
  int nb_refused = 0;
  for (size_t i = 0; i < bytes.size(); ++i) {
    for (const int change : {0x01, 0x80, 0xff}) {
      std::string changed = bytes;
      changed[i] = static_cast<char>(changed[i] ^ change);
      ++(load_and_walk(changed) == kGroupOk ? nb_loaded : nb_refused);
    }
  }
  EXPECT_GT(nb_loaded, 0);
  EXPECT_GT(nb_refused, 0);
}

TEST(HostileGroup, SizesOutOfRangeAreRefused) {
  for (const Hostile& h : {
           Hostile{"nb_models", 0, 0},
           Hostile{"nb_models", 0, 257},
           Hostile{"nb_models", 0, INT_MAX},
           Hostile{"nb_models", 0, INT_MIN},
           Hostile{"nb_models", 0, 2},
           Hostile{"nb_models", 0, 4},
           Hostile{"nb_istates", 0, 0},
           Hostile{"nb_istates", 0, -2},
           Hostile{"nb_istates", 0, 7},
           Hostile{"nb_istates", 0, INT_MAX},
           Hostile{"istates_tsize", 0, 0},
           Hostile{"istates_tsize", 0, 4},
           Hostile{"istates_tsize", 0, 0x20000000},
           Hostile{"istates_tsize", 0, INT_MAX},
           Hostile{"istates_chrs_tsize", 0, 0},
           Hostile{"istates_chrs_tsize", 0, -5},
           Hostile{"istates_chrs_tsize", 0, INT_MAX},
           Hostile{"istates_dnxts_tsize", 0, 0},
           Hostile{"istates_dnxts_tsize", 0, 0x40000001},
           Hostile{"lstates_tsize", 0, 0},
           Hostile{"lstates_tsize", 0, 0x40000000},
           Hostile{"lstates_vals_tsize", 0, 0},
           Hostile{"lstates_vals_tsize", 0, INT_MIN},
           Hostile{"def_so_tsize", 0, 0},
           Hostile{"def_so_tsize", 0, 0x7fffffff},
           Hostile{"name 0 length", 0, 0},
           Hostile{"name 0 length", 0, -4},
           Hostile{"name 0 length", 0, INT_MAX},
           Hostile{"unigram nb_models", 0, 0},
           Hostile{"unigram nb_models", 0, 2},
           Hostile{"unigram nb_models", 0, INT_MAX},
           Hostile{"uch_lps_buff_tsize", 0, 0},
           Hostile{"uch_lps_buff_tsize", 0, INT_MAX},
       }) {
    expect_refused(h);
  }
}

TEST(HostileGroup, FactsThatDoNotExistAreRefused) {
  for (const Hostile& h : {
           Hostile{"nb_facts", 0, 0},
           Hostile{"nb_facts", 0, -2},
           Hostile{"nb_facts", 0, 254},
           Hostile{"nb_facts", 0, INT_MAX},
           Hostile{"model 0 fact_no", 0, 0},
           Hostile{"model 0 fact_no", 0, -2},
           Hostile{"model 1 fact_no", 0, 2},
           Hostile{"model 1 fact_no", 0, 4},
           Hostile{"model 1 fact_no", 0, INT_MAX},
           Hostile{"unigram nb_facts", 0, 0},
           Hostile{"unigram nb_facts", 0, 2},
       }) {
    expect_refused(h);
  }
}

TEST(HostileGroup, ReferencesOutsideTheirArraysAreRefused) {
  for (const Hostile& h : {
           Hostile{"state 0", 0, -1}, Hostile{"state 0", 0, 4}, Hostile{"state 0", 0, INT_MAX},
           Hostile{"state 4", 0, 5}, Hostile{"state 2", 0, 1}, Hostile{"state 2", 0, 4},
           Hostile{"state 2", 0, -4}, Hostile{"state 2", 0, INT_MAX},
           Hostile{"state 0", 4, 0x06000001},  // six bytes of five
           Hostile{"state 0", 4, 0x03000001},  // "abb" does not ascend
       }) {
    expect_refused(h);
  }
}

TEST(HostileGroup, SuccessorsThatDoNotExistAreRefused) {
  for (const Hostile& h : {
           Hostile{"state 4", 4, 0x01000007},
           Hostile{"state 4", 4, 0x01ffffff},
           Hostile{"istates_dnxts a", 0, 7},
           Hostile{"istates_dnxts a", 0, -1},
           Hostile{"istates_dnxts", 0, INT_MAX},
           Hostile{"istates_dnxts", 0, INT_MIN},
       }) {
    expect_refused(h);
  }
}

TEST(HostileGroup, ALeafAtDepthOneOrTwoIsRefused) {
  expect_refused({"state 0", 4, 0x02000004});
  expect_refused({"state 1", 4, 0x01000005});
  expect_refused({"istates_dnxts a", 0, 6});
  expect_refused({"istates_dnxts", 4, 5});
}

TEST(HostileGroup, LeavesThatLeaveTheirTablesAreRefused) {
  expect_refused({"lstates", 0, 0x02000002});
  expect_refused({"lstates", 0, 0x01000003});
  expect_refused({"lstates", 0, 0x01ffffff});  // begins at -1
  expect_refused({"lstates", 0, 0x7f000000});
  expect_refused({"def_so", 0, 0x00030005});
  expect_refused({"def_so", 0, static_cast<int32_t>(0xffff0004U)});
  EXPECT_EQ(load_result(TinyGroup().with_byte("lstates_vals", 4)), kGroupBadFormat);
  EXPECT_EQ(load_result(TinyGroup().with_byte("lstates_vals", 255, 4)), kGroupBadFormat);
}

TEST(HostileGroup, ALeafWithoutValuesThatCountMayBeginAnywhere) {
  EXPECT_EQ(load_and_walk(TinyGroup().with_word("lstates", 0x00ffffff)), kGroupOk);
  EXPECT_EQ(load_and_walk(TinyGroup().with_word("lstates", static_cast<int32_t>(0x80123456U))),
            kGroupOk);
}

TEST(HostileGroup, UnigramRunsOutsideTheirTableAreRefused) {
  expect_refused({"uch_lps a", 0, 0x00800002});
  expect_refused({"uch_lps a", 0, 0x003fffff | (1 << 22)});
  expect_refused({"uch_lps b", 0, static_cast<int32_t>(0xffc00000U)});
  EXPECT_EQ(load_result(TinyGroup().with_byte("uch_lps_buff", 4)), kGroupBadFormat);
  EXPECT_EQ(load_and_walk(TinyGroup().with_word("uch_lps b", 0x003fffff)), kGroupOk);
}

TEST(HostileGroup, ANameWithoutTerminatorIsRefused) {
  EXPECT_EQ(load_result(TinyGroup().with_byte("name 1", 'C', 3)), kGroupBadFormat);
}

TEST(HostileGroup, ANameEndsAtItsFirstNul) {
  CLidMGroup group;
  ASSERT_EQ(load_bytes(&group, TinyGroup().with_byte("name 1", 0, 1)), kGroupOk);
  EXPECT_STREQ(group.models_part.models[1].name, "e");
}

TEST(HostileGroup, FewerLeavesThanAreReachedAreRefused) {
  // One leaf or default successor less, and its bytes taken out so that the rest still fits.
  std::string bytes = TinyGroup().with_word("lstates_tsize", 1);
  bytes.erase(TinyGroup().at("lstates") + 4, 4);
  EXPECT_EQ(load_result(bytes), kGroupBadFormat);
  bytes = TinyGroup().with_word("def_so_tsize", 1);
  bytes.erase(TinyGroup().at("def_so") + 2, 2);
  EXPECT_EQ(load_result(bytes), kGroupBadFormat);
}
