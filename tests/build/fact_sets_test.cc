#include "lib/build/fact_sets.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/temp_dir.h"

namespace {

// The sets that `file` gives the models enA, enB, frA and deA.
std::vector<int> sets_of(const std::string& file) {
  const orva::TempDir dir;
  std::vector<std::string> names = {"enA", "enB", "frA", "deA"};
  std::vector<char*> pointers;
  for (std::string& name : names) pointers.push_back(name.data());
  std::vector<int> sets(4, 77);
  EXPECT_EQ(build_fact_sets(pointers.data(), 4, dir.file("facts", file).c_str(), sets.data()), 0);
  return sets;
}

using Sets = std::vector<int>;

}  // namespace

TEST(FactSets, NullPathLeavesEveryModelWithoutASet) {
  char name[] = "enA";
  char* names[] = {name};
  int set = 5;
  EXPECT_EQ(build_fact_sets(names, 1, nullptr, &set), 0);
  EXPECT_EQ(set, -1);
}

TEST(FactSets, MissingFileIsMinusOne) {
  char name[] = "enA";
  char* names[] = {name};
  int set = 5;
  EXPECT_EQ(build_fact_sets(names, 1, "/nonexistent/facts", &set), -1);
}

TEST(FactSets, MembersArePrefixesSeparatedByTabs) {
  EXPECT_EQ(sets_of("enA\tfr\nde\n"), (Sets{0, -1, 0, 1}));
}

TEST(FactSets, FirstMatchingModelAloneIsMeant) {
  EXPECT_EQ(sets_of("en\n"), (Sets{0, -1, -1, -1}));
}

TEST(FactSets, LineThatMatchesNothingUsesNoNumber) {
  EXPECT_EQ(sets_of("xx\tyy\nfr\n\nzz\nde\n"), (Sets{-1, -1, 0, 1}));
}

TEST(FactSets, FileThatMatchesNothingYieldsNoSet) {
  EXPECT_EQ(sets_of("xx\nyy\tzz\n"), (Sets{-1, -1, -1, -1}));
}

TEST(FactSets, LastMatchingLineWins) {
  EXPECT_EQ(sets_of("enA\tfrA\nfrA\tdeA\n"), (Sets{0, -1, 1, 1}));
  EXPECT_EQ(sets_of("frA\tfrA\n"), (Sets{-1, -1, 0, -1}));
}

TEST(FactSets, EmptyPieceIsTheFirstModel) {
  EXPECT_EQ(sets_of("fr\t\tde\n"), (Sets{0, -1, 0, 0}));
  EXPECT_EQ(sets_of("\tfr\n"), (Sets{0, -1, 0, -1}));
  EXPECT_EQ(sets_of("fr\t\n"), (Sets{0, -1, 0, -1}));
}

TEST(FactSets, LastLineWithoutNewlineLosesItsLastCharacter) {
  EXPECT_EQ(sets_of("frA\tdeAx"), (Sets{-1, -1, 0, 0}));
  EXPECT_EQ(sets_of("d"), (Sets{-1, -1, -1, -1}));
}

TEST(FactSets, LongLineIsReadInPieces) {
  // The first 999 bytes are a line of their own and lose their last one; the rest is the next line.
  const std::string padding(995, 'x');
  EXPECT_EQ(sets_of("fr\t" + padding + "x" + "deA\n"), (Sets{-1, -1, 0, 1}));
}
