// What a group cannot represent is refused.

#include <gtest/gtest.h>

#include "lib/util/accounting.h"
#include "tests/build/build_fixture.h"

namespace {

using orva::Costs;
using orva::ModelFiles;

// Every second byte below 256 of `nb_first` first bytes leads to one trigram.
Costs many_prefixes(int nb_first) {
  Costs costs;
  for (int a = 0; a < nb_first; ++a) {
    for (int b = 0; b < 256; ++b) {
      costs.emplace_back(std::string{static_cast<char>(a), static_cast<char>(b), 'x'}, 1.0f);
    }
  }
  return costs;
}

}  // namespace

TEST(Limits, GroupWithoutModelsOrTrigramsIsRefused) {
  ModelFiles none;
  CLidMGroup group;
  EXPECT_EQ(none.build(group), -1);
  ModelFiles empty;
  empty.add("enA", {});
  EXPECT_EQ(empty.build(group), -1);
}

TEST(Limits, GroupWithoutAnyByteCostIsRefused) {
  ModelFiles files;
  files.add("enA", {{"abc", 1.0f}}, {});
  CLidMGroup group;
  EXPECT_EQ(files.build(group), -1);
}

TEST(Limits, GroupOfDirectStatesAloneIsRefused) {
  ModelFiles files;
  files.add("enA", {{"abc", 1.0f}, {"abd", 1.0f}});
  CLidMGroup group;
  EXPECT_EQ(files.build(group, 0), -1);
  EXPECT_EQ(files.build(group, 1), -1);
  EXPECT_EQ(files.build(group, 2), 0);
}

TEST(Limits, NegativeMinForDirectIsRefused) {
  ModelFiles files;
  files.add("enA", {{"abc", 1.0f}});
  CLidMGroup group;
  EXPECT_EQ(files.build(group, -1), -1);
}

TEST(Limits, ModelsAndSetsShareOneByte) {
  ModelFiles files;
  files.add("enA", {{"abc", 1.0f}});
  files.add("frA", {{"abc", 1.0f}});
  CLidMGroup group;
  files.sets = {-1, 253};
  EXPECT_EQ(files.build(group), 0);
  files.sets = {-1, 254};
  EXPECT_EQ(files.build(group), -1);
  files.sets = {-1, 256};
  EXPECT_EQ(files.build(group), -1);
  files.sets = {-1, -2};
  EXPECT_EQ(files.build(group), -1);
}

TEST(Limits, MoreThan255ValuesOfATrigramAreRefused) {
  ModelFiles files;
  for (int m = 0; m < 255; ++m) files.add("m" + std::to_string(m), {{"abc", 1.0f}});
  CLidMGroup group;
  ASSERT_EQ(files.build(group), 0);
  EXPECT_EQ(orva::values_of(group, "abc").size(), 255u);
  files.add("last", {{"abc", 1.0f}});
  EXPECT_EQ(files.build(group), -1);
}

TEST(Limits, CompactStateOf256ChildrenIsRefused) {
  ModelFiles files;
  files.add("enA", many_prefixes(2));
  CLidMGroup group;
  EXPECT_EQ(files.build(group, 257), -1);
  EXPECT_EQ(files.build(group, 256), 0);
}

TEST(Limits, MoreThan65536InternalStatesAreRefused) {
  // 1 + 254 + 254 * 256 = 65279 states, and one more first byte passes the limit.
  ModelFiles files;
  files.add("enA", many_prefixes(254));
  CLidMGroup group;
  ASSERT_EQ(files.build(group, 256), 0);
  EXPECT_EQ(group.nb_istates, 65279);
  ModelFiles more;
  more.add("enA", many_prefixes(256));
  EXPECT_EQ(more.build(group, 256), -1);
}

TEST(Limits, FailedBuildLeavesNothingBehindOnceCleaned) {
  ModelFiles files;
  files.add("enA", {{"abc", 1.0f}, {"abd", 1.0f}}, {});
  const int before = _MallocChkNbBytes;
  {
    CLidMGroup group;
    EXPECT_EQ(files.build(group), -1);
  }
  EXPECT_EQ(_MallocChkNbBytes, before);
}

TEST(Limits, PairsOfSingleBytesStayAllocatedAndNothingElseDoes) {
  ModelFiles files;
  files.add("enA", {{"abc", 1.0f}, {"abd", 1.0f}}, {{'a', 1.0f}, {'b', 2.0f}});
  const int before = _MallocChkNbBytes;
  {
    CLidMGroup group;
    ASSERT_EQ(files.build(group), 0);
  }
  // Two entries, each with room for four pairs and four codes.
  EXPECT_EQ(_MallocChkNbBytes - before, 2 * (4 * 8 + 4));
}
